#include "pavane/windows/ASelRectAlt.h"

#include "pavane/resources/resource_ids.h"
#include "pavane/windows/selection_edges.h"
#include "platform/window_dc.h"

namespace pavane
{

void ASelRectAlt::SendRectAltTrackEnd() {}
const char* ASelRectAlt::GetWndClassName() { return "ASelRectAlt"; }

void ASelRectAlt::SetUpWindow()
{
    ASelRectWnd::SetUpWindow();
    idleCursor_ = LoadCursor(IDC_SELECTION_IDLE);
    if (IsFlagSet(selectionBand))
        sel_ = CRect(-1, -1, -1, -1);
}

int ASelRectAlt::IsValidMoveRect(CRect& candidate, int resize)
{
    const int valid = ASelRectWnd::IsValidMoveRect(candidate, resize);
    if (!IsFlagSet(selectionBand))
        return valid;
    if (!resize)
        return 0;
    candidate = bandInside(candidate, bounds_);
    return candidate != sel_;
}

void ASelRectAlt::drawRect(CDC& dc, const CRect& rect) const
{
    if (rect.left < 0 || rect.right < 0)
        return;
    const int saved = dc.SaveDC();
    CPen pen(PS_SOLID, rectWidth_, 0);
    dc.SetROP2(R2_NOT);
    dc.SelectObject(&pen);
    dc.SelectStockObject(NULL_BRUSH);
    dc.Rectangle(rect.left, rect.top, rect.right + 1, rect.bottom + 1);
    dc.RestoreDC(saved);
}

void ASelRectAlt::ServiceDraw(CDC& dc, CRect& client, CRect& update)
{
    ASelRectWnd::ServiceDraw(dc, client, update);
    if (IsFlagSet(selectionBand))
        drawRect(dc, sel_);
}

void ASelRectAlt::replaceBand(const CRect& band)
{
    {
        CWindowDC dc(this);
        drawRect(dc, sel_);
        sel_ = band;
        drawRect(dc, sel_);
    }
    SendAboutRect(sel_);
}

void ASelRectAlt::OnLButtonDown(unsigned flags, CPoint point)
{
    ASelRectWnd::OnLButtonDown(flags, point);
    if (!IsFlagSet(selectionBand) || !bounds_.PtInRect(point))
        return;
    const HWND self = GetSafeHwnd();
    SetCapture();
    replaceBand(CRect(point.x, point.y, point.x, point.y));
    if (CWnd::FromHandle(self) != this)
        return;
    SetCursor(dragCursor_);
    SetFlag(selectionDragged, 1);
}

void ASelRectAlt::OnMouseMove(unsigned flags, CPoint point)
{
    const HWND self = GetSafeHwnd();
    ASelRectWnd::OnMouseMove(flags, point);
    if (CWnd::FromHandle(self) != this || !IsFlagSet(selectionBand))
        return;
    if (!IsFlagSet(windowHoldsCapture)) {
        SetCursor(idleCursor_);
        return;
    }
    if (!IsFlagSet(selectionDragged))
        return;
    CRect band(sel_.left, sel_.top, point.x, point.y);
    if (IsValidMoveRect(band, 1))
        replaceBand(band);
}

void ASelRectAlt::OnLButtonUp(unsigned flags, CPoint point)
{
    const int dragged = IsFlagSet(selectionDragged);
    ASelRectWnd::OnLButtonUp(flags, point);
    if (!IsFlagSet(selectionBand))
        return;
    if (GetCapture() == this)
        ReleaseCapture();
    if (dragged)
        SetCursor(idleCursor_);
    SetFlag(selectionDragged, 0);
    SendRectAltTrackEnd();
}

int ASelRectAlt::OnSetCursor(CWnd* window, unsigned hitArea, unsigned message)
{
    if (hitArea == HTCLIENT && IsFlagSet(selectionBand))
        return 1;
    return ASelRectWnd::OnSetCursor(window, hitArea, message);
}

}  // namespace pavane
