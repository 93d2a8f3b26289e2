#include "pavane/tables/grid/selection_repaint.h"

#include <algorithm>

namespace pavane
{

namespace
{

void add(ChangedCells& changed, const CellRange& range)
{
    if (!range.empty())
        changed.ranges[static_cast<std::size_t>(changed.count++)] = range;
}

/// What of `from` lies outside `without`: above, below, left and right of it.
void addDifference(ChangedCells& changed, const CellRange& from, const CellRange& without)
{
    const CellRange both = from.cut(without);
    if (from.empty() || both.empty())
        return add(changed, from);
    add(changed, {from.firstRow, from.firstColumn, both.firstRow - 1, from.lastColumn});
    add(changed, {both.lastRow == from.lastRow ? from.lastRow : both.lastRow + 1, from.firstColumn,
                  both.lastRow == from.lastRow ? from.lastRow - 1 : from.lastRow, from.lastColumn});
    add(changed, {both.firstRow, from.firstColumn, both.lastRow, both.firstColumn - 1});
    add(changed, {both.firstRow, both.lastColumn + 1, both.lastRow, from.lastColumn});
}

}  // namespace

ChangedCells changedCells(const ASelectRect& previous, const ASelectRect& next,
                          const TableExtent& table, const CellRange& view)
{
    ChangedCells changed;
    const CellRange seen = view.cut(allCells(table));
    const CellRange before = selectedCells(previous, table).cut(seen);
    const CellRange after = selectedCells(next, table).cut(seen);
    addDifference(changed, before, after);
    addDifference(changed, after, before);
    const TableCell had{previous.anchorRow, previous.anchorColumn};
    const TableCell has{next.anchorRow, next.anchorColumn};
    if (had == has)
        return changed;
    for (const TableCell cell : {had, has})
        if (seen.contains(cell))
            add(changed, {cell.row, cell.column, cell.row, cell.column});
    return changed;
}

}  // namespace pavane
