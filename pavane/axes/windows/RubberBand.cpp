#include "pavane/axes/windows/RubberBand.h"

#include "platform/CDC.h"

#include <algorithm>
#include <cstdlib>

namespace pavane
{

namespace
{

/// A press that moves less than this in either direction is a click.
constexpr int leastSide = 3;
/// Dark beside light is seen on curves and on maps alike.
constexpr COLORREF outerColor = RGB(255, 255, 255);
constexpr COLORREF innerColor = RGB(40, 40, 40);

void drawFrame(CDC& dc, const CRect& rect, COLORREF color)
{
    dc.FillSolidRect(CRect(rect.left, rect.top, rect.right, rect.top + 1), color);
    dc.FillSolidRect(CRect(rect.left, rect.bottom - 1, rect.right, rect.bottom), color);
    dc.FillSolidRect(CRect(rect.left, rect.top, rect.left + 1, rect.bottom), color);
    dc.FillSolidRect(CRect(rect.right - 1, rect.top, rect.right, rect.bottom), color);
}

}  // namespace

int RubberBand::begin(CPoint point, const CRect& plot, BandSides sides)
{
    end();
    if (!plot.PtInRect(point))
        return 0;
    state_ = State::going;
    plot_ = plot;
    sides_ = sides;
    from_ = to_ = point;
    if (sides == BandSides::across)
        from_.y = plot.top;
    else if (sides == BandSides::up)
        from_.x = plot.left;
    moveTo(point);
    return 1;
}

void RubberBand::moveTo(CPoint point)
{
    to_.x = std::clamp(point.x, plot_.left, plot_.right - 1);
    to_.y = std::clamp(point.y, plot_.top, plot_.bottom - 1);
    if (sides_ == BandSides::across)
        to_.y = plot_.bottom - 1;
    else if (sides_ == BandSides::up)
        to_.x = plot_.right - 1;
}

void RubberBand::release()
{
    if (isGoing())
        state_ = State::released;
}

int RubberBand::isWide() const
{
    const int isAcross = std::abs(to_.x - from_.x) >= leastSide || sides_ == BandSides::up;
    const int isUp = std::abs(to_.y - from_.y) >= leastSide || sides_ == BandSides::across;
    return state_ != State::none && isAcross && isUp;
}

CRect RubberBand::frame() const
{
    if (!isGoing() || !isWide())
        return {};
    return {std::min(from_.x, to_.x) - 1, std::min(from_.y, to_.y) - 1,
            std::max(from_.x, to_.x) + 2, std::max(from_.y, to_.y) + 2};
}

void RubberBand::draw(CDC& dc) const
{
    CRect rect = frame();
    if (rect.IsRectEmpty())
        return;
    drawFrame(dc, rect, outerColor);
    rect.DeflateRect(1, 1);
    drawFrame(dc, rect, innerColor);
}

}  // namespace pavane
