#pragma once

#include "platform/types.h"

#include <cstdint>

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

/// The colour of the line of an area to which the user gave `colour` (0xRRGGBB, below 0 for none).
constexpr COLORREF areaLineColor(std::int32_t colour, int isNeverClean)
{
    if (colour < 0)
        return isNeverClean ? neverCleanColor : areaColor;
    return RGB(colour >> 16 & 0xFF, colour >> 8 & 0xFF, colour & 0xFF);
}

/// The colour of its edge, dark about a light line and light about a dark one.
constexpr COLORREF areaLineEdge(std::int32_t colour, int isNeverClean)
{
    if (colour < 0)
        return isNeverClean ? neverCleanEdgeColor : areaEdgeColor;
    constexpr int dark = 110000;  // of 255 000
    const int light =
        299 * (colour >> 16 & 0xFF) + 587 * (colour >> 8 & 0xFF) + 114 * (colour & 0xFF);
    return light < dark ? neverCleanEdgeColor : areaEdgeColor;
}

/// Widths in pixels of 96 per inch; the edge shows on both sides of the line.
inline constexpr int areaLineWidth = 1;
inline constexpr int areaEdgeWidth = 3;
/// Between the lines of the hatching.
inline constexpr int neverCleanHatch = 12;

}  // namespace pavane
