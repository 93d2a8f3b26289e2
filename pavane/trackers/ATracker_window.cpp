#include "pavane/resources/tracker_messages.h"
#include "pavane/trackers/ATracker.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/tracker_drawing.h"
#include "platform/CDC.h"
#include "platform/CWnd.h"
#include "platform/message.h"
#include "tessel/rounding.h"

namespace pavane
{

void ATracker::GetValidRect(CWnd* window)
{
    CRect bounds;
    if (ownBounds(bounds)) {
        validRect_ = normalized(bounds);
        edgesIncluded_ = 1;
        return;
    }
    if (!window) {
        (void)AfxMessageBox(trackerWithoutWindow);
        return;
    }
    edgesIncluded_ = 0;
    window->GetClientRect(validRect_);
}

void ATracker::GetClipRect(CWnd*)
{
    constexpr int margin = 10;
    clipRect_ = edgesIncluded_ ? validRect_ : grown(validRect_, -margin);
}

int ATracker::mayBegin(CWnd* window, CPoint point)
{
    dragEnd_ = DragEnd::refused;
    GetValidRect(window);
    GetClipRect(window);
    return window && inBothRects(point) && !CWnd::GetCapture();
}

void ATracker::refreshRects(CWnd* window)
{
    CRect bounds;
    if (!window && !ownBounds(bounds))
        return;
    GetValidRect(window);
    GetClipRect(window);
}

int ATracker::mayBeHit(CWnd* window, CPoint point)
{
    refreshRects(window);
    return inBothRects(point) || (!window && validRect_.IsRectNull());
}

void ATracker::drawClipped(CDC* dc, CWnd* window)
{
    if (dc && dc == look_.clipped)
        return DrawShape(*dc);
    CRect shown;
    GetTrueRect(&shown);
    if (!dc || !showsIn(*dc, grown(shown, GetLineSize() + 1)))
        return;
    refreshRects(window);
    const int saved = dc->SaveDC();
    if (!clipRect_.IsRectNull()) {
        const int edge = edgesIncluded_ ? 1 : 0;
        dc->IntersectClipRect({clipRect_.left, clipRect_.top, saturatedSum(clipRect_.right, edge),
                               saturatedSum(clipRect_.bottom, edge)});
    }
    DrawShape(*dc);
    dc->RestoreDC(saved);
}

int ATracker::pointerIn(CWnd* window, unsigned hitArea, CPoint& point) const
{
    if (!window || hitArea != HTCLIENT || !IsActive())
        return 0;
    point = GetCursorPos();
    window->ScreenToClient(point);
    return 1;
}

}  // namespace pavane
