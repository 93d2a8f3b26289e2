#pragma once

#include "platform/geometry.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace pavane
{

/// Products of two 33-bit differences; the one place where 64 bits do not suffice.
__extension__ using Wide = __int128;

/// Largest integer not above num / den; den is above 0.
constexpr Wide floorDiv(Wide num, Wide den)
{
    return num >= 0 ? num / den : -((-num + den - 1) / den);
}

/// Cut to what an int holds.
constexpr int saturated(Wide v)
{
    constexpr int least = std::numeric_limits<int>::min();
    constexpr int greatest = std::numeric_limits<int>::max();
    return v < least ? least : v > greatest ? greatest : static_cast<int>(v);
}

/// The integer nearest to `v`, halves up; saturates at plus or minus 2^30, NaN gives 0.
inline int nearestInt(double v)
{
    constexpr double limit = 1 << 30;
    if (!(v > -limit))
        return v != v ? 0 : -(1 << 30);
    return v < limit ? static_cast<int>(std::floor(v + 0.5)) : 1 << 30;
}

}  // namespace pavane
