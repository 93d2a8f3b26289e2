#pragma once

#include <cstdint>

namespace pavane
{

/// A selection of a table: the cells between two corners, which may lie either way round. The
/// anchor is the cell with the focus. Rows and columns count from 1, 0 is the header. It may reach
/// beyond the table; what is not there is not selected.
struct ASelectRect {
    std::int32_t anchorRow = 1;
    std::int32_t anchorColumn = 1;
    std::int32_t endRow = 1;
    std::int32_t endColumn = 1;

    /// Non-zero when the cell lies between the corners.
    constexpr int contains(int row, int column) const
    {
        return between(row, anchorRow, endRow) && between(column, anchorColumn, endColumn);
    }
    friend constexpr bool operator==(const ASelectRect&, const ASelectRect&) = default;

private:
    static constexpr bool between(int value, int a, int b)
    {
        return a < b ? a <= value && value <= b : b <= value && value <= a;
    }
};

}  // namespace pavane
