#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/images/curve_raster.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

/// Puts the least and greatest x and y of the finite points into `range`, and leaves it unset when
/// there are none.
inline void rangeOfPoints(const CurvePoints& points, TMinMax& range)
{
    range = TMinMax();
    bool any = false;
    for (std::int64_t i = 0; points.y && i < points.n; ++i) {
        const double x = points.xAt(i);
        const double y = points.y[i];
        if (!std::isfinite(x) || !std::isfinite(y))
            continue;
        range.xMin = any ? std::min(range.xMin, x) : x;
        range.xMax = any ? std::max(range.xMax, x) : x;
        range.yMin = any ? std::min(range.yMin, y) : y;
        range.yMax = any ? std::max(range.yMax, y) : y;
        any = true;
    }
}

}  // namespace pavane
