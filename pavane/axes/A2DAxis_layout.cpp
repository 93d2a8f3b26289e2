#include "pavane/axes/A2DAxis.h"

#include "pavane/axes/ABSkyGrid.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/fitted_text.h"
#include "pavane/axes/label_spans.h"
#include "pavane/axes/page_layout.h"
#include "pavane/axes/PlotLayout.h"
#include "pavane/axes/SelectedObject.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

/// Ticks alone: of a plot whose neighbour has the labels.
void dropLabels(TickSet& set)
{
    set.title.clear();
    for (TickSet::Tick& tick : set.major)
        tick.label.clear();
}

}  // namespace

TickSet A2DAxis::xTicks(int intervals) const
{
    if (hasSkyTicks_)
        return skyGrid_->edgeTicks(0, intervals);
    const TickWish wish = wishOf(nameOX_, range_.xMin, range_.xMax, intervals, nxpDigit_, nxmDigit_,
                                 isFlagSet(axisNoMinorTicks));
    if (xDirect_ == 2)
        return timeTicks(wish);
    return xDirect_ == 0 ? logarithmicTicks(wish) : linearTicks(wish);
}

TickSet A2DAxis::yTicks(int intervals) const
{
    if (hasSkyTicks_)
        return skyGrid_->edgeTicks(1, intervals);
    const TickWish wish = wishOf(nameOY_, range_.yMin, range_.yMax, intervals, nypDigit_, nymDigit_,
                                 isFlagSet(axisNoMinorTicks));
    return yDirect_ == 0 ? logarithmicTicks(wish) : linearTicks(wish);
}

/// Y ticks whose labels do not touch, and the left edge that they leave for the plot.
void A2DAxis::chooseYTicks(CDC& dc, PlotLayout& layout)
{
    const int height = layout.graph.Height();
    LabelSpans spans;
    const auto tryIntervals = [&](int n) {
        layout.y = yTicks(n);
        spans = {};
        for (const TickSet::Tick& tick : layout.y.major) {
            if (tick.label.empty())
                continue;
            spans.centres.push_back(RPYtoWPY(tick.value) * height);
            spans.lengths.push_back(fHeight_);
        }
    };
    int n = startIntervals(yIntervals_, height, fHeight_);
    for (tryIntervals(n); n > 1 && !spans.areApart(0); tryIntervals(n))
        n = fewerIntervals(n);
    while (spans.centres.empty() && n < std::min(yIntervals_, mostFlatIntervals))
        tryIntervals(++n);  // so wide a step may miss the range: rather too many and thinned
    thinLabels(layout.y, spans, 0);
    if (hasSkyTicks_)
        skyGrid_->shortenLabels(1, layout.y);
    layout.yLabelWidth = 0;
    if (isFlagSet(axisNoYLabels)) {
        dropLabels(layout.y);
        layout.graph.left = layout.picture.left + majorTickLength(fHeight_);
        return;
    }
    for (const TickSet::Tick& tick : layout.y.major)
        layout.yLabelWidth = std::max(layout.yLabelWidth, dc.GetTextExtent(tick.label).cx);
    const int titleWidth = layout.y.title.empty() ? 0 : titleRoom(fHeight_);
    layout.graph.left = layout.picture.left + layout.yLabelWidth + fHeight_ + titleWidth;
}

/// X ticks whose labels do not touch, and the side edges that keep all labels in the picture.
void A2DAxis::chooseXTicks(CDC& dc, PlotLayout& layout)
{
    const double gap = fHeight_ * 0.5;
    const CRect before = layout.graph;
    int n = startIntervals(xIntervals_, before.Width(), fHeight_);
    LabelSpans spans;
    for (;;) {
        layout.x = xTicks(n);
        spans = {};
        double left = before.left;
        double right = before.right;
        for (const TickSet::Tick& tick : layout.x.major) {
            if (tick.label.empty())
                continue;
            const double along = RPXtoWPX(tick.value);
            const double w = xDirect_ < 0 ? 1 - along : along;
            const int length = dc.GetTextExtent(tick.label).cx;
            spans.centres.push_back(w);
            spans.lengths.push_back(length);
            if (isFlagSet(axisNoXLabels))
                continue;
            if (w < 0.5)
                left = std::max(left, (layout.picture.left + length * 0.5 - w * right) / (1 - w));
            else
                right = std::min(right, left + (layout.picture.right - length * 0.5 - left) / w);
        }
        layout.graph.left = truncated(std::ceil(left));
        layout.graph.right = truncated(right);
        for (double& centre : spans.centres)
            centre = left + centre * (right - left);
        if (n <= 1 || spans.areApart(gap))
            break;
        n = fewerIntervals(n);
    }
    thinLabels(layout.x, spans, gap);
    if (hasSkyTicks_)
        finishSkyTicks(dc, layout);
    if (isFlagSet(axisNoXLabels))
        dropLabels(layout.x);
}

