#pragma once

#include "pavane/measures/areas/AreaTable.h"
#include "pavane/tables/ATableWnd.h"

namespace pavane
{

/// The numbers of areas in a window: sorted by a click on a title, found in, copied, printed and
/// saved as text.
class AreaNumbersTbl : public ATableWnd
{
public:
    AreaNumbersTbl();
    /// Shows a table, not owned; null for none. To be told again when its rows or columns are
    /// others; the order of the rows and the selection stay as far as there are such rows.
    void SetTable(const AreaTable* table);

    const char* GetWndClassName() override { return "AreaNumbersTbl"; }
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    int cellNumber(int row, int column, double& value) override;
    CString profileSection() override { return "pavane-view numbers of areas"; }
    CString OnToolTip(CPoint point) override;
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;

protected:
    const AreaTable* table() const { return table_; }
    int isName(int column) const { return table_ && column > 0 && table_->isName(column - 1); }
    /// The row of the table that a row of the window shows.
    const AreaRow& rowAt(int row) const;

private:
    const AreaTable* table_ = nullptr;
    int columns_ = -1;  ///< as they were last laid out
};

}  // namespace pavane
