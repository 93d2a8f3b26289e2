// The cell that is pointed at in another window with the same cells.
#include "pavane/axes/windows/APlotWnd.h"
#include "platform/gdi_objects.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <utility>

namespace pavane
{

int APlotWnd::cellMark(int, int, CRect&) { return 0; }

void APlotWnd::SetCellLink(std::function<void(int, int)> told)
{
    cellLink_ = std::move(told);
    toldCell_ = CPoint(-1, -1);
}

void APlotWnd::tellCell(int row, int column)
{
    const CPoint cell = row < 0 || column < 0 ? CPoint(-1, -1) : CPoint(column, row);
    if (cell == toldCell_)
        return;
    toldCell_ = cell;
    if (!cellLink_)
        return;
    const auto told = cellLink_;  // who hears it may give another
    told(cell.y, cell.x);
}

void APlotWnd::tellStatus(CPoint pixel)
{
    const HWND self = GetSafeHwnd();
    const AxisStatus status = StatusAt(pixel);
    tellCell(status.inMap ? status.row : -1, status.inMap ? status.column : -1);
    if (CWnd::FromHandle(self) == this)
        OnStatus(status);
}

void APlotWnd::SetLinkedCell(int row, int column)
{
    const CPoint cell = row < 0 || column < 0 ? CPoint(-1, -1) : CPoint(column, row);
    if (cell == linkedCell_)
        return;
    linkedCell_ = cell;
    if (GetSafeHwnd()) {
        if (!drawnMark_.IsRectEmpty())
            InvalidateRect(drawnMark_);
        CRect mark;
        if (cell.x >= 0 && cellMark(row, column, mark)) {
            mark.InflateRect(2, 2);
            InvalidateRect(mark);
        }
    }
    linkedCellChanged();
}

int APlotWnd::GetLinkedCell(int& row, int& column) const
{
    if (linkedCell_.x < 0)
        return 0;
    row = linkedCell_.y;
    column = linkedCell_.x;
    return 1;
}

/// A ring in black between two in white, which stands out on any colour.
void APlotWnd::drawLinkedCell(CDC& dc)
{
    drawnMark_ = CRect();
    CRect mark;
    if (linkedCell_.x < 0 || !cellMark(linkedCell_.y, linkedCell_.x, mark))
        return;
    const int saved = dc.SaveDC();
    const int smooth = dc.SetSmooth(1);
    dc.SelectStockObject(NULL_BRUSH);
    for (const auto& [width, color] :
         {std::pair{3, RGB(255, 255, 255)}, std::pair{1, RGB(0, 0, 0)}}) {
        CPen pen(PS_SOLID, width, color);
        CPen* const old = dc.SelectObject(&pen);
        dc.Ellipse(mark.left, mark.top, mark.right, mark.bottom);
        const CPoint middle = mark.CenterPoint();
        dc.MoveTo(middle.x, mark.top - 2);
        dc.LineTo(middle.x, mark.top + 3);
        dc.MoveTo(middle.x, mark.bottom - 3);
        dc.LineTo(middle.x, mark.bottom + 2);
        dc.MoveTo(mark.left - 2, middle.y);
        dc.LineTo(mark.left + 3, middle.y);
        dc.MoveTo(mark.right - 3, middle.y);
        dc.LineTo(mark.right + 2, middle.y);
        dc.SelectObject(old);
    }
    dc.SetSmooth(smooth);
    dc.RestoreDC(saved);
    drawnMark_ = mark;
    drawnMark_.InflateRect(4, 4);
}

}  // namespace pavane
