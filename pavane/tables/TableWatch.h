#pragma once

#include "pavane/tables/ATableWnd.h"

namespace pavane
{

/// Asks after a hook whether the table, and the window that it had, are still there.
class TableWatch
{
public:
    explicit TableWatch(const ATableWnd& table)
        : life_(table.life_), table_(&table), window_(table.GetSafeHwnd())
    {
    }
    bool gone() const { return !life_.alive() || (window_ && CWnd::FromHandle(window_) != table_); }

private:
    LifeWatch life_;
    const ATableWnd* table_;
    HWND window_;
};

}  // namespace pavane
