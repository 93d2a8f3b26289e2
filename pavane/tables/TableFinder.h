#pragma once

#include "pavane/tables/ATableWnd.h"
#include "pavane/tables/grid/TableSearch.h"

#include <memory>

namespace pavane
{

class TableFindDlg;

/// What is looked for in a table, and the dialog that asks.
class ATableWnd::Finder
{
public:
    explicit Finder(ATableWnd& table);
    ~Finder();
    /// Shows the dialog.
    void ask();
    /// Goes on in the direction given, or asks when there is nothing to look for yet.
    void next(int backward);
    /// 0 when there is no text to look for, or an edited value is refused.
    int find(const FindWhat& what);
    void goToRow();
    const FindWhat& what() const { return what_; }
    /// The window goes, and the dialog with it.
    void windowGoes();

private:
    class Task;
    void show(const TableSearch& search);

    ATableWnd& table_;
    FindWhat what_;
    std::unique_ptr<TableFindDlg> dialog_;
};

}  // namespace pavane
