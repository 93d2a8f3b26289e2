// What the pointer does in a plot with several scales.
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/windows/AMultiPlotWnd.h"
#include "platform/CDC.h"
#include "platform/cursors.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

/// Magnification of one notch of the wheel.
constexpr double zoomOfNotch = 1.25;
/// Part of a plot that one notch of the wheel pans by.
constexpr double panOfNotch = 0.15;

}  // namespace

/// Non-zero over an axis, with the direction that it is of.
int AMultiPlotWnd::directionAt(CPoint point, int& direction) const
{
    const MultiHit hit = multi_->hitTest(point);
    direction = hit.scale >= 0 ? hit.scale : directionX;
    return hit.part == MultiPart::yAxis || hit.part == MultiPart::xAxis ||
           (hit.part == MultiPart::title && hit.panel >= 0);
}

int AMultiPlotWnd::takePress(unsigned flags, CPoint point)
{
    if (!multi_)
        return APlotWnd::takePress(flags, point);
    const MultiHit hit = multi_->hitTest(point);
    int direction = 0;
    const int isAxis = directionAt(point, direction);
    if (hit.panel >= 0)
        SetPlotFocus({isAxis && hit.scale >= 0 ? MultiFocusKind::scale : MultiFocusKind::panel,
                      hit.panel, isAxis ? hit.scale : -1, -1, -1});
    endDrag(1);
    if (spaceHeld_) {
        beginPanelDrag(point);
    } else if (isAxis) {
        drag_ = {DragKind::axis, direction, hit.panel, point, GetRanges(), 0};
    } else if (hit.part == MultiPart::plot) {
        const CRect plot = panelPlot(hit.panel);
        if (takesRectangles()) {
            if (frame_.begin(point, CRect(plot.left, plot.top, plot.right + 1, plot.bottom + 1)))
                drag_ = {DragKind::band, directionX, hit.panel, point, {}, 0};
            return 0;
        }
        const CRect all = multi_->getLayout().bounds();
        // x is that of all panels, so the band is as high as all
        const int across = !(flags & MK_SHIFT);
        const CRect room(plot.left, across ? all.top : plot.top, plot.right + 1,
                         (across ? all.bottom : plot.bottom) + 1);
        if (frame_.begin(point, room, across ? BandSides::across : BandSides::up))
            drag_ = {DragKind::band, directionX, hit.panel, point, {}, 0};
    }
    return 0;
}

void AMultiPlotWnd::beginPanelDrag(CPoint point)
{
    const int panel = multi_->hitTest(point).panel;
    drag_ = {DragKind::panel, directionX, panel < 0 ? focus_.panel : panel, point, GetRanges(), 0};
}

int AMultiPlotWnd::panAxis(MultiRanges& ranges, int direction, const CRect& plot, CPoint way) const
{
    if (direction == directionX)
        return panBy(ranges, -1, static_cast<double>(way.x) / plot.Width(), 0);
    const double down = static_cast<double>(way.y) / plot.Height();
    const double shift = multi_->getScale(direction).direct < 0 ? down : -down;
    return whole_.shift(ranges, direction, shift, isLog(direction));
}

/// Always from where the drag began, so that plot and pointer stay together at the edges too.
void AMultiPlotWnd::dragTo(CPoint point)
{
    const CRect plot = panelPlot(drag_.panel);
    if (drag_.kind == DragKind::none || plot.Width() <= 0 || plot.Height() <= 0)
        return;
    const CPoint way(drag_.start.x - point.x, drag_.start.y - point.y);
    MultiRanges ranges = drag_.ranges;
    if (drag_.kind == DragKind::axis)
        (void)panAxis(ranges, drag_.direction, plot, way);
    else
        (void)panBy(ranges, drag_.panel, static_cast<double>(way.x) / plot.Width(),
                    static_cast<double>(way.y) / plot.Height());
    if (ranges == GetRanges())
        return;
    if (!std::exchange(drag_.isStep, 1)) {
        endGesture();
        BeginView();
        saveRange(multi_->getMinMax());
    }
    ShowRanges(ranges);
}

/// Without `keep` the ranges are those from before.
void AMultiPlotWnd::endDrag(int keep)
{
    if (drag_.kind == DragKind::none)
        return;
    invalidateBand();
    frame_.end();
    const Drag drag = std::exchange(drag_, {});
    const LifeWatch self(life());
    if (drag.isStep && !keep) {
        dropZoomStep();
        ShowRanges(drag.ranges);
    }
    if (self.alive() && drag.isStep)
        EndView();
    if (self.alive() && GetSafeHwnd() && GetCapture() == this)
        ReleaseCapture();
}

int AMultiPlotWnd::giveUpDrag()
{
    if (drag_.kind == DragKind::none)
        return APlotWnd::giveUpDrag();
    endDrag(0);
    return 1;
}

void AMultiPlotWnd::rangeIsNew()
{
    const LifeWatch self(life());
    if (drag_.kind == DragKind::band)
        endDrag(1);  // it was drawn about what was shown
    if (self.alive())
        pictureMoved();
}

