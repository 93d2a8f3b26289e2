#include "apps/view/profiles/NumbersTbl.h"

#include "pavane/tables/TableWatch.h"

#include <vector>

namespace pavane
{

namespace
{

constexpr int headerChars = 5;

ATableColumn charsWide(int characters) { return {static_cast<std::int16_t>(characters), colChars}; }

}  // namespace

NumbersTbl::NumbersTbl()
{
    setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns |
               optSort);
}

void NumbersTbl::SetTable(const NumberTable* table)
{
    const TableWatch watch(*this);
    table_ = table;
    std::vector<ATableColumn> widths = {charsWide(headerChars)};
    for (int i = 0; table && i < table->columns(); ++i)
        widths.push_back(charsWide(table->width(i)));
    setColumnPar(widths.data(), static_cast<long>(widths.size()));
    const int rows = table ? table->rows() : 0;
    const SortedBy by = sortedBy();
    const int isOther = rows != this->rows();
    if (isOther)
        setRows(rows);
    if (!watch.gone())
        ReConstruct(getSelectRect());
    if (!watch.gone() && isOther && by.column > 0)
        (void)SortRows(by);
}

CString NumbersTbl::hdrCellAsStr(int row, int column, void*)
{
    if (row > 0)
        return std::to_string(recordOf(row));
    return table_ && column > 0 ? table_->title(column - 1) : CString();
}

CString NumbersTbl::cellAsStr(int row, int column, void*)
{
    return table_ && row > 0 && column > 0 ? table_->text(recordOf(row) - 1, column - 1)
                                           : CString();
}

int NumbersTbl::cellNumber(int row, int column, double& value)
{
    return table_ && table_->number(recordOf(row) - 1, column - 1, value);
}

CString NumbersTbl::OnToolTip(CPoint point)
{
    const TableCell cell = grid().cellAt(point);
    if (!table_ || cell.row != 0 || cell.column < 1 ||
        !cellRect(cell.row, cell.column).PtInRect(point))
        return ATableWnd::OnToolTip(point);
    return table_->title(cell.column - 1) + ": " + table_->tip(cell.column - 1);
}

void NumbersTbl::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    ATableWnd::drawHeaderCell(dc, rect, row, column);
    drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr), column == 0);
}

void NumbersTbl::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    ATableWnd::drawCell(dc, rect, row, column, state);
    // the tip of what is not shown has all digits, and so have copies and files
    if (table_ && column > 0)
        drawCellText(dc, rect, row, column, table_->shortText(recordOf(row) - 1, column - 1),
                     !table_->isText(column - 1));
}

}  // namespace pavane
