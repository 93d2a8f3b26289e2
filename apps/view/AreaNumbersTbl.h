#pragma once

#include "apps/view/ValuesTbl.h"
#include "pavane/measures/areas/AreaTable.h"

namespace pavane
{

/// The numbers of areas in a window.
class AreaNumbersTbl : public ValuesTbl<AreaTable>
{
public:
    /// Shows a table, not owned; null for none. To be told again when its rows or columns are
    /// others; the order of the rows and the selection stay as far as there are such rows.
    void SetTable(const AreaTable* table);

    const char* GetWndClassName() override { return "AreaNumbersTbl"; }
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString profileSection() override { return "pavane-view numbers of areas"; }

protected:
    int isName(int column) const { return table() && column > 0 && table()->isName(column - 1); }
    /// The row of the table that a row of the window shows.
    const AreaRow& rowAt(int row) const;

private:
    int columns_ = -1;  ///< as they were last laid out
};

}  // namespace pavane
