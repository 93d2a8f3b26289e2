#include "pavane/tables/LiveValues.h"

namespace pavane
{

TableExtent LiveValues::extent()
{
    if (watch_.gone())
        return {};
    return {static_cast<int>(table_.rows()), table_.columns()};
}

int LiveValues::text(TableCell cell, CString& text)
{
    if (watch_.gone())
        return 0;
    text = cell.row == 0 || cell.column == 0 ? table_.hdrCellAsStr(cell.row, cell.column, nullptr)
                                             : table_.cellAsStr(cell.row, cell.column, nullptr);
    return !watch_.gone();
}

int LiveValues::number(TableCell cell, double& value, int& isNumber)
{
    if (watch_.gone())
        return 0;
    isNumber = table_.cellNumber(cell.row, cell.column, value);
    return !watch_.gone();
}

}  // namespace pavane
