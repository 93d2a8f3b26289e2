// What the pointer does to the areas of an axis window.
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/axes/windows/AreaOverlay.h"
#include "pavane/axes/windows/PlayDrag.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"

namespace pavane
{

int AAxisWnd::takePress(unsigned flags, CPoint point)
{
    if (trackers_->mode() & toolContour)
        return pressContour(point);
    return trackers_->OnLButtonDown(this, flags, point);
}

void AAxisWnd::pressEnded()
{
    overlay_->note();  // a shape that was given up has left its cells
    if (showCells_)
        InvalidateRect(plotRect());
    enableCommands();  // there was no undo during the drag
}

void AAxisWnd::OnLButtonDblClk(unsigned flags, CPoint point)
{
    if (trackers_->mode() & toolZoomIn)  // the second of two quick clicks is a step of its own
        return OnLButtonDown(flags, point);
    if (trackers_->mode() & toolContour)  // the first click has taken it
        return;
    settle();
    const HWND self = GetSafeHwnd();
    SetFocus();
    if (CWnd::FromHandle(self) != this)
        return;
    if (GetPlot() && followPress([&] { return trackers_->OnLButtonDblClk(this, flags, point); }))
        return;
    // not the plot's: a double click that areas do not take must not begin its rubber band
    ABWindow::OnLButtonDblClk(flags, point);  // NOLINT(bugprone-parent-virtual-call)
}

void AAxisWnd::pointerMoved(unsigned flags, CPoint point)
{
    if (play_->isWaiting() || play_->isGoing())
        return playTo(point, (flags & MK_SHIFT) != 0);
    (void)trackers_->OnMouseMove(this, flags, point);
}

int AAxisWnd::chooseCursor(unsigned hitArea, unsigned message)
{
    return trackers_->OnSetCursor(this, hitArea, message);
}

/// What the menu is about becomes the current area.
void AAxisWnd::menuAsked(CPoint point)
{
    if (trackers_->mode() != toolArrow || trackers_->workingTracker())
        return;
    const int under = trackers_->TopmostAt(point, this);
    const ATracker* const area = trackers_->trackerAt(under);
    const int chosen = under == trackers_->GetCurItemNo() && area && area->IsActive();
    if (area && !chosen && !trackers_->IsSelected(under))
        trackers_->ChangeActiveTrack(this, under);
}

}  // namespace pavane
