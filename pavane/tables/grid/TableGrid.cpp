#include "pavane/tables/grid/TableGrid.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace pavane
{

namespace
{

constexpr int most = std::numeric_limits<int>::max();

int saturated(std::int64_t value)
{
    return static_cast<int>(std::clamp<std::int64_t>(value, std::numeric_limits<int>::min(), most));
}

}  // namespace

void TableGrid::setRows(std::int64_t rows)
{
    rows_ = static_cast<int>(std::clamp<std::int64_t>(rows, 0, most));
}

void TableGrid::layOut(GridMetrics metrics)
{
    metrics.headerRow = headerRow_;
    layout_ = layOutGrid(columns_, rows_, metrics);
    (void)setFirst(firstRow_, firstColumn_);  // cuts; that nothing moved is as good
}

int TableGrid::setFirst(std::int64_t row, std::int64_t column)
{
    const int oldRow = firstRow_;
    const int oldColumn = firstColumn_;
    firstRow_ = static_cast<int>(std::clamp<std::int64_t>(row, 1, layout_.lastFirstRow));
    firstColumn_ = static_cast<int>(std::clamp<std::int64_t>(column, 1, layout_.lastFirstColumn));
    return firstRow_ != oldRow || firstColumn_ != oldColumn;
}

CRect TableGrid::cellRect(int row, int column) const
{
    if (row < 0 || row > rows_ || !columns_.has(column))
        return {};
    std::int64_t top = 0;
    std::int64_t bottom = headerHeight();
    if (row > 0) {
        top = headerHeight() + (std::int64_t{row} - firstRow_) * rowHeight();
        bottom = top + rowHeight();
    }
    std::int64_t left = 0;
    if (column > 0) {
        left = headerWidth();
        if (column > firstColumn_)
            left += columns_.before(column) - columns_.before(firstColumn_);
    }
    return {saturated(left), saturated(top), saturated(left + columns_.width(column)),
            saturated(bottom)};
}

CRect TableGrid::rangeRect(const CellRange& cells, const CRect& client) const
{
    const CellRange seen = cells.cut(allCells(extent())).cut({firstRow_, firstColumn_, most, most});
    if (seen.empty())
        return {};
    const CRect first = cellRect(seen.firstRow, seen.firstColumn);
    const CRect last = cellRect(seen.lastRow, seen.lastColumn);
    CRect rect;
    (void)rect.IntersectRect({first.left, first.top, last.right, last.bottom}, client);
    return rect;
}

CellRange TableGrid::cellsIn(const CRect& area) const
{
    return rowsIn(area.top, area.bottom).cut(columnsIn(area.left, area.right));
}

CellRange TableGrid::rowsIn(int top, int bottom) const
{
    CellRange rows = allCells(extent());
    if (bottom <= std::max(top, headerHeight()))
        return {};
    const auto rowAt = [&](int y) {
        return firstRow_ +
               std::max<std::int64_t>(std::int64_t{y} - headerHeight(), 0) / rowHeight();
    };
    rows.firstRow = saturated(rowAt(top));
    rows.lastRow = saturated(std::min<std::int64_t>(rowAt(bottom - 1), rows_));
    return rows;
}

CellRange TableGrid::columnsIn(int left, int right) const
{
    CellRange columns = allCells(extent());
    const int begin = std::max(left, headerWidth());
    if (right <= begin)
        return {};
    // as `before` counts
    const std::int64_t scrolled = columns_.before(firstColumn_) - headerWidth();
    columns.firstColumn = columns_.columnAt(begin + scrolled, firstColumn_);
    columns.lastColumn = std::min(
        columns_.columnAt(std::int64_t{right} - 1 + scrolled, firstColumn_), columns_.last());
    return columns;
}

TableCell TableGrid::cellAt(CPoint point) const
{
    TableCell cell;
    // Deliberate: a row begins one pixel above its top edge here, on the line of the row above.
    const std::int64_t band = (std::int64_t{point.y} + 1) / rowHeight();
    const std::int64_t row = headerRow_ && band == 0 ? 0 : band + firstRow_ - headerRow_;
    cell.row = static_cast<int>(std::clamp<std::int64_t>(row, 0, rows_));
    if (point.x >= headerWidth())
        cell.column = columns_.columnAt(
            std::int64_t{point.x} - headerWidth() + columns_.before(firstColumn_), firstColumn_);
    cell.column = std::clamp(cell.column, 0, std::max(columns_.last(), 0));
    return cell;
}

int TableGrid::edgeAt(CPoint point, int reach) const
{
    if (point.y < 0 || point.y >= headerHeight() || columns_.last() < 0)
        return -1;
    int nearest = -1;
    std::int64_t distance = std::int64_t{reach} + 1;
    const auto look = [&](int column, std::int64_t edge) {
        const std::int64_t off = std::abs(point.x - edge);
        if (off < distance || (off == distance && nearest >= 0 && point.x >= edge)) {
            nearest = column;
            distance = off;
        }
    };
    look(0, headerWidth());
    // as `before` counts; columns before the one under the left end of the reach end before it
    const std::int64_t scrolled = columns_.before(firstColumn_) - headerWidth();
    for (int c = columns_.columnAt(point.x - reach - 1 + scrolled, firstColumn_);
         c <= columns_.last(); ++c) {
        const std::int64_t edge = columns_.before(c + 1) - scrolled;
        if (edge > std::int64_t{point.x} + reach)
            break;
        look(c, edge);
    }
    return nearest;
}

TableCell TableGrid::firstToShow(TableCell cell, const CRect& client) const
{
    TableCell first{firstRow_, firstColumn_};
    const int row = std::min(cell.row, rows_);
    const int column = std::min(cell.column, columns_.last());
    if (row >= 1)
        first.row =
            std::clamp(first.row, saturated(std::int64_t{row} - wholeRows(client) + 1), row);
    if (column >= 1) {
        const std::int64_t room = std::int64_t{client.Width()} - headerWidth();
        // the first column whose left edge is near enough to the right edge of this one
        const std::int64_t edge = columns_.before(column + 1) - room;
        int least = edge <= columns_.before(1) ? 1 : columns_.columnAt(edge - 1, 1) + 1;
        least = std::min(least, column);
        first.column = std::clamp(first.column, least, column);
    }
    first.row = std::clamp(first.row, 1, layout_.lastFirstRow);
    first.column = std::clamp(first.column, 1, layout_.lastFirstColumn);
    return first;
}

int TableGrid::wholeRows(const CRect& client) const
{
    return std::max((client.Height() - headerHeight()) / rowHeight(), 1);
}

int TableGrid::wholeColumns(const CRect& client) const
{
    const std::int64_t edge =
        std::int64_t{client.Width()} - headerWidth() + columns_.before(firstColumn_);
    return std::max(columns_.columnAt(edge, firstColumn_) - firstColumn_, 1);
}

int TableGrid::pageRows(const CRect& client) const { return std::max(wholeRows(client) - 1, 1); }

int TableGrid::pageColumns(const CRect& client) const
{
    return std::max(wholeColumns(client) - 1, 1);
}

std::int64_t TableGrid::rowShift(int row) const
{
    return (std::int64_t{firstRow_} - row) * rowHeight();
}

std::int64_t TableGrid::columnShift(int column) const
{
    return columns_.before(firstColumn_) - columns_.before(column);
}

}  // namespace pavane
