#include "pavane/tables/grid/selection_press.h"

#include <algorithm>

namespace pavane
{

int pressSelection(ASelectRect& selection, TableCell cell, int shift, int ranges,
                   const TableExtent& table)
{
    if (table.empty())
        return 0;
    const bool data = table.contains(cell);
    if (!ranges || !shift) {
        if (data)
            selection = oneCell(cell);
        return data;
    }
    // whole rows and columns have their anchor at the far end, so that their start stays in view
    if (data) {
        selection.endRow = cell.row;
        selection.endColumn = cell.column;
    } else if (cell.row == 0 && cell.column == 0) {
        selection = {table.rows, table.lastColumn, 1, 1};
    } else if (cell.row == 0) {
        selection = {table.rows, cell.column, 1, cell.column};
    } else {
        selection = {cell.row, table.lastColumn, cell.row, 1};
    }
    return 1;
}

DragStep dragStep(const TableGrid& grid, CPoint point, const CRect& client, int scroll)
{
    const int up = point.y < client.top;
    const int down = point.y >= client.bottom;
    const int left = point.x < client.left;
    const int right = point.x >= client.right;
    TableGrid shown = grid;
    if (scroll)
        (void)shown.setFirst(std::int64_t{grid.firstRow()} + down - up,
                             std::int64_t{grid.firstColumn()} + right - left);
    DragStep step{shown.firstRow(), shown.firstColumn(), shown.cellAt(point)};
    if (up)
        step.end.row = step.firstRow;
    if (down)
        step.end.row = static_cast<int>(std::min<std::int64_t>(
            std::int64_t{step.firstRow} + shown.wholeRows(client) - 1, grid.rows()));
    if (left)
        step.end.column = step.firstColumn;
    if (right)
        step.end.column = step.firstColumn + shown.wholeColumns(client) - 1;
    step.end = nearestCell(step.end, grid.extent());
    return step;
}

}  // namespace pavane
