#include "apps/view/UvRowsTbl.h"

#include "pavane/tables/TableWatch.h"
#include "pavane/tables/uvdata/uv_row_columns.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr int headerChars = 8;

ATableColumn charsWide(int characters) { return {static_cast<std::int16_t>(characters), colChars}; }

const UvRowColumn& columnAt(int column)
{
    return uvRowColumns()[static_cast<std::size_t>(column) - 1];
}

}  // namespace

UvRowsTbl::UvRowsTbl()
{
    setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns |
               optSort);
    std::vector<ATableColumn> widths = {charsWide(headerChars)};
    for (const UvRowColumn& column : uvRowColumns())
        widths.push_back(charsWide(column.width));
    setColumnPar(widths.data(), static_cast<long>(widths.size()));
}

void UvRowsTbl::SetVisibilities(const AUVXFile* file, std::vector<UvPointOrigin> rows)
{
    const TableWatch watch(*this);
    const SortedBy by = sortedBy();
    file_ = file;
    rows_ = std::move(rows);
    setRows(static_cast<int>(rows_.size()));
    if (!watch.gone())
        ReConstruct(getSelectRect());
    if (!watch.gone() && by.column > 0 && file)
        (void)SortRows(by);
}

const UvPointOrigin& UvRowsTbl::rowAt(int row) const
{
    return rows_[static_cast<std::size_t>(recordOf(row)) - 1];
}

CString UvRowsTbl::hdrCellAsStr(int row, int column, void*)
{
    if (row > 0)
        return std::to_string(recordOf(row));
    return column > 0 ? CString(columnAt(column).title) : CString();
}

CString UvRowsTbl::cellAsStr(int row, int column, void*)
{
    return file_ && row > 0 && column > 0 ? columnAt(column).text(*file_, rowAt(row)) : CString();
}

int UvRowsTbl::cellNumber(int row, int column, double& value)
{
    if (!file_ || row < 1 || column < 1 || !columnAt(column).number)
        return 0;
    value = columnAt(column).number(*file_, rowAt(row));
    return 1;
}

CString UvRowsTbl::OnToolTip(CPoint point)
{
    const TableCell cell = grid().cellAt(point);
    if (cell.row != 0 || cell.column < 1 || !cellRect(cell.row, cell.column).PtInRect(point))
        return ATableWnd::OnToolTip(point);
    return CString(columnAt(cell.column).title) + ": " + columnAt(cell.column).tip;
}

void UvRowsTbl::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    ATableWnd::drawHeaderCell(dc, rect, row, column);
    drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr), column == 0);
}

void UvRowsTbl::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    ATableWnd::drawCell(dc, rect, row, column, state);
    if (file_ && column > 0)
        drawCellText(dc, rect, row, column, cellAsStr(row, column, nullptr),
                     columnAt(column).number != nullptr);
}

}  // namespace pavane
