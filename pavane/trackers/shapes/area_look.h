#pragma once

#include "platform/types.h"

namespace pavane
{

// How areas look, in windows as in pictures and on pages: a light line with a thin dark edge on
// both sides, which tells them from contours on any ground. Never-clean areas have it the other way
// round, a dashed dark line with a light edge, and hatching in pictures, so that they are told from
// others without colours too.

inline constexpr COLORREF areaColor = RGB(255, 230, 60);
inline constexpr COLORREF areaEdgeColor = RGB(0, 0, 0);
inline constexpr COLORREF neverCleanColor = RGB(190, 0, 0);
inline constexpr COLORREF neverCleanEdgeColor = RGB(255, 255, 255);

/// Widths in pixels of 96 per inch; the edge shows on both sides of the line.
inline constexpr int areaLineWidth = 1;
inline constexpr int areaEdgeWidth = 3;
/// Between the lines of the hatching.
inline constexpr int neverCleanHatch = 12;

}  // namespace pavane
