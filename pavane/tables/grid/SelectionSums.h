#pragma once

#include "pavane/tables/grid/table_values.h"
#include "platform/api.h"

#include <cstdint>

namespace pavane
{

/// What a status line tells of the numbers among the selected cells. Cells without a number, or
/// with one that is not a number, do not count.
struct SelectionSums {
    std::int64_t cells = 0;    ///< that were looked at
    std::int64_t numbers = 0;  ///< that have one
    double sum = 0;
    double mean = 0;  ///< this and what follows means nothing without numbers
    double least = 0;
    double greatest = 0;
    int partial = 0;  ///< there are more cells than were looked at
    friend constexpr bool operator==(const SelectionSums&, const SelectionSums&) = default;
};

/// Looks at the first `mostCells` of the cells, row by row. Sums have the digits of a double,
/// however many terms they have and whatever their order.
PAVANE_API SelectionSums sumsOf(TableValues& values, const CellRange& cells,
                                std::int64_t mostCells);

}  // namespace pavane
