#pragma once

#include "apps/view/ValuesTbl.h"
#include "pavane/measures/profiles/NumberTable.h"

namespace pavane
{

/// A table of numbers in a window.
class NumbersTbl : public ValuesTbl<NumberTable>
{
public:
    /// Shows a table, not owned; null for none. To be told again when its rows or columns are
    /// others; the order of the rows and the selection stay as far as there are such rows.
    void SetTable(const NumberTable* table);

    const char* GetWndClassName() override { return "NumbersTbl"; }
};

}  // namespace pavane
