#pragma once

#include "pavane/images/curve_raster.h"
#include "platform/api.h"
#include "platform/types.h"

namespace pavane
{

class ABAxis;
class CDC;

/// Non-zero when `dc` draws fractions of a pixel: a page, or a picture with smooth strokes.
PAVANE_API int drawsFractions(CDC& dc);

/// How x and y values become pixels of the axis, for the curve functions.
PAVANE_API CurveScale curveScaleX(const ABAxis& axis);
PAVANE_API CurveScale curveScaleY(const ABAxis& axis);

/// Draws a curve through the points (RP): into the raster in bitmap mode; in a plain picture the
/// very pixels of all its segments; smooth and on pages with fractions of a pixel. Points that are
/// not finite, and those not above 0 on a logarithmic scale, are gaps. `style` and `width` as in
/// graph_styles.h. The settings of the axis are left as they were. Where y has a period, points
/// more than half of it apart are not joined.
PAVANE_API void drawAxisCurve(ABAxis& axis, CDC& dc, const CurvePoints& points, int style,
                              int width, COLORREF color);

/// A piece of such a curve across the middle of `box`, for a legend.
PAVANE_API void drawLineSample(ABAxis& axis, const CRect& box, int style, int width,
                               COLORREF color);

}  // namespace pavane
