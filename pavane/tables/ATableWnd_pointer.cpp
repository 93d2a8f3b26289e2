#include "pavane/tables/ATableWnd.h"

#include "pavane/tables/ColumnSizer.h"
#include "pavane/tables/grid/selection_press.h"
#include "pavane/tables/table_editors.h"
#include "pavane/tables/TableSorter.h"
#include "pavane/tables/TableTasks.h"
#include "pavane/tables/TableWatch.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr unsigned dragTimer = 11;
constexpr unsigned dragInterval = 150;  // ms

int wheelRows = 1;
int shiftWheel = 0;

}  // namespace

void SetTableWheelRows(int rows) { wheelRows = std::max(rows, 1); }
int GetTableWheelRows() { return wheelRows; }
void SetTableShiftWheel(int on) { shiftWheel = on; }
int GetTableShiftWheel() { return shiftWheel; }

void ATableWnd::OnLButtonDown(unsigned flags, CPoint point)
{
    const TableWatch watch(*this);
    if (!hideEditors() || watch.gone())
        return;
    ABWindow::OnLButtonDown(flags, point);
    if (watch.gone() || !hasFocus())
        return;
    tasks_->hush();
    if (watch.gone() || sizer_->press(point))
        return;
    sorter_->press(flags, point);
    ASelectRect next = selection_;
    if (!pressSelection(next, grid_.cellAt(point), flags & MK_SHIFT, isOptSet(optRangeSelect),
                        grid_.extent()))
        return;
    if (!takeSelection(next, {next.endRow, next.endColumn}))
        return;
    setOpt(optButtonDown, 1);
    if (!isOptSet(optRangeSelect))
        return;
    setOpt(optDragTimer, 1);
    (void)SetTimer(dragTimer, dragInterval);
}

void ATableWnd::OnLButtonUp(unsigned flags, CPoint point)
{
    const TableWatch watch(*this);
    if (sizer_->dragging())
        sizer_->move(point);
    else if (isOptSet(optDragTimer))
        dragTo(point, 0);
    if (watch.gone())
        return;
    sizer_->end();
    if (watch.gone())
        return;
    endDrag();
    const int header = sorter_->release(point);
    ABWindow::OnLButtonUp(flags, point);
    if (!watch.gone())
        sorter_->click(header);
}

void ATableWnd::endDrag()
{
    if (isOptSet(optDragTimer))
        (void)KillTimer(dragTimer);
    setOpt(optDragBits, 0);
}

void ATableWnd::OnCaptureChanged(CWnd* next)
{
    const TableWatch watch(*this);
    if (next != this) {
        endDrag();
        sorter_->forgetPress();
        sizer_->end();
    }
    if (!watch.gone())
        ABWindow::OnCaptureChanged(next);
}

void ATableWnd::OnMouseMove(unsigned flags, CPoint point)
{
    const TableWatch watch(*this);
    if (sizer_->dragging())
        sizer_->move(point);
    else if (isOptSet(optDragTimer))
        dragTo(point, 0);
    if (!watch.gone())
        ABWindow::OnMouseMove(flags, point);
}

void ATableWnd::OnTimer(unsigned id)
{
    if (id != dragTimer) {
        if (!tasks_->onTimer(id))
            ABWindow::OnTimer(id);
        return;
    }
    if (!isOptSet(optDragTimer))
        return;
    CPoint point = GetCursorPos();
    ScreenToClient(point);
    dragTo(point, 1);
}

/// Extends the selection to the pointer. Only the timer scrolls, so that its pace is that.
void ATableWnd::dragTo(CPoint point, int scroll)
{
    if (grid_.extent().empty() || !sorter_->drags(point))
        return;
    const TableWatch watch(*this);
    const DragStep step = dragStep(grid_, point, client(), scroll);
    if (!scrollTo(step.firstRow, step.firstColumn) || watch.gone() || grid_.extent().empty())
        return;
    ASelectRect next = selection_;
    next.endRow = step.end.row;
    next.endColumn = step.end.column;
    (void)takeSelection(next, step.end);
}

