#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "platform/types.h"

namespace pavane
{

/// Stands in AYScale::color for the colour of the scale's graphs.
inline constexpr COLORREF colorOfGraphs = 0xFFFFFFFF;

/// One y scale of an axis with several.
struct AYScale {
    CString name;    ///< title, with the markers of AB2DAxis
    TMnMx range;     ///< RP; while it is unset, its graphs give it
    int direct = 1;  ///< 1 linear, -1 linear reversed, 0 logarithmic
    int panel = 0;   ///< from the top, column by column
    int side = 0;    ///< 1 left, 2 right, 0 the side with fewer scales: left, right, left ...
    COLORREF color = colorOfGraphs;
    int colored = -1;   ///< its axis takes that colour: 1 yes, 0 no, -1 when its panel has others
    double weight = 1;  ///< its panel's share of the height is that of its heaviest scale
    int nPlus = 1;      ///< digits of a label before the point
    int nMinus = 2;     ///< and after it
    int intervals = 5;  ///< wanted between ticks
    double period = 0;  ///< 360 for a phase in degrees, 0 for none
};

}  // namespace pavane
