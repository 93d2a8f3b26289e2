#pragma once

#include "platform/core/polygon_scan.h"

#include <vector>

namespace pavane
{

/// Pixels of the filled ellipse in a box of width x height: row by row, relative to its top left.
/// Meant for boxes of at most 65536 a side, which the walk below visits pixel by pixel.
std::vector<Run> ellipseRows(int width, int height);

/// Appends the spans, inside `bounds`, of the filled ellipse in `box` (right and bottom excluded).
void ellipseFill(const CRect& box, const CRect& bounds, std::vector<Span>& out);

/// Appends the spans of its one-pixel outline.
void ellipseOutline(const CRect& box, const CRect& bounds, std::vector<Span>& out);

}  // namespace pavane
