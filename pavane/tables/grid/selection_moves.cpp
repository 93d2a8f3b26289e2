#include "pavane/tables/grid/selection_moves.h"

#include <algorithm>
#include <cstdint>

namespace pavane
{

namespace
{

int cut(std::int64_t value, int most)
{
    return static_cast<int>(std::clamp<std::int64_t>(value, 1, most));
}

/// Row by row: the cells of a table in one line.
TableCell along(TableCell from, std::int64_t step, const TableExtent& table)
{
    const std::int64_t at =
        (std::int64_t{from.row} - 1) * table.lastColumn + (from.column - 1) + step;
    const std::int64_t end = std::int64_t{table.rows} * table.lastColumn - 1;
    const std::int64_t cell = std::clamp<std::int64_t>(at, 0, end);
    return {static_cast<int>(cell / table.lastColumn) + 1,
            static_cast<int>(cell % table.lastColumn) + 1};
}

TableCell moved(TableCell from, TableMove move, std::int64_t count, const MoveSpace& space)
{
    const TableExtent& table = space.table;
    const auto rows = [&](std::int64_t step) {
        return TableCell{cut(from.row + step, table.rows), from.column};
    };
    const auto columns = [&](std::int64_t step) {
        return TableCell{from.row, cut(from.column + step, table.lastColumn)};
    };
    switch (move) {
    case TableMove::up:
        return rows(-count);
    case TableMove::down:
        return rows(count);
    case TableMove::left:
        return columns(-count);
    case TableMove::right:
        return columns(count);
    case TableMove::pageUp:
        return rows(-count * space.pageRows);
    case TableMove::pageDown:
        return rows(count * space.pageRows);
    case TableMove::pageLeft:
        return columns(-count * space.pageColumns);
    case TableMove::pageRight:
        return columns(count * space.pageColumns);
    case TableMove::rowStart:
        return {from.row, 1};
    case TableMove::rowEnd:
        return {from.row, table.lastColumn};
    case TableMove::tableStart:
        return {1, 1};
    case TableMove::tableEnd:
        return {table.rows, table.lastColumn};
    case TableMove::next:
        return along(from, count, table);
    case TableMove::previous:
        return along(from, -count, table);
    }
    return from;
}

}  // namespace

ASelectRect movedSelection(const ASelectRect& from, TableMove move, int count, int extend,
                           const MoveSpace& space)
{
    if (space.table.empty())
        return from;
    const TableCell anchor = nearestCell({from.anchorRow, from.anchorColumn}, space.table);
    const TableCell to = moved(anchor, move, count, space);
    if (!extend)
        return oneCell(to);
    return {to.row, to.column, from.endRow, from.endColumn};
}

}  // namespace pavane
