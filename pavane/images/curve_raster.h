#pragma once

#include "platform/api.h"
#include "platform/geometry.h"

#include <cstdint>
#include <functional>

namespace pavane
{

class ADIBase;

/// How values of one direction become pixels, the same arithmetic as an axis has:
/// base + sign * trunc((v - first) / span * length + 0.5).
struct CurveScale {
    double first = 0;     ///< value at the start, or its logarithm (base 10)
    double span = 1;      ///< from there to the end; of logarithms on a logarithmic scale
    double length = 1;    ///< pixels from start to end
    int base = 0;         ///< pixel of the start
    int sign = 1;         ///< 1: pixels grow from the start on; -1: they fall
    int logarithmic = 0;  ///< values not above 0 are gaps then
    PAVANE_API int pixel(double v) const;
};

/// The points of a curve, not owned. Without `x` the points lie at xFirst + i * xStep. A point with
/// a value that is not finite is a gap.
struct CurvePoints {
    const double* x = nullptr;
    const double* y = nullptr;
    std::int64_t n = 0;
    double xFirst = 0;
    double xStep = 1;
    double xAt(std::int64_t i) const { return x ? x[i] : xFirst + static_cast<double>(i) * xStep; }
};

/// Draws the curve with colour, width and pattern of the raster. Solid lines give the very pixels
/// of `ADIBase::Line` called for each segment, with the last point of each piece drawn as well;
/// points that share a pixel column are gathered first, so that the time is that of reading them.
PAVANE_API void drawCurve(ADIBase& dib, const CurvePoints& points, const CurveScale& xScale,
                          const CurveScale& yScale);

/// The same curve as few polylines that cover the same pixels inside `visible` (right and bottom
/// excluded) when drawn by a pen of up to `penWidth` pixels. `polyline` gets each; a piece with
/// very many points comes in parts, each beginning at the last point of the one before. One point
/// means a single pixel; a device context leaves the last point of a polyline out, so set it.
PAVANE_API void reduceCurve(const CurvePoints& points, const CurveScale& xScale,
                            const CurveScale& yScale, const CRect& visible, int penWidth,
                            const std::function<void(const CPoint* points, int count)>& polyline);

}  // namespace pavane
