#pragma once

#include "pavane/tables/grid/cell_range.h"
#include "platform/api.h"

#include <array>

namespace pavane
{

/// What a change of selection makes to be painted again: at most 8 ranges whose cells are selected
/// now and were not, or the reverse, and the cells that had and have the focus.
struct ChangedCells {
    std::array<CellRange, 10> ranges;
    int count = 0;
};

/// The cells inside `view` that look different after the selection went from `previous` to `next`.
/// The cost does not depend on how many cells that are.
PAVANE_API ChangedCells changedCells(const ASelectRect& previous, const ASelectRect& next,
                                     const TableExtent& table, const CellRange& view);

}  // namespace pavane