void AMultiPlotWnd::pointerMoved(unsigned, CPoint point)
{
    pointerAt_ = point;
    if (!multi_)
        return;
    const LifeWatch self(life());
    if (drag_.kind == DragKind::band) {
        invalidateBand();
        frame_.moveTo(point);
        invalidateBand();
    } else if (drag_.kind != DragKind::none) {
        dragTo(point);
    }
    if (self.alive())
        tellPointer();
}

void AMultiPlotWnd::tellPointer()
{
    if (!multi_)
        return;
    const MultiStatus status = statusAt(*multi_, pointerAt_);
    moveLine(status.inPlot ? status.x : std::numeric_limits<double>::quiet_NaN());
    tellStatus(status);
}

/// Something else lies under the pointer now; a drag tells of itself.
void AMultiPlotWnd::pictureMoved()
{
    if (pointerAt_.x >= 0 && drag_.kind == DragKind::none)
        tellPointer();
}

void AMultiPlotWnd::OnMouseLeave()
{
    pointerAt_ = CPoint(-1, -1);
    moveLine(std::numeric_limits<double>::quiet_NaN());
    const LifeWatch self(life());
    tellStatus({});
    if (self.alive())
        APlotWnd::OnMouseLeave();
}

void AMultiPlotWnd::OnLButtonUp(unsigned flags, CPoint point)
{
    const RubberBand band = frame_;
    const int isBand = drag_.kind == DragKind::band;
    const int panel = drag_.panel;
    const LifeWatch self(life());
    endDrag(1);
    if (self.alive())
        APlotWnd::OnLButtonUp(flags, point);
    if (!self.alive() || !multi_ || !isBand || !band.isWide())
        return;
    if (band.sides() != BandSides::both)
        return showBand(band, panel);
    CRect rect(band.from().x, band.from().y, band.to().x, band.to().y);
    rect.NormalizeRect();
    takeRectangle(panel, rect);
}

int AMultiPlotWnd::takesRectangles() const { return 0; }
void AMultiPlotWnd::takeRectangle(int, const CRect&) {}

void AMultiPlotWnd::showBand(const RubberBand& band, int panel)
{
    settle();
    const int isAcross = band.sides() == BandSides::across;
    const CRect plot = panelPlot(panel);
    if (plot.IsRectEmpty())
        return;
    changeOnce([&](MultiRanges& ranges) {
        if (isAcross)
            return whole_.choose(ranges, directionX, xAtPixel(*multi_, plot, band.from().x),
                                 xAtPixel(*multi_, plot, band.to().x), isLog(directionX));
        int changed = 0;
        for (const int scale : scalesOf(panel))
            changed = whole_.choose(ranges, scale, multi_->GPYtoRPY(scale, band.from().y),
                                    multi_->GPYtoRPY(scale, band.to().y), isLog(scale)) ||
                      changed;
        return changed;
    });
}

/// Shows all of the axis under the pointer.
void AMultiPlotWnd::OnLButtonDblClk(unsigned flags, CPoint point)
{
    settle();
    int direction = 0;
    if (!multi_ || !directionAt(point, direction))
        return APlotWnd::OnLButtonDblClk(flags, point);
    ShowWholeDirection(direction);
}

void AMultiPlotWnd::OnMButtonDown(unsigned flags, CPoint point)
{
    if (!multi_)
        return APlotWnd::OnMButtonDown(flags, point);
    settle();
    if (presses() > 0 || GetCapture() || !IsRangeZoomed())
        return;
    endGesture();
    SetFocus();
    SetCapture();
    beginPanelDrag(point);
    SetCursor(IDC_HAND);
}

void AMultiPlotWnd::OnMButtonUp(unsigned flags, CPoint point)
{
    if (drag_.kind == DragKind::panel)
        return endDrag(1);
    APlotWnd::OnMButtonUp(flags, point);
}

void AMultiPlotWnd::OnCaptureChanged(CWnd* next)
{
    const LifeWatch self(life());
    if (next != this)
        endDrag(drag_.kind != DragKind::band);
    if (self.alive())
        APlotWnd::OnCaptureChanged(next);
}

void AMultiPlotWnd::OnDestroy()
{
    endDrag(1);
    APlotWnd::OnDestroy();
}

