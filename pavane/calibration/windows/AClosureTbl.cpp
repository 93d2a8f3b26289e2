#include "pavane/calibration/windows/AClosureTbl.h"

#include "pavane/resources/closure_dialog.h"
#include "tessel/value_text.h"

#include <cmath>
#include <iterator>
#include <utility>

namespace pavane
{

namespace
{

enum Column { nameColumn, triangleColumn, pointsColumn, meanColumn, scatterColumn, remarkColumn };
constexpr ATableColumn boxes = {5, colChars};
constexpr ATableColumn triangleColumns[] = {boxes,          {16, colChars}, {8, colChars},
                                            {10, colChars}, {11, colChars}, {20, colStretch}};
constexpr ATableColumn telescopeColumns[] = {boxes, {12, colStretch}};

}  // namespace

AClosureTbl::AClosureTbl(int ofTriangles) : AMarkTable(MarkItems::rows), ofTriangles_(ofTriangles)
{
    std::vector<ATableColumn> columns(std::begin(telescopeColumns), std::end(telescopeColumns));
    if (ofTriangles)
        columns.assign(std::begin(triangleColumns), std::end(triangleColumns));
    setColumnPar(columns.data(), static_cast<long>(columns.size()));
    setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns |
               optSort);
}

const char* AClosureTbl::GetWndClassName() { return "AClosureTbl"; }
CString AClosureTbl::profileSection() { return ofTriangles_ ? "Table of closure triangles" : ""; }

void AClosureTbl::SetRecords(std::vector<ClosureRow> rows)
{
    rows_ = std::move(rows);
    setRows(static_cast<long>(rows_.size()));
    SetMarkCount(static_cast<int>(rows_.size()));
    SetMark(ABitArray(static_cast<int>(rows_.size())));
    if (GetSafeHwnd())
        ReConstruct({1, 1, 1, 1});
}

void AClosureTbl::SetNumbers(std::vector<ClosureRow> rows)
{
    if (rows.size() != rows_.size())
        return;
    rows_ = std::move(rows);
    Invalidate();
}

const ClosureRow* AClosureTbl::rowAt(int row) const
{
    const auto at = static_cast<std::size_t>(recordOf(row)) - 1;
    return row > 0 && at < rows_.size() ? &rows_[at] : nullptr;
}

double AClosureTbl::numberOf(const ClosureRow& row, int column) const
{
    return column == pointsColumn ? row.points : column == meanColumn ? row.mean : row.scatter;
}

CString AClosureTbl::hdrCellAsStr(int row, int column, void*)
{
    if (row > 0 || column < 1)
        return {};
    if (!ofTriangles_)
        return "Telescope";
    return column <= static_cast<int>(std::size(closureTitles)) ? closureTitles[column - 1] : "";
}

CString AClosureTbl::cellAsStr(int row, int column, void*)
{
    const ClosureRow* const at = rowAt(row);
    if (!at)
        return {};
    if (column == triangleColumn)
        return at->name;
    if (column == remarkColumn)
        return at->isTrivial ? trivialText : "";
    if (!at->isKnown || (column != pointsColumn && at->points == 0))
        return {};
    if (column == pointsColumn)
        return std::to_string(static_cast<long long>(at->points));
    constexpr double tenths = 10;
    const double value = std::round(numberOf(*at, column) * tenths) / tenths;
    constexpr int digits = 4;
    return valToStr(value, digits);
}

int AClosureTbl::cellNumber(int row, int column, double& value)
{
    const ClosureRow* const at = rowAt(row);
    if (!at || !at->isKnown || column < pointsColumn || column > scatterColumn)
        return 0;
    value = numberOf(*at, column);
    return 1;
}

int AClosureTbl::isTextRight(int column)
{
    return ofTriangles_ && column >= pointsColumn && column <= scatterColumn;
}

CString AClosureTbl::OnToolTip(CPoint point)
{
    const TableCell cell = grid().cellAt(point);
    const int isTitle = ofTriangles_ && cell.row == 0 && cell.column > 0 &&
                        cell.column <= static_cast<int>(std::size(closureTips)) &&
                        cellRect(cell.row, cell.column).PtInRect(point);
    return isTitle ? CString(closureTips[cell.column - 1]) : AMarkTable::OnToolTip(point);
}

}  // namespace pavane
