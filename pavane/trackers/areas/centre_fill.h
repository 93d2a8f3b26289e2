#pragma once

#include "pavane/trackers/shapes/AreaShape.h"
#include "tessel/ABitMatrix.h"
#include "tessel/StopFlag.h"

namespace pavane
{

/// Sets the cells whose centres lie inside the shape, which is whole (`isWhole`). Throws
/// std::bad_alloc; a stop leaves the rest out.
void fillCentres(ABitMatrix& mask, const AreaShape& shape, const StopFlag* stop);

}  // namespace pavane
