#pragma once

#include "pavane/tables/grid/TableSearch.h"
#include "pavane/windows/AResizeDialog.h"

namespace pavane
{

class ATableWnd;

/// Asks what to look for in a table, and stays open. It belongs to the table, which outlives it.
class TableFindDlg : public AResizeDialog
{
public:
    explicit TableFindDlg(ATableWnd& table);
    /// Comes to the front, with what was looked for last.
    void show(const FindWhat& what);
    /// Moves away from a rectangle of the screen that it covers, when there is room.
    void uncover(const CRect& place);
    /// F3 and Shift+F3 mean here what they mean in the table.
    int PreTranslateMessage(const MSG& message) override;

protected:
    void OnOK() override { find(0); }
    void OnCancel() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    void find(int backward);
    int isChecked(unsigned id) const;
    ATableWnd& table_;
};

/// Asks for a whole number from `least` to `most` until it is one. Non-zero when the user gave it.
PAVANE_API int askNumber(CWnd* parent, const CString& title, const CString& label, int least,
                         int most, int& number);

/// Asks for a line of text; `text` stands in the field at first. Non-zero when the user gave it.
PAVANE_API int askText(CWnd* parent, const CString& title, const CString& label, CString& text);

}  // namespace pavane
