#include "pavane/tables/table_dialogs.h"

#include "pavane/resources/dialogs.h"
#include "pavane/resources/table_messages.h"
#include "pavane/tables/ATableWnd.h"
#include "platform/controls.h"
#include "platform/screens.h"
#include "tessel/value_text.h"

namespace pavane
{

TableFindDlg::TableFindDlg(ATableWnd& table)
    : AResizeDialog(IDD_TABLE_FIND, table.GetTopLevelParent()), table_(table)
{
    SetResizeItems(tableFindResize);
}

void TableFindDlg::show(const FindWhat& what)
{
    SetDlgItemText(IDC_TABLE_FIND_TEXT, what.text);
    const struct {
        unsigned id;
        int on;
    } boxes[] = {{IDC_TABLE_FIND_CASE, what.matchCase},
                 {IDC_TABLE_FIND_WHOLE, what.wholeCell},
                 {IDC_TABLE_FIND_COLUMN, what.thisColumn}};
    for (const auto& box : boxes)
        if (auto* const button = dynamic_cast<CButton*>(GetDlgItem(box.id)))
            button->SetCheck(box.on);
    (void)ShowWindow(SW_SHOW);
    if (auto* const field = dynamic_cast<CEdit*>(GetDlgItem(IDC_TABLE_FIND_TEXT))) {
        field->SetFocus();
        field->SetSel(0, -1);
    }
}

void TableFindDlg::uncover(const CRect& place)
{
    constexpr int gap = 40;  // its frame and title stand out of what it tells
    CRect here;
    CRect common;
    GetClientRect(here);
    ClientToScreen(here);
    if (!IsWindowVisible() || !common.IntersectRect(here, place))
        return;
    for (const CRect& screen : GetScreenRects()) {
        if (!screen.PtInRect(place.CenterPoint()))
            continue;
        const int below = place.bottom + gap;
        const int above = place.top - gap - here.Height();
        const int top = below + here.Height() <= screen.bottom ? below : above;
        if (top < screen.top)
            return;
        here.OffsetRect(0, top - here.top);
        return (void)MoveWindow(here);
    }
}

int TableFindDlg::isChecked(unsigned id) const
{
    const auto* const button = dynamic_cast<const CButton*>(GetDlgItem(id));
    return button && button->GetCheck();
}

/// What is found may end the table, and this with it.
void TableFindDlg::find(int backward)
{
    FindWhat what;
    what.text = GetDlgItemText(IDC_TABLE_FIND_TEXT);
    what.matchCase = isChecked(IDC_TABLE_FIND_CASE);
    what.wholeCell = isChecked(IDC_TABLE_FIND_WHOLE);
    what.thisColumn = isChecked(IDC_TABLE_FIND_COLUMN);
    what.backward = backward;
    (void)table_.FindText(what);
}

int TableFindDlg::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id == IDC_TABLE_FIND_BACK && code == BN_CLICKED)
        return find(1), 1;
    return AResizeDialog::OnCommand(id, code, control);
}

int TableFindDlg::PreTranslateMessage(const MSG& message)
{
    if (message.message != WM_KEYDOWN || message.wParam != VK_F3)
        return AResizeDialog::PreTranslateMessage(message);
    return find(GetKeyState(VK_SHIFT) < 0), 1;
}

/// Escape ends a search first, then the dialog.
void TableFindDlg::OnCancel()
{
    if (!table_.cancelWork())
        EndDialog(IDCANCEL);
}

namespace
{

class NumberDlg : public AResizeDialog
{
public:
    NumberDlg(CWnd* parent, const CString& title, const CString& label, int least, int most,
              int& number)
        : AResizeDialog(IDD_TABLE_NUMBER, parent), title_(title), label_(label), least_(least),
          most_(most), number_(number)
    {
        SetResizeItems(tableNumberResize);
    }

protected:
    int OnInitDialog() override
    {
        (void)AResizeDialog::OnInitDialog();
        SetWindowText(title_);
        SetDlgItemText(IDC_TABLE_NUMBER_LABEL, label_ + " (" + range() + "):");
        SetDlgItemText(IDC_TABLE_NUMBER, std::to_string(number_));
        auto* const field = dynamic_cast<CEdit*>(GetDlgItem(IDC_TABLE_NUMBER));
        if (!field)
            return 1;
        field->SetFocus();
        field->SetSel(0, -1);
        return 0;
    }
    void OnOK() override
    {
        int number = 0;
        if (stoval(GetDlgItemText(IDC_TABLE_NUMBER), number) && number >= least_ &&
            number <= most_) {
            number_ = number;
            return EndDialog(IDOK);
        }
        (void)AfxMessageBox(numberIsOneOf + range(), MB_OK | MB_ICONERROR);
    }

private:
    CString range() const { return std::to_string(least_) + " to " + std::to_string(most_); }
    CString title_;
    CString label_;
    int least_;
    int most_;
    int& number_;
};

class TextDlg : public AResizeDialog
{
public:
    TextDlg(CWnd* parent, const CString& title, const CString& label, CString& text)
        : AResizeDialog(IDD_TABLE_NUMBER, parent), title_(title), label_(label), text_(text)
    {
        SetResizeItems(tableNumberResize);
    }

protected:
    int OnInitDialog() override
    {
        (void)AResizeDialog::OnInitDialog();
        SetWindowText(title_);
        SetDlgItemText(IDC_TABLE_NUMBER_LABEL, label_);
        SetDlgItemText(IDC_TABLE_NUMBER, text_);
        auto* const field = dynamic_cast<CEdit*>(GetDlgItem(IDC_TABLE_NUMBER));
        if (!field)
            return 1;
        field->SetFocus();
        field->SetSel(0, -1);
        return 0;
    }
    void OnOK() override
    {
        text_ = GetDlgItemText(IDC_TABLE_NUMBER);
        EndDialog(IDOK);
    }

private:
    CString title_;
    CString label_;
    CString& text_;
};

}  // namespace

int askNumber(CWnd* parent, const CString& title, const CString& label, int least, int most,
              int& number)
{
    NumberDlg dialog(parent, title, label, least, most, number);
    return dialog.DoModal() == IDOK;
}

int askText(CWnd* parent, const CString& title, const CString& label, CString& text)
{
    TextDlg dialog(parent, title, label, text);
    return dialog.DoModal() == IDOK;
}

}  // namespace pavane
