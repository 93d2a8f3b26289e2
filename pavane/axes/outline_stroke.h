#pragma once

#include "platform/api.h"
#include "platform/gdi_constants.h"
#include "platform/geometry.h"
#include "platform/types.h"

#include <vector>

namespace pavane
{

class ABAxis;
class CDC;

/// A light line with a dark edge on both sides, which is seen on any colour. Widths in pixels of 96
/// per inch; the edge lies below the line.
struct OutlineStyle {
    COLORREF color;
    COLORREF edgeColor;
    int width;
    int edgeWidth;
    int pen = PS_SOLID;  ///< of the line; the edge is always solid
};

/// Curves in device units, open, or closed by their first point at the end.
using OutlineCurves = std::vector<std::vector<CPointF>>;

/// Strokes curves inside the plot of an axis that is laid out for the context: the edges of all of
/// them first, so that one curve never darkens another. Points that a straight line replaces are
/// left out.
PAVANE_API void strokeOutlines(CDC& dc, const ABAxis& axis, const OutlineCurves& curves,
                               const OutlineStyle& style);

}  // namespace pavane
