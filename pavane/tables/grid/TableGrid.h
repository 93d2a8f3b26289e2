#pragma once

#include "pavane/tables/grid/cell_range.h"
#include "pavane/tables/grid/grid_layout.h"
#include "pavane/tables/grid/TableColumns.h"
#include "platform/api.h"
#include "platform/geometry.h"

#include <cstdint>

namespace pavane
{

/// Where the cells of a table stand: columns, rows, layout, and what is scrolled away. Pixels of
/// the client area, rectangles half-open. Costs follow the columns in view, never the rows;
/// coordinates that no int holds saturate.
class PAVANE_API TableGrid
{
public:
    /// Cut to 0 to 2^31 - 1.
    void setRows(std::int64_t rows);
    int rows() const { return rows_; }
    TableColumns& columns() { return columns_; }
    const TableColumns& columns() const { return columns_; }
    TableExtent extent() const { return {rows_, columns_.last()}; }
    void setHeaderRow(int on) { headerRow_ = on ? 1 : 0; }
    int headerRow() const { return headerRow_; }

    /// Lays out, and keeps what is scrolled away inside what there is. The header row of `metrics`
    /// is this table's, whatever it says.
    void layOut(GridMetrics metrics);
    /// A row height that holds until the next layout; at least 1.
    void setRowHeight(int height) { layout_.rowHeight = height < 1 ? 1 : height; }
    int rowHeight() const { return layout_.rowHeight; }
    int lastFirstRow() const { return layout_.lastFirstRow; }
    int lastFirstColumn() const { return layout_.lastFirstColumn; }
    int firstRow() const { return firstRow_; }
    int firstColumn() const { return firstColumn_; }
    /// Scrolls, at most as far as the layout allows; non-zero when something moved.
    int setFirst(std::int64_t row, std::int64_t column);

    /// Deliberate: columns that are scrolled away to the left stand where the first visible one
    /// does; tables rely on it. Empty for cells that are not there.
    CRect cellRect(int row, int column) const;
    /// What of a range of data cells can be seen in `client`, as one rectangle.
    CRect rangeRect(const CellRange& cells, const CRect& client) const;
    /// The data cells that meet `area`; a pixel of a cell is enough.
    CellRange cellsIn(const CRect& area) const;
    /// The data rows between two heights, the data columns between two places across; the rest of
    /// the range is that of the whole table.
    CellRange rowsIn(int top, int bottom) const;
    CellRange columnsIn(int left, int right) const;
    /// The cell under a point, row 0 and column 0 for the headers; beyond the cells, the last ones.
    TableCell cellAt(CPoint point) const;

    /// The column whose right edge stands at most `reach` pixels from a point in the header row; -1
    /// when there is none. Of edges at one place, that of a column without width from the right.
    int edgeAt(CPoint point, int reach) const;

    /// First row and column, as a cell, that show `cell` with the least scrolling; a cell larger
    /// than the view from its top left. Headers ask for nothing in their direction.
    TableCell firstToShow(TableCell cell, const CRect& client) const;
    /// Whole data rows and columns in view, at least 1 each.
    int wholeRows(const CRect& client) const;
    int wholeColumns(const CRect& client) const;
    /// A page: the whole rows or columns in view less one, at least 1.
    int pageRows(const CRect& client) const;
    int pageColumns(const CRect& client) const;

    /// Height of the header row, width of the header column.
    int headerHeight() const { return headerRow_ ? layout_.rowHeight : 0; }
    int headerWidth() const { return columns_.width(0); }
    /// Pixels that the picture moves down when `row` becomes the first row, or to the right when
    /// `column` becomes the first column.
    std::int64_t rowShift(int row) const;
    std::int64_t columnShift(int column) const;

private:
    TableColumns columns_;
    GridLayout layout_;
    int rows_ = 0;
    int headerRow_ = 0;
    int firstRow_ = 1;
    int firstColumn_ = 1;
};

}  // namespace pavane
