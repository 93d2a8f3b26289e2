#pragma once

#include "pavane/axes/ranges/RectMinMaxTransform.h"

#include <cmath>

namespace pavane
{

/// What a rectangle of pixels stands for: the arguments of a RectMinMaxTransform.
struct PixelMapping {
    CRect rect{-1, -1, -1, -1};
    TMinMax range;
    int modeX = 1;
    int modeY = 1;

    /// Non-zero when values can be turned into pixels and back.
    int usable() const
    {
        return rect.left != rect.right && rect.top != rect.bottom &&
               spans(range.xMin, range.xMax) && spans(range.yMin, range.yMax);
    }
    RectMinMaxTransform transform() const { return {rect, range, modeX, modeY}; }
    /// Signed with the direction in which values grow.
    double pixelsPerUnitX() const
    {
        return (modeX >= 0 ? 1 : -1) * (static_cast<double>(rect.right) - rect.left) /
               (range.xMax - range.xMin);
    }
    double pixelsPerUnitY() const
    {
        return (modeY >= 0 ? -1 : 1) * (static_cast<double>(rect.bottom) - rect.top) /
               (range.yMax - range.yMin);
    }

private:
    static int spans(double min, double max)
    {
        return min != max && min < unsetMinimum && max > unsetMaximum && std::isfinite(max - min);
    }
};

}  // namespace pavane
