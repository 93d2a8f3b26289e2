#include "pavane/axes/windows/PlayDrag.h"

#include "pavane/images/color_slope.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace pavane
{

namespace
{

/// A press that moves less than this in both directions is a click.
constexpr int leastMove = 3;

}  // namespace

void PlayDrag::press(CPoint point, CSize size, const AColorPlay& before)
{
    state_ = State::waiting;
    last_ = point;
    size_ = {std::max(1, size.cx), std::max(1, size.cy)};
    across_ = up_ = 0;
    before_ = play_ = before;
}

int PlayDrag::moveTo(CPoint point, int fine)
{
    const int dx = point.x - last_.x, dy = last_.y - point.y;
    if (state_ == State::none || (dx == 0 && dy == 0))
        return 0;
    if (isWaiting() && std::abs(dx) < leastMove && std::abs(dy) < leastMove)
        return 0;
    state_ = State::going;
    last_ = point;
    across_ += fine ? dx * finePart : dx;
    up_ += fine ? dy * finePart : dy;
    play_.bias = before_.bias + across_ / size_.cx;
    // where the drag goes neither up nor down, a contrast that no drag makes stays
    play_.contrast = up_ == 0
                         ? before_.contrast
                         : steeper(before_.contrast, std::pow(contrastOfHeight, up_ / size_.cy));
    return 1;
}

}  // namespace pavane
