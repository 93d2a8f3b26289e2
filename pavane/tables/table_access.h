#pragma once

#include "pavane/tables/grid/cell_range.h"
#include "platform/accessibility.h"

#include <vector>

namespace pavane
{

class ATableWnd;

/// What screen readers are told of a table: the cells by row and column, their headers, the focus
/// and the selection. Only what is in view are its parts; the editors are child windows. Nothing is
/// kept, so the cost is that of what is asked, however many rows there are.
class TableAccess : public AccessSource
{
public:
    explicit TableAccess(ATableWnd& table) : table_(&table) {}

    /// The part of a cell, headers included.
    static AccessId idOf(TableCell cell)
    {
        return (AccessId{cell.row} << columnBits | cell.column) + 1;
    }

    int GetAccessPart(AccessId id, AccessPart& part) const override;
    std::vector<AccessId> GetAccessChildren() const override;
    AccessId AccessHitTest(CPoint point) const override;
    AccessId GetAccessFocus() const override;
    int AccessSetFocus(AccessId id) override;
    int AccessActivate(AccessId id) override;
    int AccessSelect(AccessId id, int on) override;
    int AccessSetValue(AccessId id, const CString& value) override;
    int IsAccessTable() const override { return 1; }
    int GetAccessRows() const override;
    int GetAccessColumns() const override;
    AccessId GetAccessCell(int row, int column) const override;
    AccessId GetAccessColumnHeader(int column) const override;
    AccessId GetAccessRowHeader(int row) const override;
    CRect GetAccessSelection() const override;

private:
    static constexpr int columnBits = 31;
    static TableCell cellOf(AccessId id);
    int has(AccessId id) const;
    int fill(TableCell cell, AccessPart& part) const;

    // hooks that are asked may destroy the table, and this with it
    ATableWnd* table_;
};

}  // namespace pavane