/// A label that went takes with it what the next one left out: longer ones may touch anew.
void A2DAxis::finishSkyTicks(CDC& dc, PlotLayout& layout)
{
    const CRect& graph = layout.graph;
    for (std::ptrdiff_t before = -1; before != countLabels(layout.x);) {
        before = countLabels(layout.x);
        skyGrid_->shortenLabels(0, layout.x);
        LabelSpans spans;
        for (const TickSet::Tick& tick : layout.x.major) {
            if (tick.label.empty())
                continue;
            const double along = RPXtoWPX(tick.value);
            const double w = xDirect_ < 0 ? 1 - along : along;
            spans.centres.push_back(graph.left + w * graph.Width());
            spans.lengths.push_back(dc.GetTextExtent(tick.label).cx);
        }
        thinLabels(layout.x, spans, fHeight_ * 0.5);
    }
    layout.hasOpposite = 1;
    layout.top = skyGrid_->oppositeTicks(0);
    layout.right = skyGrid_->oppositeTicks(1);
    if (isFlagSet(axisNoMinorTicks))
        return;
    layout.x.minor = skyGrid_->minorTicks(0, 0);
    layout.y.minor = skyGrid_->minorTicks(1, 0);
    layout.top.minor = skyGrid_->minorTicks(0, 1);
    layout.right.minor = skyGrid_->minorTicks(1, 1);
}

void A2DAxis::boundGraphRect(PlotLayout& layout) const
{
    CRect& graph = layout.graph;
    if (borderRect_.left != -1)
        graph.left = std::max(graph.left, borderRect_.left);
    if (borderRect_.top != -1)
        graph.top = std::max(graph.top, borderRect_.top);
    if (borderRect_.right != -1)
        graph.right = std::min(graph.right, layout.picture.right - borderRect_.right);
    if (borderRect_.bottom != -1)
        graph.bottom = std::min(graph.bottom, layout.picture.bottom - borderRect_.bottom);
}

int A2DAxis::composeLayout(CDC& dc, const CRect& rect, PlotLayout& layout)
{
    dc_ = &dc;
    setUpParameters();
    const int hasRoom =
        FigureUnits(dc).arePixels() ? compose(dc, rect, layout) : composeOnPage(dc, rect, layout);
    graphRect_ = layout.graph;
    return hasRoom && graphRect_.right > graphRect_.left && graphRect_.bottom > graphRect_.top;
}

/// A page is laid out as a picture of its size, so that it shows the same labels in the same
/// places, and then made finer.
int A2DAxis::composeOnPage(const CDC& dc, const CRect& rect, PlotLayout& layout)
{
    const int hasRoom =
        layOutOnPage(dc, rect, borderRect_, fHeight_, [&](CDC& ruler, const CRect& pixels) {
            return compose(ruler, pixels, layout);
        });
    const FigureUnits units(dc);
    layout.picture = rect;
    layout.graph = units.units(layout.graph, rect.TopLeft());
    layout.headerLeft = rect.left + units.units(layout.headerLeft);
    layout.headerRight = rect.left + units.units(layout.headerRight);
    layout.headerHeight = units.units(layout.headerHeight);
    layout.yLabelWidth = units.units(layout.yLabelWidth);
    return hasRoom;
}

int A2DAxis::compose(CDC& dc, const CRect& rect, PlotLayout& layout)
{
    layout.picture = rect;
    fHeight_ = std::max(1, calcFontHeight(dc, layout.picture));
    layout.header = getHeaderString(0);
    hasSkyTicks_ = skyGrid_ && skyGrid_->prepare(*this);
    const int air = fHeight_ / 2;
    const int titleHeight = xTicks(1).title.empty() ? 0 : titleRoom(fHeight_);
    const int below =
        isFlagSet(axisNoXLabels) ? majorTickLength(fHeight_) + 1 : 2 * fHeight_ + titleHeight;
    layout.graph =
        CRect(rect.left + fHeight_, rect.top + air, rect.right - 1 - air, rect.bottom - below);
    if (!layout.header.empty())
        layout.graph.top += fHeight_;

    CFont font;
    if (!CreateAxisFont(font, fHeight_, 0, 0.0))
        return 0;
    const SelectedObject<CFont> selected(dc, font);
    boundGraphRect(layout);  // labels have to fit into what the bounds leave
    chooseYTicks(dc, layout);
    boundGraphRect(layout);
    chooseXTicks(dc, layout);
    if (!layout.header.empty()) {
        CFont bold;
        CreateAxisFont(bold, fHeight_, 1, 0.0);
        const SelectedObject<CFont> header(dc, bold);
        const int centre = layout.graph.CenterPoint().x;
        const int half =
            std::max(std::min(centre - rect.left, rect.right - centre), layout.graph.Width() / 2);
        layout.headerLeft = centre - half;
        layout.headerRight = centre + half;
        layout.header = fittedLines(dc, layout.header, layout.headerRight - layout.headerLeft,
                                    rect.Height() / 3);
        CRect text(layout.headerLeft, rect.top, layout.headerRight, rect.top);
        dc.DrawText(layout.header, text, DT_CENTER | DT_WORDBREAK | DT_NOPREFIX | DT_CALCRECT);
        layout.headerHeight = text.Height();
        layout.graph.top = rect.top + air + layout.headerHeight;
    }
    boundGraphRect(layout);
    return 1;
}

int A2DAxis::layOut(CDC& dc, const CRect& rect)
{
    CDC* const before = dc_;
    PlotLayout layout;
    const int result = composeLayout(dc, rect, layout);
    dc_ = before;
    return result;
}

}  // namespace pavane
