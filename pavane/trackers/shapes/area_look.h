#pragma once

#include "platform/types.h"

namespace pavane
{

// How areas look, in windows as in pictures and on pages: a light line with a thin dark edge on
// both sides, which tells them from contours on any ground.

inline constexpr COLORREF areaColor = RGB(255, 230, 60);
inline constexpr COLORREF areaEdgeColor = RGB(0, 0, 0);

/// Widths in pixels of 96 per inch; the edge shows on both sides of the line.
inline constexpr int areaLineWidth = 1;
inline constexpr int areaEdgeWidth = 3;

}  // namespace pavane
