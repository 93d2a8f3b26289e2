#pragma once

#include "pavane/measures/profiles/NumberTable.h"
#include "pavane/tables/ATableWnd.h"

namespace pavane
{

/// A table of numbers in a window: sorted by a click on a title, found in, copied, printed and
/// saved as text.
class NumbersTbl : public ATableWnd
{
public:
    NumbersTbl();
    /// Shows a table, not owned; null for none. To be told again when its rows or columns are
    /// others; the order of the rows and the selection stay as far as there are such rows.
    void SetTable(const NumberTable* table);

    const char* GetWndClassName() override { return "NumbersTbl"; }
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    int cellNumber(int row, int column, double& value) override;
    CString OnToolTip(CPoint point) override;
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;

private:
    const NumberTable* table_ = nullptr;
};

}  // namespace pavane
