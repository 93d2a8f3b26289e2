#pragma once

#include "pavane/tables/grid/cell_range.h"

#include <algorithm>
#include <cstdint>

namespace pavane
{

/// How a table is cut into printed pages.
struct TablePages {
    int rows = 2;  ///< rows of a page, the header row included
    int headerRow = 0;

    /// As many rows as the height of the page holds, 4.5 mm each; at least one of data.
    static constexpr TablePages ofHeight(int millimetres, int headerRow)
    {
        const int header = headerRow ? 1 : 0;
        const std::int64_t rows = std::max(std::int64_t{millimetres}, std::int64_t{0}) * 2 / 9;
        return {std::max(static_cast<int>(rows), 1 + header), header};
    }
    constexpr int dataRows() const { return rows - headerRow; }
    constexpr int count(int tableRows) const
    {
        const std::int64_t pages = (std::int64_t{tableRows} - 1 + dataRows()) / dataRows();
        return static_cast<int>(std::max<std::int64_t>(pages, 1));
    }
    /// The data rows of a page, which counts from 1; empty beyond the last.
    constexpr CellRange rowsOf(int page, const TableExtent& table) const
    {
        const std::int64_t first = (std::int64_t{page} - 1) * dataRows() + 1;
        if (page < 1 || first > table.rows)
            return {};
        const std::int64_t last = std::min<std::int64_t>(first + dataRows() - 1, table.rows);
        return {static_cast<int>(first), 1, static_cast<int>(last), table.lastColumn};
    }
};

}  // namespace pavane
