#include "pavane/trackers/shapes/key_steps.h"

#include "platform/messages.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// One direction of a step; `sign` is where the arrow points on the screen.
double offsetAlong(int sign, KeyStep step, double cell, double pixel)
{
    if (!sign || pixel == 0 || !std::isfinite(pixel))
        return 0;
    if (step == KeyStep::pixel || cell == 0 || !std::isfinite(cell))
        return sign * pixel;
    const double cells = step == KeyStep::tenCells ? 10 : 1;
    return sign * std::copysign(cells * cell, pixel);
}

double offsetAlongInside(double offset, double from, double to, double first, double last)
{
    const double back = std::min(first, last) - std::min(from, to);
    const double on = std::max(first, last) - std::max(from, to);
    if (std::isnan(offset))
        return 0;
    // comparisons that fail for what is no number leave no way to go
    const double least = back < 0 ? back : 0;
    const double most = on > 0 ? on : 0;
    return offset < least ? least : offset > most ? most : offset;
}

/// The whole part that is nearest; the rest stays in `value`.
int takeWhole(double& value)
{
    const int whole = truncated(std::round(value));
    value = std::isfinite(value) ? value - whole : 0;
    return whole;
}

}  // namespace

KeyDirection arrowDirection(int virtualKey)
{
    switch (virtualKey) {
    case VK_LEFT:
        return {-1, 0};
    case VK_RIGHT:
        return {1, 0};
    case VK_UP:
        return {0, -1};
    case VK_DOWN:
        return {0, 1};
    default:
        return {};
    }
}

APoint<double> keyOffset(KeyDirection direction, KeyStep step, const StepScale& scale)
{
    return {offsetAlong(direction.right, step, scale.cell.x, scale.pixel.x),
            offsetAlong(direction.down, step, scale.cell.y, scale.pixel.y)};
}

APoint<double> offsetInside(APoint<double> offset, const ARect<double>& box,
                            const ARect<double>& bounds)
{
    return {offsetAlongInside(offset.x, box.left, box.right, bounds.left, bounds.right),
            offsetAlongInside(offset.y, box.top, box.bottom, bounds.top, bounds.bottom)};
}

APoint<int> PixelSteps::take(APoint<double> offset)
{
    rest_.x += offset.x;
    rest_.y += offset.y;
    return {takeWhole(rest_.x), takeWhole(rest_.y)};
}

}  // namespace pavane
