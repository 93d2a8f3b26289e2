#pragma once

#include "pavane/tables/grid/cell_range.h"
#include "pavane/tables/grid/TableGrid.h"
#include "platform/api.h"

namespace pavane
{

/// What a press of the left button on `cell` selects: `selection` changes, and the result is
/// non-zero, when it selects something. With `ranges` more than one cell can be selected: `shift`
/// takes the row of a row header, the column of a column header, all from the corner, and moves the
/// end of the selection to a data cell. A plain press on a header selects nothing.
PAVANE_API int pressSelection(ASelectRect& selection, TableCell cell, int shift, int ranges,
                              const TableExtent& table);

/// One step of a drag that extends a selection: what is shown, and the cell of its end.
struct DragStep {
    int firstRow = 1;
    int firstColumn = 1;
    TableCell end;
};

/// The step of a drag with the pointer at `point`. With `scroll` a pointer outside `client` scrolls
/// by a row or a column towards it; the end is the last whole row or column there. The table has
/// cells.
PAVANE_API DragStep dragStep(const TableGrid& grid, CPoint point, const CRect& client, int scroll);

}  // namespace pavane
