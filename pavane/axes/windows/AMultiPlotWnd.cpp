#include "pavane/axes/windows/AMultiPlotWnd.h"

#include "pavane/axes/maps/MapFigure.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "platform/CDC.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// The pairs of all scales but the first, which is a part of the axis's own range.
ViewValues valuesOf(const MultiRanges& ranges)
{
    ViewValues values;
    for (std::size_t i = 1; i < ranges.y.size(); ++i)
        values.insert(values.end(), {ranges.y[i].min, ranges.y[i].max});
    return values;
}

}  // namespace

AMultiPlotWnd::AMultiPlotWnd()
{
    SetViewPart(
        ViewPart::scales, [this] { return multi_ ? valuesOf(GetRanges()) : ViewValues(); },
        [this](const ViewValues& values) {
            MultiRanges ranges = GetRanges();
            for (std::size_t i = 1; i < ranges.y.size() && 2 * i <= values.size(); ++i)
                ranges.y[i] = {values[2 * i - 2], values[2 * i - 1]};
            ShowRanges(ranges);
        });
}

AMultiPlotWnd::~AMultiPlotWnd() { leaveViews(); }

const char* AMultiPlotWnd::GetWndClassName() { return "AMultiPlotWnd"; }
void AMultiPlotWnd::OnMultiStatus(const MultiStatus&) {}
void AMultiPlotWnd::OnPanelsLeft(int) {}
void AMultiPlotWnd::OnPageChanged() {}

void AMultiPlotWnd::SetAxis(A2DAxisMulti* axis, int owned) { SetPlot(axis, owned); }

void AMultiPlotWnd::plotGoes()
{
    drag_ = {};
    frame_.end();
    multi_ = nullptr;
    lineAt_ = std::numeric_limits<double>::quiet_NaN();
    isAsked_ = 0;
}

void AMultiPlotWnd::plotCame()
{
    multi_ = dynamic_cast<A2DAxisMulti*>(GetPlot());
    whole_.forget();
    steps_.clear();
}

/// Ranges that the host gave its scales are those of the whole; the others come from the graphs.
void AMultiPlotWnd::resetRanges()
{
    if (!multi_)
        return APlotWnd::resetRanges();
    endDrag(1);
    multi_->resetRanges();
    for (int i = 0; i < static_cast<int>(asked_.y.size()) && i < multi_->getScaleCount(); ++i) {
        AYScale scale = multi_->getScale(i);
        const TMnMx& range = asked_.y[static_cast<std::size_t>(i)];
        if (i == 0 || range.min > range.max)
            continue;
        scale.range = range;
        multi_->setScale(i, scale);
    }
}

MultiRanges AMultiPlotWnd::GetRanges() const { return multi_ ? rangesOf(*multi_) : MultiRanges(); }

void AMultiPlotWnd::ShowRanges(const MultiRanges& ranges)
{
    if (!multi_)
        return;
    const MultiRanges shown = GetRanges();
    const auto isSpan = [](const TMnMx& span) {
        return span.min < span.max && std::isfinite(span.max - span.min);
    };
    for (std::size_t i = 1; i < std::min(shown.y.size(), ranges.y.size()); ++i) {
        if (!isSpan(ranges.y[i]) || ranges.y[i] == shown.y[i])
            continue;
        AYScale scale = multi_->getScale(static_cast<int>(i));
        scale.range = ranges.y[i];
        multi_->setScale(static_cast<int>(i), scale);
    }
    TMinMax range = multi_->getMinMax();
    if (isSpan(ranges.x)) {
        range.xMin = ranges.x.min;
        range.xMax = ranges.x.max;
    }
    if (!ranges.y.empty() && isSpan(ranges.y[0])) {
        range.yMin = ranges.y[0].min;
        range.yMax = ranges.y[0].max;
    }
    SetNewMinMax(range);
}

void AMultiPlotWnd::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    if (multi_ && !isAsked_) {
        asked_ = GetRanges();
        isAsked_ = 1;
    }
    APlotWnd::DrawWindow(dc, client, update);
}