void ATableWnd::OnRButtonDown(unsigned flags, CPoint point)
{
    const TableWatch watch(*this);
    const TableCell cell = grid_.cellAt(point);
    if (grid_.extent().contains(cell) && !selection_.contains(cell.row, cell.column)) {
        if (!hideEditors() || watch.gone())
            return;
        SetFocus();
        if (watch.gone() || !takeSelection(oneCell(cell), cell))
            return;
    }
    ABWindow::OnRButtonDown(flags, point);
}

void ATableWnd::OnLButtonDblClk(unsigned flags, CPoint point)
{
    const TableWatch watch(*this);
    ABWindow::OnLButtonDblClk(flags, point);
    if (watch.gone())
        return;
    if (const int edge = sizer_->edgeAt(point); edge >= 0)
        return sizer_->fit(edge);
    const TableCell cell = grid_.cellAt(point);
    const CRect rect = grid_.cellRect(cell.row, cell.column);
    // beyond the last row and column there is no cell, though a press there counts as on them
    if (point.x >= rect.right || point.y >= rect.bottom || !client().PtInRect(point))
        return;
    if (cell.row == 0 || cell.column == 0)
        return changeHeader(cell.row, cell.column);
    if ((edit_ && edit_->cell() == cell) || (combo_ && combo_->cell() == cell))
        return;
    if (!hideEditors() || watch.gone())
        return;
    if (!(cell == TableCell{selection_.anchorRow, selection_.anchorColumn}))
        return;
    if (!showAuto(cell.row, cell.column) && !watch.gone() && grid_.extent().contains(cell))
        changeCell(cell.row, cell.column);
}

/// Deliberate: however many notches a message has, it scrolls by one step, and one below a notch
/// counts as a step up; the window adds fine turns up before they come here.
int ATableWnd::OnMouseWheel(unsigned flags, int delta, CPoint screen)
{
    const int step = delta / WHEEL_DELTA >= 0 ? -1 : 1;
    if (shiftWheel && (flags & MK_SHIFT) && grid_.lastFirstColumn() >= 2)
        return (void)scrollColumns(step), 1;
    if (grid_.lastFirstRow() >= 2)
        return (void)scrollRows(std::int64_t{step} * wheelRows), 1;
    if (grid_.lastFirstColumn() >= 2)
        return (void)scrollColumns(step), 1;
    return ABWindow::OnMouseWheel(flags, delta, screen);
}

int ATableWnd::OnMouseHWheel(unsigned flags, int delta, CPoint screen)
{
    if (grid_.lastFirstColumn() < 2)
        return ABWindow::OnMouseHWheel(flags, delta, screen);
    return (void)scrollColumns(delta >= 0 ? 1 : -1), 1;
}

/// A key asks for the menu of the focus cell; over a column header it is that of the column.
void ATableWnd::OnContextMenu(CWnd* window, CPoint screen)
{
    const TableWatch watch(*this);
    if (screen == CPoint(-1, -1)) {
        if (!grid_.extent().empty())
            (void)showCell({selection_.anchorRow, selection_.anchorColumn});
        if (watch.gone())
            return;
        const CRect cell = grid_.cellRect(selection_.anchorRow, selection_.anchorColumn);
        screen = {std::max(cell.left, 0), std::max(cell.bottom, 0)};
        ClientToScreen(screen);
    } else {
        CPoint point = screen;
        ScreenToClient(point);
        const TableCell cell = grid_.cellAt(point);
        menuColumn_ =
            cell.row == 0 && grid_.cellRect(0, cell.column).PtInRect(point) ? cell.column : -1;
    }
    ABWindow::OnContextMenu(window, screen);
    if (!watch.gone())
        menuColumn_ = -1;
}

}  // namespace pavane
