#include "pavane/tables/observation/mark_access.h"

#include "pavane/tables/observation/AMarkTable.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int mostTold = 64;

}  // namespace

MarkAccess::MarkAccess(AMarkTable& table) : TableAccess(table), table_(&table) {}

int MarkAccess::GetAccessPart(AccessId id, AccessPart& part) const
{
    // the texts of cells come from hooks, which may end the table
    if (!TableAccess::GetAccessPart(id, part))
        return 0;
    const int row = part.row + 1;
    const int column = part.column + 1;
    if (id == 0 || !table_->hasBox(row, column))
        return 1;
    const int item = table_->itemOf(row, column);
    if (table_->isMarked(item))
        part.state |= STATE_SYSTEM_CHECKED;
    part.description = table_->describeItem(item);
    return 1;
}

void MarkAccess::tellMarks(int first, int last) const
{
    const HWND window = table_->GetSafeHwnd();
    if (!window || !IsAccessActive())
        return;
    last = std::min(last, first + mostTold - 1);
    for (int i = first; i <= last && CWnd::FromHandle(window) == table_; ++i) {
        const TableCell box = table_->markItems() == MarkItems::columns
                                  ? TableCell{0, i + 1}
                                  : TableCell{table_->rowOf(i + 1), table_->markColumn()};
        NotifyWinEvent(EVENT_OBJECT_STATECHANGE, window, idOf(box));
    }
}

}  // namespace pavane
