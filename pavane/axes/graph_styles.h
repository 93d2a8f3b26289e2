#pragma once

namespace pavane
{

// The settings of curves and points. Curves take a pen style (PS_SOLID, PS_DASH, PS_DOT,
// PS_DASHDOT, PS_DASHDOTDOT; PS_NULL draws nothing) and a width; points a GraphPoint and a width.
//
// Widths count frame widths (fHeight / 12), so that a curve looks alike in a picture and on a page;
// 0 is the thinnest line that the device has.

/// The marker of a point.
enum GraphPoint : int {
    graphPointDot = 0,           ///< ABAxis::point
    graphPointCross = 1,         ///< ABAxis::pointCross
    graphPointCrossInverse = 2,  ///< ABAxis::pointCrossInv
    graphPointBar = 3,           ///< ABAxis::pointBar
    graphPointStar = 4           ///< both crosses
};

/// Device width of a line of `width` frame widths.
constexpr int graphLineWidth(int width, int fHeight)
{
    constexpr int framePart = 12;
    if (width < 1)
        return 0;
    const long long scaled =
        static_cast<long long>(width < 1000 ? width : 1000) * fHeight / framePart;
    return scaled < 1 ? 1 : static_cast<int>(scaled);
}

}  // namespace pavane
