#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/axes/windows/AreaOverlay.h"
#include "pavane/resources/resource_ids.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"

namespace pavane
{

/// Handlers of the collection may close or delete the window; `call` returns what it was told, and
/// 1 when the window is gone, so that nothing else happens with the message.
template <typename Call>
int AAxisWnd::followPress(Call call)
{
    const HWND self = GetSafeHwnd();
    ++presses_;
    const int used = call();
    if (CWnd::FromHandle(self) != this)
        return 1;
    if (--presses_ == 0) {
        retired_.clear();
        overlay_->follow(*trackers_);  // a shape that was given up has left its cells
        invalidateCells();
        enableCommands();  // there was no undo during the drag
    }
    return used;
}

void AAxisWnd::OnLButtonDown(unsigned flags, CPoint point)
{
    endGesture();
    menuPoint_ = CPoint(-1, -1);
    pointer_ = point;
    settle();
    if (spaceHeld_ && axis_ && IsRangeZoomed())
        return beginPan(point);
    const HWND self = GetSafeHwnd();
    SetFocus();
    if (CWnd::FromHandle(self) != this || panning_)
        return;
    // A shape does not start under another's capture, so the areas come before the base, which
    // takes it.
    if (axis_ && followPress([&] { return trackers_->OnLButtonDown(this, flags, point); }))
        return;
    ABWindow::OnLButtonDown(flags, point);
}

void AAxisWnd::OnLButtonUp(unsigned flags, CPoint point)
{
    if (panning_)
        return endPan();
    ABWindow::OnLButtonUp(flags, point);
}

void AAxisWnd::OnLButtonDblClk(unsigned flags, CPoint point)
{
    if (trackers_->mode() & toolZoomIn)  // the second of two quick clicks is a step of its own
        return OnLButtonDown(flags, point);
    settle();
    const HWND self = GetSafeHwnd();
    SetFocus();
    if (CWnd::FromHandle(self) != this)
        return;
    if (axis_ && followPress([&] { return trackers_->OnLButtonDblClk(this, flags, point); }))
        return;
    ABWindow::OnLButtonDblClk(flags, point);
}

void AAxisWnd::OnMButtonDown(unsigned flags, CPoint point)
{
    settle();
    if (axis_ && presses_ == 0 && !GetCapture() && IsRangeZoomed())
        return beginPan(point);
    ABWindow::OnMButtonDown(flags, point);
}

void AAxisWnd::OnMButtonUp(unsigned flags, CPoint point)
{
    if (panning_)
        return endPan();
    ABWindow::OnMButtonUp(flags, point);
}

void AAxisWnd::OnCaptureChanged(CWnd* next)
{
    if (panning_ && next != this) {
        panning_ = 0;
        endGesture();
    }
    ABWindow::OnCaptureChanged(next);
}

void AAxisWnd::OnMouseMove(unsigned flags, CPoint point)
{
    pointer_ = point;
    if (panning_) {
        panTo(point);
    } else {
        menuPoint_ = CPoint(-1, -1);
        if (axis_)
            trackers_->OnMouseMove(this, flags, point);
    }
    const HWND self = GetSafeHwnd();
    showStatus(point);
    if (CWnd::FromHandle(self) == this)
        ABWindow::OnMouseMove(flags, point);
}

void AAxisWnd::OnMouseLeave()
{
    pointer_ = CPoint(-1, -1);
    const HWND self = GetSafeHwnd();
    showStatus(pointer_);
    if (CWnd::FromHandle(self) == this)
        ABWindow::OnMouseLeave();
}

int AAxisWnd::OnSetCursor(CWnd* window, unsigned hitArea, unsigned message)
{
    if (hitArea == HTCLIENT && (panning_ || (spaceHeld_ && IsRangeZoomed()))) {
        SetCursor(IDC_HAND);
        return 1;
    }
    if (axis_ && trackers_->OnSetCursor(this, hitArea, message))
        return 1;
    return ABWindow::OnSetCursor(window, hitArea, message);
}

LRESULT AAxisWnd::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_RBUTTONDBLCLK)
        rightDown_ = 1;
    return ABWindow::WindowProc(message, wParam, lParam);
}

void AAxisWnd::OnRButtonDown(unsigned flags, CPoint point)
{
    rightDown_ = 1;
    noMenu_ = 0;
    ABWindow::OnRButtonDown(flags, point);
}

/// The press that cancels a drag never comes here, its release does; no menu may follow it.
void AAxisWnd::OnRButtonUp(unsigned flags, CPoint point)
{
    noMenu_ = !rightDown_;
    rightDown_ = 0;
    ABWindow::OnRButtonUp(flags, point);
}

void AAxisWnd::OnContextMenu(CWnd* window, CPoint screen)
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
    if (axis_ && trackers_->mode() == toolArrow && !trackers_->workingTracker()) {
        const int under = trackers_->TopmostAt(menuPoint_, this);
        const ATracker* const area = trackers_->trackerAt(under);
        const int chosen = under == trackers_->GetCurItemNo() && area && area->IsActive();
        if (area && !chosen && !trackers_->IsSelected(under))
            trackers_->ChangeActiveTrack(this, under);
    }
    if (CWnd::FromHandle(self) != this)
        return;
    ABWindow::OnContextMenu(window, screen);
}

void AAxisWnd::OnKillFocus(CWnd* next)
{
    spaceHeld_ = 0;
    ABWindow::OnKillFocus(next);
}

void AAxisWnd::OnDestroy()
{
    endPan();
    endGesture();
    ABWindow::OnDestroy();
}

}  // namespace pavane
