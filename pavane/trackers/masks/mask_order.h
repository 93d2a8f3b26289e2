#pragma once

#include "tessel/ABitMatrix.h"

namespace pavane
{

/// Makes `mask` that of `count` areas: `isNeverClean(i)` tells those whose cells are left out,
/// `fill(i)` sets the cells of area i in the mask. The cells of all others are set, then those of
/// the never-clean ones cleared; where there are only such, or none, the whole map is set before.
template <typename IsNeverClean, typename Fill>
void fillInOrder(ABitMatrix& mask, int count, const IsNeverClean& isNeverClean, const Fill& fill)
{
    int never = 0;
    for (int i = 0; i < count; ++i)
        never += isNeverClean(i) != 0;
    mask.setAll(never == count);
    for (int i = 0; i < count && never < count; ++i)
        if (!isNeverClean(i))
            fill(i);
    if (!never)
        return;
    mask.invert();  // what is to be cleared can be set then, without a second matrix
    for (int i = 0; i < count; ++i)
        if (isNeverClean(i))
            fill(i);
    mask.invert();
}

}  // namespace pavane
