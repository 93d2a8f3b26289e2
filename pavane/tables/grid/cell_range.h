#pragma once

#include "pavane/tables/grid/ASelectRect.h"

#include <algorithm>
#include <cstdint>

namespace pavane
{

/// One cell; row 0 and column 0 are the headers.
struct TableCell {
    int row = 0;
    int column = 0;
    friend constexpr bool operator==(const TableCell&, const TableCell&) = default;
};

/// The data cells of a table: rows 1 to `rows`, columns 1 to `lastColumn`.
struct TableExtent {
    int rows = 0;
    int lastColumn = -1;
    constexpr bool empty() const { return rows < 1 || lastColumn < 1; }
    constexpr bool contains(TableCell c) const
    {
        return c.row >= 1 && c.row <= rows && c.column >= 1 && c.column <= lastColumn;
    }
};

/// A rectangle of cells, both ends included; empty when a last one lies before its first.
struct CellRange {
    int firstRow = 1;
    int firstColumn = 1;
    int lastRow = 0;
    int lastColumn = 0;

    constexpr bool empty() const { return lastRow < firstRow || lastColumn < firstColumn; }
    constexpr std::int64_t rowCount() const
    {
        return lastRow < firstRow ? 0 : std::int64_t{lastRow} - firstRow + 1;
    }
    constexpr std::int64_t columnCount() const
    {
        return lastColumn < firstColumn ? 0 : std::int64_t{lastColumn} - firstColumn + 1;
    }
    constexpr bool contains(TableCell c) const
    {
        return c.row >= firstRow && c.row <= lastRow && c.column >= firstColumn &&
               c.column <= lastColumn;
    }
    constexpr CellRange cut(const CellRange& other) const
    {
        return {std::max(firstRow, other.firstRow), std::max(firstColumn, other.firstColumn),
                std::min(lastRow, other.lastRow), std::min(lastColumn, other.lastColumn)};
    }
    friend constexpr bool operator==(const CellRange&, const CellRange&) = default;
};

/// All data cells.
constexpr CellRange allCells(const TableExtent& table)
{
    return {1, 1, std::max(table.rows, 0), std::max(table.lastColumn, 0)};
}

/// The cells that a selection takes of a table.
constexpr CellRange selectedCells(const ASelectRect& s, const TableExtent& table)
{
    const CellRange given{std::min(s.anchorRow, s.endRow), std::min(s.anchorColumn, s.endColumn),
                          std::max(s.anchorRow, s.endRow), std::max(s.anchorColumn, s.endColumn)};
    return given.cut(allCells(table));
}

/// The selection of one cell.
constexpr ASelectRect oneCell(TableCell c) { return {c.row, c.column, c.row, c.column}; }

/// The data cell nearest to a cell; the table is not empty.
constexpr TableCell nearestCell(TableCell c, const TableExtent& table)
{
    return {std::clamp(c.row, 1, table.rows), std::clamp(c.column, 1, table.lastColumn)};
}

}  // namespace pavane
