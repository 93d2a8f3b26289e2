#pragma once

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/TableWatch.h"

#include <string>
#include <vector>

namespace pavane
{

/// A column of so many characters.
inline ATableColumn charsWide(int characters)
{
    return {static_cast<std::int16_t>(characters), colChars};
}

/// A table of values in a window: sorted by a click on a title, found in, copied, printed and saved
/// as text. `Table` is a value with columns(), of each title, tip, width and isText, and of each
/// cell text, shortText and number; rows and columns count from 0.
template <class Table>
class ValuesTbl : public ATableWnd
{
public:
    ValuesTbl()
    {
        setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns |
                   optSort);
    }

    CString hdrCellAsStr(int row, int column, void*) override
    {
        if (row > 0)
            return std::to_string(recordOf(row));
        return table_ && column > 0 ? CString(table_->title(column - 1)) : CString();
    }
    CString cellAsStr(int row, int column, void*) override
    {
        return table_ && row > 0 && column > 0
                   ? CString(table_->text(recordOf(row) - 1, column - 1))
                   : CString();
    }
    int cellNumber(int row, int column, double& value) override
    {
        return table_ && table_->number(recordOf(row) - 1, column - 1, value);
    }
    CString OnToolTip(CPoint point) override
    {
        const TableCell cell = grid().cellAt(point);
        if (!table_ || cell.row != 0 || cell.column < 1 ||
            !cellRect(cell.row, cell.column).PtInRect(point))
            return ATableWnd::OnToolTip(point);
        return table_->title(cell.column - 1) + ": " + table_->tip(cell.column - 1);
    }
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override
    {
        ATableWnd::drawHeaderCell(dc, rect, row, column);
        drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr), column == 0);
    }
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override
    {
        ATableWnd::drawCell(dc, rect, row, column, state);
        // the tip of what is not shown has all digits, and so have copies and files
        if (table_ && column > 0)
            drawCellText(dc, rect, row, column, table_->shortText(recordOf(row) - 1, column - 1),
                         !table_->isText(column - 1));
    }

protected:
    const Table* table() const { return table_; }
    /// Shows a table, not owned; null for none. `widths`: those of the columns, the header's first;
    /// empty leaves them. The order of the rows stays while they are as many, unless `isOther`.
    void showTable(const Table* table, int rows, std::vector<ATableColumn> widths, int isOther = 0)
    {
        const TableWatch watch(*this);
        table_ = table;
        if (!widths.empty())
            setColumnPar(widths.data(), static_cast<long>(widths.size()));
        const SortedBy by = sortedBy();
        const int areOthers = isOther || rows != this->rows();
        if (areOthers)
            setRows(rows);
        if (!watch.gone())
            ReConstruct(getSelectRect());
        if (!watch.gone() && areOthers && by.column > 0)
            (void)SortRows(by);
    }

private:
    const Table* table_ = nullptr;
};

}  // namespace pavane