/// A scale that went took its number from another one.
void AMultiPlotWnd::plotLaidOut()
{
    if (!multi_)
        return;
    const MultiRanges shown = GetRanges();
    if (shown.y.size() < whole_.whole().y.size())
        whole_.forget();
    whole_.learn(shown);
    fitFocus(*multi_, focus_);
}

/// Room for all plots and no more: where they stand must not depend on labels while they are
/// dragged.
int AMultiPlotWnd::plotMargins(const FigureLayout& layout, CRect& margins) const
{
    if (!multi_)
        return APlotWnd::plotMargins(layout, margins);
    const CRect bounds = multi_->getLayout().bounds();
    if (bounds.IsRectEmpty())
        return 0;
    margins = CRect(bounds.left - layout.all.left, bounds.top - layout.all.top,
                    layout.all.right - bounds.right, layout.all.bottom - bounds.bottom);
    return 1;
}

int AMultiPlotWnd::isLog(int direction) const { return isLogarithmic(*multi_, direction); }

CRect AMultiPlotWnd::panelPlot(int panel) const
{
    const MultiLayout::Panel* const found = multi_->getLayout().findPanel(panel);
    return found ? found->plot : CRect();
}

std::vector<int> AMultiPlotWnd::scalesOf(int panel) const
{
    const MultiLayout::Panel* const found = multi_->getLayout().findPanel(panel);
    return found ? found->scales : std::vector<int>();
}

void AMultiPlotWnd::saveRange(const TMinMax& shown)
{
    if (!multi_)
        return APlotWnd::saveRange(shown);
    steps_.push_back(GetRanges());
}

void AMultiPlotWnd::goBack()
{
    if (!multi_)
        return APlotWnd::goBack();
    if (steps_.empty())
        return;
    const MultiRanges ranges = steps_.back();
    steps_.pop_back();
    ShowRanges(ranges);
}

int AMultiPlotWnd::zoomSteps() const
{
    return multi_ ? static_cast<int>(steps_.size()) : APlotWnd::zoomSteps();
}

int AMultiPlotWnd::canGoBack() const { return zoomSteps() > 0; }

void AMultiPlotWnd::dropZoomStep()
{
    if (!multi_)
        APlotWnd::dropZoomStep();
    else if (!steps_.empty())
        steps_.pop_back();
}

int AMultiPlotWnd::changeInGesture(const Change& change)
{
    if (whole_.whole() == MultiRanges())
        settle();
    MultiRanges ranges = GetRanges();
    if (!multi_ || !change(ranges))
        return 0;
    beginZoomStep();
    const LifeWatch self(life());
    ShowRanges(ranges);
    if (self.alive())
        showStatusAtPointer();
    return 1;
}

int AMultiPlotWnd::changeOnce(const Change& change)
{
    endGesture();
    if (whole_.whole() == MultiRanges())
        settle();
    MultiRanges ranges = GetRanges();
    if (!multi_ || !change(ranges))
        return 0;
    const LifeWatch self(life());
    BeginView();
    saveRange(multi_->getMinMax());
    ShowRanges(ranges);
    if (self.alive())
        EndView();
    if (self.alive())
        showStatusAtPointer();
    return 1;
}

void AMultiPlotWnd::ZoomDirection(int direction, double at, double factor)
{
    if (multi_)
        changeInGesture([&](MultiRanges& ranges) {
            return whole_.zoom(ranges, direction, at, factor, isLog(direction));
        });
}

void AMultiPlotWnd::ShowWholeDirection(int direction)
{
    changeOnce([&](MultiRanges& ranges) { return whole_.showWhole(ranges, direction); });
}

int AMultiPlotWnd::isViewZoomed() const
{
    if (!multi_)
        return APlotWnd::isViewZoomed();
    const MultiRanges shown = GetRanges();
    for (int i = directionX; i < static_cast<int>(shown.y.size()); ++i)
        if (whole_.isZoomed(shown, i, isLog(i)))
            return 1;
    return 0;
}

