#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <cstdint>

namespace pavane
{

class CDC;

/// The points of a curve, not owned, and how they lie on a device context: point i is at
/// (xOrigin + xScale * x[i], yOrigin + yScale * y[i]) in logical units. Without `x`, x[i] is
/// xFirst + i * xStep. A point that is not finite is a gap.
struct CurveData {
    const double* x = nullptr;
    const double* y = nullptr;
    std::int64_t n = 0;
    double xFirst = 0;
    double xStep = 1;
    double xOrigin = 0;
    double xScale = 1;
    double yOrigin = 0;
    double yScale = 1;
};

/// Draws a curve along x with soft edges as one stroke, `width` units wide: where its lines overlap
/// it is no darker, and the time hardly grows with the number of points. Single points between
/// gaps are dots. Needs a picture with smooth strokes, R2_COPYPEN, units that are pixels of the
/// device, a clip that is a rectangle, and points whose x only rises or only falls, with up to 2000
/// gaps in view, and four to a column of pixels where they go up and down; returns 0, and has drawn
/// nothing, where one of these is missing.
PAVANE_API int strokeCurve(CDC& dc, const CurveData& curve, int width, COLORREF color);

}  // namespace pavane
