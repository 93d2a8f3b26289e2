#include "pavane/tables/table_access.h"

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/TableWatch.h"
#include "platform/controls.h"

#include <algorithm>

namespace pavane
{

TableCell TableAccess::cellOf(AccessId id)
{
    constexpr AccessId columns = (AccessId{1} << columnBits) - 1;
    return {static_cast<int>((id - 1) >> columnBits), static_cast<int>((id - 1) & columns)};
}

int TableAccess::has(AccessId id) const
{
    const TableExtent table = table_->grid_.extent();
    if (id < 1 || (id - 1) >> columnBits > table.rows)
        return 0;
    return cellOf(id).column <= table.lastColumn;
}

int TableAccess::GetAccessPart(AccessId id, AccessPart& part) const
{
    part = {};
    if (id != 0)
        return has(id) && fill(cellOf(id), part);
    part.role = ROLE_SYSTEM_TABLE;
    part.name = table_->GetWindowText();
    part.rect = table_->client();
    part.state = STATE_SYSTEM_FOCUSABLE | (table_->hasFocus() ? STATE_SYSTEM_FOCUSED : 0);
    if (table_->isOptSet(optRangeSelect))
        part.state |= STATE_SYSTEM_MULTISELECTABLE;
    return 1;
}

/// All that comes from hooks is asked last and one after the other.
int TableAccess::fill(TableCell cell, AccessPart& part) const
{
    ATableWnd& table = *table_;
    const TableWatch watch(table);
    const TableGrid& grid = table.grid_;
    const bool isHeader = cell.row == 0 || cell.column == 0;
    part.row = cell.row - 1;
    part.column = cell.column - 1;
    part.role = !isHeader       ? ROLE_SYSTEM_CELL
                : cell.row == 0 ? ROLE_SYSTEM_COLUMNHEADER
                                : ROLE_SYSTEM_ROWHEADER;
    const bool isScrolledAway = (cell.row > 0 && cell.row < grid.firstRow()) ||
                                (cell.column > 0 && cell.column < grid.firstColumn());
    if (isScrolledAway ||
        !part.rect.IntersectRect(grid.cellRect(cell.row, cell.column), table.client()))
        part.rect = {};
    if (part.rect.IsRectEmpty())
        part.state |= STATE_SYSTEM_OFFSCREEN;
    const ASelectRect& selection = table.selection_;
    const bool isFocus = cell == TableCell{selection.anchorRow, selection.anchorColumn};
    if (isHeader) {
        part.state |= STATE_SYSTEM_READONLY;
        if (table.isOptSet(optRangeSelect))
            part.state |= STATE_SYSTEM_SELECTABLE;
        part.name = table.hdrCellAsStr(cell.row, cell.column, nullptr);
        return !watch.gone();
    }
    part.state |= STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE;
    if (isFocus && table.hasFocus())
        part.state |= STATE_SYSTEM_FOCUSED;
    if (selection.contains(cell.row, cell.column))
        part.state |= STATE_SYSTEM_SELECTED;
    part.value = table.cellAsStr(cell.row, cell.column, nullptr);
    if (watch.gone())
        return 0;
    part.name = part.value;
    part.description = table.cellTitle(cell.row, cell.column);
    if (watch.gone())
        return 0;
    const int can = table.canEdit(cell.row, cell.column);
    part.state |= can ? STATE_SYSTEM_EDITABLE : STATE_SYSTEM_READONLY;
    return !watch.gone();
}

std::vector<AccessId> TableAccess::GetAccessChildren() const
{
    const TableGrid& grid = table_->grid_;
    const CRect all = table_->client();
    const CellRange seen = grid.cellsIn(all);
    std::vector<AccessId> parts;
    const auto line = [&](int row) {
        if (grid.headerWidth() > 0)
            parts.push_back(idOf({row, 0}));
        for (int c = seen.firstColumn; c <= seen.lastColumn; ++c)
            if (grid.columns().width(c) > 0)
                parts.push_back(idOf({row, c}));
    };
    if (grid.headerHeight() > 0 && grid.columns().last() >= 0)
        line(0);
    for (std::int64_t r = seen.firstRow; r <= seen.lastRow; ++r)
        line(static_cast<int>(r));
    return parts;
}

AccessId TableAccess::AccessHitTest(CPoint point) const
{
    const TableGrid& grid = table_->grid_;
    if (!table_->client().PtInRect(point) || grid.columns().last() < 0)
        return 0;
    TableCell cell;
    if (point.y >= grid.headerHeight()) {
        const CellRange rows = grid.rowsIn(point.y, point.y + 1);
        if (rows.rowCount() < 1)
            return 0;
        cell.row = rows.firstRow;
    }
    if (point.x >= grid.headerWidth()) {
        const CellRange columns = grid.columnsIn(point.x, point.x + 1);
        if (columns.columnCount() < 1)
            return 0;
        cell.column = columns.lastColumn;
    }
    return idOf(cell);
}

AccessId TableAccess::GetAccessFocus() const
{
    const TableCell cell{table_->selection_.anchorRow, table_->selection_.anchorColumn};
    return table_->grid_.extent().contains(cell) ? idOf(cell) : 0;
}

int TableAccess::AccessSetFocus(AccessId id)
{
    ATableWnd& table = *table_;
    const TableWatch watch(table);
    const TableCell cell = cellOf(id);
    if (!table.grid_.extent().contains(cell) || !has(id) || !table.hideEditors() || watch.gone())
        return 0;
    table.SetFocus();
    return !watch.gone() && table.takeSelection(oneCell(cell), cell) &&
           table.selection_ == oneCell(cell);
}

int TableAccess::AccessActivate(AccessId id)
{
    ATableWnd& table = *table_;
    const TableWatch watch(table);
    const TableCell cell = cellOf(id);
    if (!has(id))
        return 0;
    if (cell.row == 0 || cell.column == 0)
        return table.changeHeader(cell.row, cell.column), 1;
    if (!AccessSetFocus(id) || watch.gone())
        return 0;
    if (!table.showAuto(cell.row, cell.column) && !watch.gone() &&
        table.grid_.extent().contains(cell))
        table.changeCell(cell.row, cell.column);
    return 1;
}

/// A header stands for its row or column. Something is always selected: what is taken out of the
/// selection leaves the focus cell.
int TableAccess::AccessSelect(AccessId id, int on)
{
    ATableWnd& table = *table_;
    const TableExtent extent = table.grid_.extent();
    const TableWatch watch(table);
    if (!has(id) || extent.empty() || !table.hideEditors() || watch.gone())
        return 0;
    const TableCell cell = cellOf(id);
    const ASelectRect& now = table.selection_;
    const TableCell focus = nearestCell({now.anchorRow, now.anchorColumn}, extent);
    ASelectRect next = oneCell(on ? cell : focus);
    if (on && (cell.row == 0 || cell.column == 0)) {
        if (!table.isOptSet(optRangeSelect))
            return 0;
        next = {cell.row ? cell.row : 1, cell.column ? cell.column : 1,
                cell.row ? cell.row : extent.rows, cell.column ? cell.column : extent.lastColumn};
    }
    return table.takeSelection(next, {next.anchorRow, next.anchorColumn}) &&
           table.selection_ == next;
}

int TableAccess::AccessSetValue(AccessId id, const CString& value)
{
    ATableWnd& table = *table_;
    const TableWatch watch(table);
    const TableCell cell = cellOf(id);
    if (!has(id) || !table.hideEditors() || watch.gone() || !table.canEdit(cell.row, cell.column) ||
        watch.gone())
        return 0;
    const int taken = table.storeAsStep("Edit of ", cell.row, cell.column, [&] {
        return table.pasteCell(cell.row, cell.column, value);
    });
    if (watch.gone())
        return 0;
    table.hiddenList_.reset();
    table.InvalidateRect(table.cellRect(cell.row, cell.column));
    return taken;
}

int TableAccess::GetAccessRows() const { return table_->grid_.rows(); }
int TableAccess::GetAccessColumns() const { return std::max(table_->columns(), 0); }

AccessId TableAccess::GetAccessCell(int row, int column) const
{
    if (row < 0 || column < 0 || row >= GetAccessRows() || column >= GetAccessColumns())
        return 0;
    return idOf({row + 1, column + 1});
}

AccessId TableAccess::GetAccessColumnHeader(int column) const
{
    return column >= 0 && column < GetAccessColumns() ? idOf({0, column + 1}) : 0;
}

AccessId TableAccess::GetAccessRowHeader(int row) const
{
    return row >= 0 && row < GetAccessRows() && table_->columns() >= 0 ? idOf({row + 1, 0}) : 0;
}

CRect TableAccess::GetAccessSelection() const
{
    const CellRange cells = selectedCells(table_->selection_, table_->grid_.extent());
    if (cells.empty())
        return {};
    return {cells.firstColumn - 1, cells.firstRow - 1, cells.lastColumn, cells.lastRow};
}

// --- what the table tells

AccessSource* ATableWnd::GetAccess()
{
    if (!access_)
        access_ = std::make_unique<TableAccess>(*this);
    return access_.get();
}

/// Tells of a cell, of the whole table for row 0; whoever hears it may ask hooks.
void ATableWnd::tellAccess(unsigned event, TableCell cell)
{
    if (GetSafeHwnd() && IsAccessActive())
        NotifyWinEvent(event, GetSafeHwnd(), cell.row > 0 ? TableAccess::idOf(cell) : 0);
}

}  // namespace pavane
