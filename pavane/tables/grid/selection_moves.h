#pragma once

#include "pavane/tables/grid/cell_range.h"
#include "platform/api.h"

namespace pavane
{

/// What a key does to the focus cell. `next` and `previous` go row by row.
enum class TableMove {
    up,
    down,
    left,
    right,
    pageUp,
    pageDown,
    pageLeft,
    pageRight,
    rowStart,
    rowEnd,
    tableStart,
    tableEnd,
    next,
    previous
};

/// What moves are measured with.
struct MoveSpace {
    TableExtent table;
    int pageRows = 1;
    int pageColumns = 1;
};

/// The selection after `count` moves at once; with `extend` its end stays where it was, else it
/// is one cell. An anchor beyond the table moves from the nearest cell. Nothing changes in a table
/// without cells.
PAVANE_API ASelectRect movedSelection(const ASelectRect& from, TableMove move, int count,
                                      int extend, const MoveSpace& space);

}  // namespace pavane
