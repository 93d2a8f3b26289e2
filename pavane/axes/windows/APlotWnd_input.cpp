// What the pointer does in an axis window.
#include "pavane/axes/ABAxis.h"
#include "pavane/axes/windows/APlotWnd.h"

#include <cmath>

namespace pavane
{

namespace
{

/// Magnification of one notch of the wheel.
constexpr double zoomOfNotch = 1.25;

}  // namespace

int APlotWnd::takePress(unsigned, CPoint point)
{
    if (view_.isKnown())
        (void)band_.begin(point, plotRect());
    return 0;
}

void APlotWnd::pointerMoved(unsigned, CPoint point)
{
    if (!band_.isGoing())
        return;
    const CRect before = band_.frame();
    band_.moveTo(point);
    for (const CRect& frame : {before, band_.frame()})
        if (!frame.IsRectEmpty())
            InvalidateRect(frame);
}

int APlotWnd::followPress(const std::function<int()>& press)
{
    const HWND self = GetSafeHwnd();
    ++presses_;
    const int used = press();
    if (CWnd::FromHandle(self) != this)
        return 1;
    if (--presses_ == 0) {
        retired_.clear();
        pressEnded();
    }
    return used;
}

void APlotWnd::OnLButtonDown(unsigned flags, CPoint point)
{
    endGesture();
    menuPoint_ = CPoint(-1, -1);
    pointer_ = point;
    settle();
    if (spaceHeld_ && axis_ && IsRangeZoomed())
        return beginPan(point);
    const HWND self = GetSafeHwnd();
    SetFocus();
    if (CWnd::FromHandle(self) != this || pan_.going)
        return;
    // A shape does not start under another's capture, so the areas come before the base, which
    // takes it.
    if (axis_ && followPress([&] { return takePress(flags, point); }))
        return;
    ABWindow::OnLButtonDown(flags, point);
}

void APlotWnd::OnLButtonUp(unsigned flags, CPoint point)
{
    if (pan_.going)
        return endPan();
    const CRect frame = band_.frame();
    band_.release();
    if (!frame.IsRectEmpty())
        InvalidateRect(frame);
    const HWND self = GetSafeHwnd();
    ABWindow::OnLButtonUp(flags, point);
    if (CWnd::FromHandle(self) != this || !band_.isReleased())
        return;
    const RubberBand band = band_;
    band_.end();
    if (band.isWide())
        showBand(band);
}

/// The second of two quick presses is one of its own.
void APlotWnd::OnLButtonDblClk(unsigned flags, CPoint point) { OnLButtonDown(flags, point); }

void APlotWnd::OnMButtonDown(unsigned flags, CPoint point)
{
    settle();
    if (axis_ && presses_ == 0 && !GetCapture() && IsRangeZoomed())
        return beginPan(point);
    ABWindow::OnMButtonDown(flags, point);
}

void APlotWnd::OnMButtonUp(unsigned flags, CPoint point)
{
    if (pan_.going)
        return endPan();
    ABWindow::OnMButtonUp(flags, point);
}

void APlotWnd::OnCaptureChanged(CWnd* next)
{
    if (pan_.going && next != this) {
        pan_.going = 0;
        endGesture();
    }
    if (band_.isGoing() && next != this)
        dropBand();
    ABWindow::OnCaptureChanged(next);
}

void APlotWnd::OnMouseMove(unsigned flags, CPoint point)
{
    const HWND self = GetSafeHwnd();
    pointer_ = point;
    if (pan_.going) {
        panTo(point);
    } else {
        menuPoint_ = CPoint(-1, -1);
        if (axis_)
            pointerMoved(flags, point);
    }
    if (CWnd::FromHandle(self) != this)
        return;
    tellStatus(point);
    if (CWnd::FromHandle(self) == this)
        ABWindow::OnMouseMove(flags, point);
}

void APlotWnd::OnMouseLeave()
{
    pointer_ = CPoint(-1, -1);
    const HWND self = GetSafeHwnd();
    tellStatus(pointer_);
    if (CWnd::FromHandle(self) == this)
        ABWindow::OnMouseLeave();
}

int APlotWnd::OnMouseWheel(unsigned flags, int delta, CPoint screen)
{
    if (!axis_ || presses_ > 0 || band_.isGoing())
        return ABWindow::OnMouseWheel(flags, delta, screen);
    const double notches = static_cast<double>(delta) / WHEEL_DELTA;
    if (flags & MK_CONTROL) {
        ScreenToClient(screen);
        ZoomAbout(screen, std::pow(zoomOfNotch, notches));
        return 1;
    }
    const int used = flags & MK_SHIFT ? wheelPan(-notches, 0) : wheelPan(0, -notches);
    return used ? used : ABWindow::OnMouseWheel(flags, delta, screen);
}

int APlotWnd::OnMouseHWheel(unsigned flags, int delta, CPoint screen)
{
    if (axis_ && presses_ == 0 && !band_.isGoing() &&
        wheelPan(static_cast<double>(delta) / WHEEL_DELTA, 0))
        return 1;
    return ABWindow::OnMouseHWheel(flags, delta, screen);
}

void APlotWnd::OnTimer(unsigned id)
{
    if (id != gestureTimer)
        return ABWindow::OnTimer(id);
    endGesture();
}

int APlotWnd::OnSetCursor(CWnd* window, unsigned hitArea, unsigned message)
{
    if (hitArea == HTCLIENT && (pan_.going || (spaceHeld_ && IsRangeZoomed()))) {
        SetCursor(IDC_HAND);
        return 1;
    }
    if (axis_ && chooseCursor(hitArea, message))
        return 1;
    return ABWindow::OnSetCursor(window, hitArea, message);
}

LRESULT APlotWnd::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_RBUTTONDBLCLK)
        rightDown_ = 1;
    return ABWindow::WindowProc(message, wParam, lParam);
}

/// A press that gives a rubber band up is about nothing else: no menu follows its release.
void APlotWnd::OnRButtonDown(unsigned flags, CPoint point)
{
    rightDown_ = !giveUpDrag();
    noMenu_ = 0;
    ABWindow::OnRButtonDown(flags, point);
}

/// The press that cancels a drag never comes here, its release does; no menu may follow it.
void APlotWnd::OnRButtonUp(unsigned flags, CPoint point)
{
    noMenu_ = !rightDown_;
    rightDown_ = 0;
    ABWindow::OnRButtonUp(flags, point);
}

void APlotWnd::OnContextMenu(CWnd* window, CPoint screen)
{
    const HWND self = GetSafeHwnd();
    const int suppressed = noMenu_;
    noMenu_ = 0;
    if (suppressed)
        return;
    menuPoint_ = screen;
    ScreenToClient(menuPoint_);
    CRect client;
    GetClientRect(client);
    if (!client.PtInRect(menuPoint_)) {
        // asked for by a key
        menuPoint_ = client.PtInRect(pointer_) ? pointer_ : client.CenterPoint();
        screen = menuPoint_;
        ClientToScreen(screen);
    }
    settle();
    if (axis_)
        menuAsked(menuPoint_);
    if (CWnd::FromHandle(self) != this)
        return;
    ABWindow::OnContextMenu(window, screen);
}

void APlotWnd::OnDestroy()
{
    endPan();
    dropBand();
    endGesture();
    ABWindow::OnDestroy();
}

}  // namespace pavane
