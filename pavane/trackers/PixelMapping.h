#pragma once

#include "pavane/axes/RectMinMaxTransform.h"

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

private:
    static int spans(double min, double max)
    {
        return min != max && min < unsetMinimum && max > unsetMaximum && std::isfinite(max - min);
    }
};

}  // namespace pavane
