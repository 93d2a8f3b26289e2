#include "pavane/axes/windows/AMultiPlotWnd.h"

#include "pavane/axes/maps/MapFigure.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "platform/CDC.h"

#include <algorithm>
#include <cmath>
#include <utility>

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
    const int isDragged = std::exchange(drag_, {}).kind != DragKind::none;
    frame_.end();
    if (isDragged && GetSafeHwnd() && GetCapture() == this)
        ReleaseCapture();
    multi_ = nullptr;
    lineAt_ = std::numeric_limits<double>::quiet_NaN();
}

void AMultiPlotWnd::plotCame()
{
    multi_ = dynamic_cast<A2DAxisMulti*>(GetPlot());
    whole_.forget();
    known_.clear();
    steps_.clear();
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

int AMultiPlotWnd::changeInGesture(const Change& change)
{
    if (whole_.whole() == MultiRanges())
        settle();
    MultiRanges ranges = GetRanges();
    // a drag is a step by itself, from where it began
    if (!multi_ || drag_.kind != DragKind::none || !change(ranges))
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
    pictureMoved();
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
    if (self.alive())
        pictureMoved();
}

}  // namespace pavane
