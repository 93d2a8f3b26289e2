#include "pavane/axes/dialogs/ABeamTbl.h"

#include "pavane/resources/map_display_messages.h"
#include "tessel/value_text.h"

#include <iterator>
#include <utility>

namespace pavane
{

namespace
{

enum Column { nameColumn, valueColumn, unitColumn };
constexpr int shownDigits = 5;

}  // namespace

ABeamTbl::ABeamTbl()
{
    ATableColumn columns[] = {{26, colChars}, {14, colChars}, {10, colStretch}};
    setColumnPar(columns, static_cast<long>(std::size(columns)));
    setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns);
}

void ABeamTbl::SetNumbers(std::vector<BeamNumber> numbers)
{
    numbers_ = std::move(numbers);
    setRows(static_cast<long>(numbers_.size()));
    if (GetSafeHwnd())
        ReConstruct({1, 1, 1, 1});
}

const BeamNumber* ABeamTbl::at(int row) const
{
    const bool is = row > 0 && static_cast<std::size_t>(row) <= numbers_.size();
    return is ? &numbers_[static_cast<std::size_t>(row) - 1] : nullptr;
}

CString ABeamTbl::hdrCellAsStr(int row, int column, void* /*context*/)
{
    if (row == 0)
        return column >= 0 && column < static_cast<int>(std::size(beamTableTitles))
                   ? beamTableTitles[column]
                   : "";
    const BeamNumber* const number = at(row);
    return number && column == nameColumn ? number->name : CString();
}

CString ABeamTbl::cellAsStr(int row, int column, void* /*context*/)
{
    const BeamNumber* const number = at(row);
    if (!number)
        return {};
    return column == valueColumn  ? CString(valToStr(number->value, shownDigits))
           : column == unitColumn ? number->unit
                                  : CString();
}

int ABeamTbl::cellNumber(int row, int column, double& value)
{
    const BeamNumber* const number = at(row);
    if (!number || column != valueColumn)
        return 0;
    value = number->value;
    return 1;
}

void ABeamTbl::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    ATableWnd::drawHeaderCell(dc, rect, row, column);
    drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr), column == valueColumn);
}

void ABeamTbl::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    ATableWnd::drawCell(dc, rect, row, column, state);
    drawCellText(dc, rect, row, column, cellAsStr(row, column, nullptr), column == valueColumn);
}

}  // namespace pavane
