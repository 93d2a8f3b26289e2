#pragma once

#include "pavane/images/curve_raster.h"
#include "platform/api.h"

namespace pavane
{

/// Non-zero when no x is below the one before and all are finite.
PAVANE_API int pointsRise(const CurvePoints& points);

/// Index of the finite point whose x is nearest to `x`, the first of equally near ones; -1 for
/// none. With `rising` it is found by halving, else by looking at all.
PAVANE_API int nearestInX(const CurvePoints& points, double x, int rising);

}  // namespace pavane