int AMultiPlotWnd::OnMouseWheel(unsigned flags, int delta, CPoint screen)
{
    // not the plot's: it would pan what it takes for the range
    const auto passOn = [&] {
        // NOLINTNEXTLINE(bugprone-parent-virtual-call)
        return ABWindow::OnMouseWheel(flags, delta, screen);
    };
    if (!multi_)
        return APlotWnd::OnMouseWheel(flags, delta, screen);
    if (presses() > 0 || drag_.kind != DragKind::none)
        return passOn();
    CPoint point = screen;
    ScreenToClient(point);
    settle();
    const double notches = static_cast<double>(delta) / WHEEL_DELTA;
    const double factor = std::pow(zoomOfNotch, notches);
    const MultiHit hit = multi_->hitTest(point);
    const CRect plot = panelPlot(hit.panel);
    int direction = 0;
    if (plot.IsRectEmpty())
        return passOn();
    const int isAxis = directionAt(point, direction);
    const double x = xAtPixel(*multi_, plot, std::clamp(point.x, plot.left, plot.right));
    const auto wheel = [&](MultiRanges& ranges) -> int {
        if (isAxis && direction != directionX) {
            const int y = std::clamp(point.y, plot.top, plot.bottom);
            return whole_.zoom(ranges, direction, multi_->GPYtoRPY(direction, y), factor,
                               isLog(direction));
        }
        if (isAxis || (flags & MK_CONTROL && !(flags & MK_SHIFT)))
            return whole_.zoom(ranges, directionX, x, factor, isLog(directionX));
        if (flags & MK_CONTROL)
            return zoomScalesAbout(ranges, hit.panel, point.y, factor);
        const double way = -notches * panOfNotch;
        return flags & MK_SHIFT ? panBy(ranges, hit.panel, way, 0)
                                : panBy(ranges, hit.panel, 0, way);
    };
    const int used = changeInGesture(wheel) || isAxis || flags & MK_CONTROL;
    return used ? used : passOn();
}

int AMultiPlotWnd::OnMouseHWheel(unsigned flags, int delta, CPoint screen)
{
    if (!multi_)
        return APlotWnd::OnMouseHWheel(flags, delta, screen);
    const double way = static_cast<double>(delta) / WHEEL_DELTA * panOfNotch;
    if (presses() == 0 && drag_.kind == DragKind::none &&
        changeInGesture([&](MultiRanges& ranges) { return panBy(ranges, -1, way, 0); }))
        return 1;
    return ABWindow::OnMouseHWheel(flags, delta, screen);  // NOLINT(bugprone-parent-virtual-call)
}

int AMultiPlotWnd::chooseCursor(unsigned hitArea, unsigned message)
{
    CPoint point = GetCursorPos();
    ScreenToClient(point);
    int direction = 0;
    if (!multi_ || hitArea != HTCLIENT)
        return APlotWnd::chooseCursor(hitArea, message);
    if (drag_.kind == DragKind::panel || (spaceHeld_ && IsRangeZoomed()))
        SetCursor(IDC_HAND);
    else if (directionAt(point, direction))
        SetCursor(direction == directionX ? IDC_SIZEWE : IDC_SIZENS);
    else
        return APlotWnd::chooseCursor(hitArea, message);
    return 1;
}

AxisStatus AMultiPlotWnd::StatusAt(CPoint pixel)
{
    if (!multi_)
        return APlotWnd::StatusAt(pixel);
    AxisStatus status;
    const MultiStatus at = statusAt(*multi_, pixel);
    if (!at.inPlot || at.scale < 0)
        return status;
    status.inPlot = 1;
    status.x = at.x;
    status.stepX = at.stepX;
    status.y = multi_->GPYtoRPY(at.scale, pixel.y);
    status.stepY = std::fabs(multi_->GPYtoRPY(at.scale, pixel.y + 1) - status.y);
    return status;
}

void AMultiPlotWnd::tellStatus(const MultiStatus& status) { OnMultiStatus(status); }

void AMultiPlotWnd::SetPointerLine(int on)
{
    lineOn_ = on != 0;
    if (!on)
        ShowLineAt(std::numeric_limits<double>::quiet_NaN());
}

void AMultiPlotWnd::ShowLineAt(double x)
{
    if (x != lineAt_ && (std::isfinite(x) || std::isfinite(lineAt_))) {
        invalidateLine();
        lineAt_ = x;
        invalidateLine();
    }
}

void AMultiPlotWnd::moveLine(double x)
{
    if (lineOn_)
        ShowLineAt(x);
}

/// The pixels of the line: one strip for each panel that x is in.
void AMultiPlotWnd::invalidateLine()
{
    if (!multi_ || !GetSafeHwnd() || !std::isfinite(lineAt_))
        return;
    for (const MultiLayout::Panel& panel : multi_->getLayout().panels) {
        const int x = xPixelOf(*multi_, panel.plot, lineAt_);
        if (x >= panel.plot.left && x <= panel.plot.right)
            InvalidateRect(CRect(x, panel.plot.top, x + 1, panel.plot.bottom + 1));
    }
}

void AMultiPlotWnd::invalidateBand()
{
    const CRect frame = frame_.frame();
    if (!frame.IsRectEmpty() && GetSafeHwnd())
        InvalidateRect(frame);
}

int AMultiPlotWnd::isBare() const
{
    const int bare = !std::isfinite(lineAt_) && drag_.kind != DragKind::band && GetFocus() != this;
    return multi_ ? bare : APlotWnd::isBare();
}

}  // namespace pavane
