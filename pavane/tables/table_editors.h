#pragma once

#include "pavane/tables/grid/cell_range.h"
#include "platform/controls.h"

namespace pavane
{

class ATableWnd;

/// The field in which a cell is edited. Keys that leave it go on to the table.
class ATableEdit : public CEdit
{
public:
    ATableEdit(ATableWnd& table, TableCell cell) : table_(&table), cell_(cell) {}
    TableCell cell() const { return cell_; }
    void setCell(TableCell cell) { cell_ = cell; }
    /// A text that is only looked at.
    void keepText()
    {
        keepsText_ = 1;
        SetReadOnly(1);
    }
    int keepsText() const { return keepsText_; }

protected:
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnKillFocus(CWnd* next) override;

private:
    ATableWnd* table_;
    TableCell cell_;
    int keepsText_ = 0;
};

/// The list from which the value of a cell is chosen.
class ATableCombo : public CComboBox
{
public:
    ATableCombo(ATableWnd& table, TableCell cell) : table_(&table), cell_(cell) {}
    TableCell cell() const { return cell_; }
    void setCell(TableCell cell) { cell_ = cell; }

protected:
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;
    void OnKillFocus(CWnd* next) override;

private:
    ATableWnd* table_;
    TableCell cell_;
};

}  // namespace pavane
