#include "pavane/axes/maps/AAxisScaleBar.h"

#include "pavane/axes/figure_units.h"
#include "pavane/axes/fitted_text.h"
#include "pavane/axes/PlotLayout.h"
#include "platform/CDC.h"
#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// Labels of a vertical bar are at least this many font heights apart.
constexpr double labelSpacing = 1.2;
/// About so many font heights of bar go to one interval.
constexpr int intervalHeights = 4;
/// A title may be so many font heights longer than its bar, which there is room for about a plot.
constexpr int titleHeights = 4;

/// Selects a font, a transparent background and black text for as long as it lives.
class BarText
{
public:
    BarText(CDC& dc, int height, double angle) : dc_(dc)
    {
        ABAxis::CreateAxisFont(font_, height, 0, angle);
        oldFont_ = dc.SelectObject(&font_);
        oldMode_ = dc.SetBkMode(TRANSPARENT);
        oldColor_ = dc.SetTextColor(RGB(0, 0, 0));
    }
    BarText(const BarText&) = delete;
    BarText& operator=(const BarText&) = delete;
    ~BarText()
    {
        dc_.SetTextColor(oldColor_);
        dc_.SetBkMode(oldMode_);
        dc_.SelectObject(oldFont_);
    }

private:
    CDC& dc_;
    CFont font_;
    CFont* oldFont_;
    int oldMode_;
    COLORREF oldColor_;
};

}  // namespace

int AAxisScaleBar::along(const CRect& bar, double position) const
{
    return horizontal_ ? bar.left + truncated(position * bar.Width() + 0.5)
                       : bar.bottom - truncated(position * bar.Height() + 0.5);
}

int AAxisScaleBar::widestLabel(CDC& dc, const ScaleTicks& ticks) const
{
    const BarText text(dc, fHeight_, 0.0);
    int widest = 0;
    for (const ScaleTick& tick : ticks.ticks)
        widest = std::max(widest, dc.GetTextExtent(tick.label).cx);
    return widest;
}

/// Beside a vertical bar labels need their height; below a horizontal one their width, which is
/// known only when they are chosen.
ScaleTicks AAxisScaleBar::fittingTicks(CDC& dc, int length) const
{
    int intervals = std::clamp(length / std::max(1, intervalHeights * fHeight_), 1, 10);
    ScaleTicks chosen = ticks(intervals);
    while (horizontal_ && intervals > 1 &&
           (widestLabel(dc, chosen) + fHeight_) * intervals > length)
        chosen = ticks(--intervals);
    return chosen;
}

int AAxisScaleBar::neededBreadth(CDC& dc, int length) const
{
    const ScaleTicks chosen = fittingTicks(dc, length);
    const int title = chosen.title.empty() ? 0 : fHeight_ * 3 / 2;
    const int labels = horizontal_ ? fHeight_ : widestLabel(dc, chosen);
    const FigureUnits units(dc);
    return barBreadth() + units.ofFont(fHeight_, majorTickLength) +
           units.ofFont(fHeight_, labelGap) + labels + title;
}

void AAxisScaleBar::draw(CDC& dc, CRect& rect)
{
    setDc(&dc);
    CRect bar = rect;
    if (horizontal_)
        bar.bottom = bar.top + barBreadth();
    else
        bar.right = bar.left + barBreadth();
    if (bar.IsRectEmpty())
        return;
    const ScaleTicks chosen = fittingTicks(dc, horizontal_ ? bar.Width() : bar.Height());
    if (chosen.ticks.empty())
        return;
    drawBar(dc, bar, chosen);
    CPen pen(PS_SOLID, FigureUnits(dc).line(fHeight_, 12), RGB(0, 0, 0));
    CPen* const oldPen = dc.SelectObject(&pen);
    const CPoint frame[] = {{bar.left, bar.top},
                            {bar.right, bar.top},
                            {bar.right, bar.bottom},
                            {bar.left, bar.bottom},
                            {bar.left, bar.top}};
    dc.Polyline(frame, 5);
    drawLabels(dc, bar, chosen);
    dc.SelectObject(oldPen);
    drawTitle(dc, bar, chosen, widestLabel(dc, chosen));
}

/// Every tick gets its stroke, and its label where that keeps clear of the one before.
void AAxisScaleBar::drawLabels(CDC& dc, const CRect& bar, const ScaleTicks& ticks)
{
    const BarText text(dc, fHeight_, 0.0);
    const FigureUnits units(dc);
    const int tickEnd = units.ofFont(fHeight_, majorTickLength) + (dc.IsVector() ? 0 : 1);
    const int gap = units.ofFont(fHeight_, labelGap);
    int freeFrom = horizontal_ ? bar.left - bar.Width() : bar.bottom + bar.Height();
    for (const ScaleTick& tick : ticks.ticks) {
        const int at = along(bar, tick.position);
        const CSize size = dc.GetTextExtent(tick.label);
        if (horizontal_) {
            dc.MoveTo(at, bar.bottom);
            dc.LineTo(at, bar.bottom + tickEnd);
            if (at - size.cx / 2 < freeFrom)
                continue;
            dc.TextOut(at - size.cx / 2, bar.bottom + gap, tick.label);
            freeFrom = at + size.cx / 2 + fHeight_ / 2;
        } else {
            dc.MoveTo(bar.right, at);
            dc.LineTo(bar.right + tickEnd, at);
            if (at > freeFrom)
                continue;
            dc.TextOut(bar.right + gap, at - size.cy / 2, tick.label);
            freeFrom = at - truncated(labelSpacing * fHeight_);
        }
    }
}

void AAxisScaleBar::drawTitle(CDC& dc, const CRect& bar, const ScaleTicks& ticks, int widest)
{
    if (ticks.title.empty())
        return;
    const BarText text(dc, fHeight_, horizontal_ ? 0.0 : 90.0);
    const int length = horizontal_ ? bar.Width() : bar.Height();
    const CString title = fittedLine(dc, ticks.title, length + titleHeights * fHeight_);
    const CSize size = dc.GetTextExtent(title);
    const CPoint centre = bar.CenterPoint();
    const int away = FigureUnits(dc).ofFont(fHeight_, [this](int height) {
        return labelGap(height) + (horizontal_ ? height * 5 / 4 : height * 2 / 5);
    });
    if (horizontal_)
        dc.TextOut(centre.x - size.cx / 2, bar.bottom + away, title);
    else
        dc.TextOut(bar.right + away + widest, centre.y + size.cx / 2, title);
}

}  // namespace pavane
