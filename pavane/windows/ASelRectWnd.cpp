#include "pavane/windows/ASelRectWnd.h"

#include "pavane/resources/resource_ids.h"
#include "pavane/windows/selection_edges.h"
#include "platform/window_dc.h"

namespace pavane
{

namespace
{

constexpr int topLine = 1, leftLine = 2, bottomLine = 4, rightLine = 8, allLines = 15,
              erasingCall = 128;

}  // namespace

void ASelRectWnd::SendAboutRect(CRect&) {}
const char* ASelRectWnd::GetWndClassName() { return "ASelRectWnd"; }
int ASelRectWnd::hotEdges() const
{
    int edges = 0;
    for (const int edge : {edgeLeft, edgeTop, edgeRight, edgeBottom})
        edges |= IsFlagSet(edge) ? edge : 0;
    return edges;
}

void ASelRectWnd::SetUpWindow()
{
    ABWindow::SetUpWindow();
    dragCursor_ = LoadCursor(IDC_SELECTION_DRAG);
    GetClientRect(bounds_);
    sel_ = bounds_;
}

int ASelRectWnd::IsValidMoveRect(CRect& candidate, int resize)
{
    if (!IsFlagSet(selectionShown))
        return 0;
    candidate =
        resize ? resizedInside(candidate, sel_, bounds_) : movedInside(candidate, sel_, bounds_);
    return 1;
}

void ASelRectWnd::DrawSelRect(CDC* dc, CRect& sel, CRect& extent, int lines)
{
    if (!dc) {
        CWindowDC own(this);
        return DrawSelRect(&own, sel, extent, lines);
    }
    const int saved = dc->SaveDC();
    dc->SetROP2(R2_NOT);
    const auto draw = [&](int width, int x1, int y1, int x2, int y2) {
        CPen pen(PS_SOLID, width, 0);
        dc->SelectObject(&pen);
        dc->MoveTo(x1, y1);
        dc->LineTo(x2, y2);
    };
    for (const int line : {topLine, bottomLine}) {
        const int y = line == topLine ? sel.top : sel.bottom;
        if (lines & line && lineWidthUB_ >= 0)
            draw(lineWidthUB_, extent.left, y, extent.right, y);
    }
    for (const int line : {leftLine, rightLine}) {
        const int x = line == leftLine ? sel.left : sel.right;
        if (lines & line && lineWidthLR_ >= 0)
            draw(lineWidthLR_, x, extent.top, x, extent.bottom);
    }
    dc->RestoreDC(saved);
}

void ASelRectWnd::ServiceDraw(CDC& dc, CRect&, CRect&)
{
    if (IsFlagSet(selectionShown))
        DrawSelRect(&dc, sel_, bounds_, allLines);
}

void ASelRectWnd::findEdges(CPoint point)
{
    const int edges = edgesUnder(point, sel_, bounds_, lineWidthLR_ >= 0, lineWidthUB_ >= 0);
    SetFlag(edgeAll, 0);
    SetFlag(edges, 1);
    if (const HCURSOR cursor = edgeCursor(edges)) {
        SetFlag(selectionCursor, 1);
        SetCursor(cursor);
    } else if (IsFlagSet(selectionCursor)) {
        SetFlag(selectionCursor, 0);
        CWnd::OnSetCursor(this, HTCLIENT, WM_MOUSEMOVE);
    }
}

void ASelRectWnd::replaceSelection(CRect& candidate, int lines)
{
    DrawSelRect(nullptr, sel_, bounds_, lines | erasingCall);
    sel_ = candidate;
    DrawSelRect(nullptr, sel_, bounds_, lines);
    SendAboutRect(sel_);
}

void ASelRectWnd::dragEdges(CPoint point)
{
    CRect candidate = sel_;
    int lines = 0;
    if (IsFlagSet(edgeLeft) || IsFlagSet(edgeRight)) {
        (IsFlagSet(edgeLeft) ? candidate.left : candidate.right) = point.x;
        if (IsValidMoveRect(candidate, 1))
            lines |= IsFlagSet(edgeLeft) ? leftLine : rightLine;
    }
    if (IsFlagSet(edgeTop) || IsFlagSet(edgeBottom)) {
        (IsFlagSet(edgeTop) ? candidate.top : candidate.bottom) = point.y;
        if (IsValidMoveRect(candidate, 1))
            lines |= IsFlagSet(edgeTop) ? topLine : bottomLine;
    }
    if (lines)
        replaceSelection(candidate, lines);
}

/// 0 when the move was refused: the next one counts from the same point then.
int ASelRectWnd::moveSelection(CPoint point)
{
    CRect candidate = sel_;
    candidate.OffsetRect(point.x - lastPoint_.x, point.y - lastPoint_.y);
    if (!IsValidMoveRect(candidate, 0))
        return 0;
    replaceSelection(candidate, allLines);
    return 1;
}

void ASelRectWnd::OnMouseMove(unsigned flags, CPoint point)
{
    const HWND self = GetSafeHwnd();
    int counts = 1;
    if (IsFlagSet(windowHoldsCapture | selectionMoved))
        counts = moveSelection(point);
    else if (IsFlagSet(windowHoldsCapture))
        dragEdges(point);
    else if (IsFlagSet(selectionShown))
        findEdges(point);
    if (CWnd::FromHandle(self) != this)
        return;  // the host deleted the window when it heard of the change
    if (counts)
        lastPoint_ = point;
    ABWindow::OnMouseMove(flags, point);
}

void ASelRectWnd::OnLButtonDown(unsigned flags, CPoint point)
{
    ABWindow::OnLButtonDown(flags, point);
    const int edges = hotEdges();
    if (!IsFlagSet(selectionShown) || !edges)
        return;
    if (edges & (edgeLeft | edgeRight))
        point.x = edges & edgeLeft ? sel_.left : sel_.right;
    if (edges & (edgeTop | edgeBottom))
        point.y = edges & edgeTop ? sel_.top : sel_.bottom;
    lastPoint_ = point;
    ClientToScreen(point);
    SetCursorPos(point);
    SetCursor(dragCursor_);
    SetFlag(selectionDragged, 1);
}

void ASelRectWnd::OnLButtonUp(unsigned flags, CPoint point)
{
    ABWindow::OnLButtonUp(flags, point);
    SetFlag(selectionDragged, 0);
    if (IsFlagSet(selectionShown))
        findEdges(point);
}

void ASelRectWnd::OnRButtonDown(unsigned flags, CPoint point)
{
    if (flags & MK_SHIFT && IsFlagSet(selectionShown) && !hotEdges() && sel_.PtInRect(point)) {
        lastPoint_ = point;
        SetCapture();
        SetFlag(selectionMoved | windowHoldsCapture, 1);
        SetCursor(IDC_SIZEALL);
    }
    ABWindow::OnRButtonDown(flags, point);
}

void ASelRectWnd::OnRButtonUp(unsigned flags, CPoint point)
{
    if (IsFlagSet(selectionMoved | selectionShown)) {
        SetFlag(selectionMoved | windowHoldsCapture, 0);
        ReleaseCapture();
        SetCursor(IDC_ARROW);
    }
    ABWindow::OnRButtonUp(flags, point);
}

/// A capture that was taken away ends the drag where it stands.
void ASelRectWnd::OnCaptureChanged(CWnd* next)
{
    if (next != this && IsFlagSet(windowHoldsCapture))
        SetFlag(selectionDragged | selectionMoved, 0);
    ABWindow::OnCaptureChanged(next);
}

void ASelRectWnd::OnDestroy()
{
    if (GetCapture() == this)
        ReleaseCapture();
    ABWindow::OnDestroy();
}

int ASelRectWnd::OnSetCursor(CWnd* window, unsigned hitArea, unsigned message)
{
    if (hitArea == HTCLIENT && hotEdges())
        return 1;
    return ABWindow::OnSetCursor(window, hitArea, message);
}

}  // namespace pavane