void AMultiPlotWnd::showWholeView()
{
    if (!multi_)
        return APlotWnd::showWholeView();
    changeOnce([&](MultiRanges& ranges) {
        int changed = 0;
        for (int i = directionX; i < static_cast<int>(ranges.y.size()); ++i)
            changed = whole_.showWhole(ranges, i) || changed;
        return changed;
    });
}

/// Of hosts that know nothing of scales: x in all panels.
void AMultiPlotWnd::zoomView(CPoint pixel, double factor)
{
    if (!multi_)
        return APlotWnd::zoomView(pixel, factor);
    const MultiHit hit = multi_->hitTest(pixel);
    CRect plot = panelPlot(hit.panel < 0 ? focus_.panel : hit.panel);
    if (plot.IsRectEmpty())
        return;
    const double at = xAtPixel(*multi_, plot, std::clamp(pixel.x, plot.left, plot.right));
    ZoomDirection(directionX, at, factor);
}

void AMultiPlotWnd::panView(int dx, int dy)
{
    if (!multi_)
        return APlotWnd::panView(dx, dy);
    const CRect plot = panelPlot(focus_.panel);
    if (!plot.IsRectEmpty())
        changeInGesture([&](MultiRanges& ranges) {
            return panBy(ranges, focus_.panel, static_cast<double>(dx) / plot.Width(),
                         static_cast<double>(dy) / plot.Height());
        });
}

/// What is seen `right` and `down` lengths of the plot from there.
int AMultiPlotWnd::panBy(MultiRanges& ranges, int panel, double right, double down) const
{
    const double x = multi_->getXDirect() < 0 ? -right : right;
    int changed = right != 0 && whole_.shift(ranges, directionX, x, isLog(directionX));
    for (const int scale : scalesOf(panel)) {
        const double y = multi_->getScale(scale).direct < 0 ? down : -down;
        changed = (down != 0 && whole_.shift(ranges, scale, y, isLog(scale))) || changed;
    }
    return changed;
}

int AMultiPlotWnd::zoomScalesAbout(MultiRanges& ranges, int panel, int gy, double factor) const
{
    int changed = 0;
    for (const int scale : scalesOf(panel))
        changed = whole_.zoom(ranges, scale, multi_->GPYtoRPY(scale, gy), factor, isLog(scale)) ||
                  changed;
    return changed;
}

int AMultiPlotWnd::GetPages(CDC& dc)
{
    return multi_ ? multi_->getPages() : APlotWnd::GetPages(dc);
}

void AMultiPlotWnd::PrintWindow(CDC& dc, CRect& rect, int page)
{
    if (!multi_)
        return APlotWnd::PrintWindow(dc, rect, page);
    const int shown = multi_->getPage();
    multi_->setPage(page - 1);
    DrawPicture(dc, rect);
    multi_->setPage(shown);
    ContentChanged();
}

void AMultiPlotWnd::GraphChanged(AGraph* graph)
{
    if (!multi_ || multi_->getScaleOf(graph) < 0)
        return ContentChanged();
    multi_->setChanged(graph);
    if (!patchContent([&](CDC& dc, CRect& rect) { return multi_->drawChanged(dc, rect); }))
        return ContentChanged();
    CRect panel = panelPlot(multi_->getScale(multi_->getScaleOf(graph)).panel);
    panel.InflateRect(multi_->getFHeight(), multi_->getFHeight());
    if (GetSafeHwnd())
        InvalidateRect(panel);
}

void AMultiPlotWnd::ShowPage(int page)
{
    if (!multi_)
        return;
    const int wanted = std::clamp(page, 0, multi_->getPages() - 1);
    if (wanted == multi_->getPage())
        return;
    (void)giveUpDrag();
    multi_->setPage(wanted);
    ContentChanged();
    if (GetSafeHwnd()) {
        UpdateWindow();  // the focus is one of what is laid out
        NotifyWinEvent(EVENT_OBJECT_REORDER, GetSafeHwnd(), 0);
        NotifyWinEvent(EVENT_OBJECT_FOCUS, GetSafeHwnd(), GetAccessFocus());
    }
    const LifeWatch self(life());
    OnPageChanged();
    if (self.alive())
        showStatusAtPointer();
}

}  // namespace pavane
