#include "apps/view/AreaNumbersTbl.h"

#include "pavane/tables/TableWatch.h"

#include <vector>

namespace pavane
{

namespace
{

constexpr int headerChars = 4;

ATableColumn charsWide(int characters) { return {static_cast<std::int16_t>(characters), colChars}; }

}  // namespace

AreaNumbersTbl::AreaNumbersTbl()
{
    setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns |
               optSort);
}

void AreaNumbersTbl::SetTable(const AreaTable* table)
{
    const TableWatch watch(*this);
    table_ = table;
    const int columns = table ? table->columns() : 0;
    if (columns != columns_) {
        std::vector<ATableColumn> widths = {charsWide(headerChars)};
        for (int i = 0; i < columns; ++i) {
            widths.push_back(charsWide(table->width(i)));
            // marks of what can be edited would take the room of names
            if (table->isName(i))
                widths.back().flags |= colEdit | colNoGlyph;
        }
        setColumnPar(widths.data(), static_cast<long>(widths.size()));
        columns_ = columns;
    }
    const int rows = table ? static_cast<int>(table->rows().size()) : 0;
    const SortedBy by = sortedBy();
    const int isOther = rows != this->rows();
    if (isOther)
        setRows(rows);
    if (!watch.gone())
        ReConstruct(getSelectRect());
    if (!watch.gone() && isOther && by.column > 0)
        (void)SortRows(by);
}

const AreaRow& AreaNumbersTbl::rowAt(int row) const
{
    return table_->rows()[static_cast<std::size_t>(recordOf(row)) - 1];
}

CString AreaNumbersTbl::hdrCellAsStr(int row, int column, void*)
{
    if (row > 0)
        return table_ && rowAt(row).area >= 0 ? std::to_string(rowAt(row).area + 1) : CString();
    return table_ && column > 0 ? table_->title(column - 1) : CString();
}

CString AreaNumbersTbl::cellAsStr(int row, int column, void*)
{
    return table_ && row > 0 && column > 0 ? table_->text(recordOf(row) - 1, column - 1)
                                           : CString();
}

int AreaNumbersTbl::cellNumber(int row, int column, double& value)
{
    return table_ && table_->number(recordOf(row) - 1, column - 1, value);
}

CString AreaNumbersTbl::OnToolTip(CPoint point)
{
    const TableCell cell = grid().cellAt(point);
    if (!table_ || cell.row != 0 || cell.column < 1 ||
        !cellRect(cell.row, cell.column).PtInRect(point))
        return ATableWnd::OnToolTip(point);
    return table_->title(cell.column - 1) + ": " + table_->tip(cell.column - 1);
}

void AreaNumbersTbl::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    ATableWnd::drawHeaderCell(dc, rect, row, column);
    drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr), column == 0);
}

void AreaNumbersTbl::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    ATableWnd::drawCell(dc, rect, row, column, state);
    // the tip of what is not shown has all digits, and so have copies and files
    if (table_ && column > 0)
        drawCellText(dc, rect, row, column, table_->shortText(recordOf(row) - 1, column - 1),
                     !table_->isText(column - 1));
}

}  // namespace pavane
