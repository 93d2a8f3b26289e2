#include "pavane/printing/print_edits.h"

#include "pavane/printing/layout/APrnAddInfo.h"
#include "pavane/printing/print_dialogs.h"
#include "pavane/resources/print_messages.h"
#include "platform/up_down.h"

#include <utility>

namespace pavane
{

namespace
{

void selectAll(const CDialog& dialog)
{
    if (auto* const edit = dynamic_cast<CEdit*>(dialog.GetDlgItem(IDC_PRINT_EDIT))) {
        edit->SetFocus();
        edit->SetSel(0, -1);
    }
}

}  // namespace

APrnSubscriptDlg::APrnSubscriptDlg(CString format, CWnd* owner)
    : AResizeDialog(subscriptTemplate, owner), format_(std::move(format))
{
    SetResizeItems(subscriptResize);
}

int APrnSubscriptDlg::OnInitDialog()
{
    (void)AResizeDialog::OnInitDialog();
    SetDlgItemText(IDC_PRINT_EDIT, format_);
    shown_ = GetDlgItemText(IDC_PRINT_EDIT);
    selectAll(*this);
    return 0;
}

void APrnSubscriptDlg::OnOK()
{
    CString text = GetDlgItemText(IDC_PRINT_EDIT);
    if (text != shown_)
        format_ = std::move(text);
    AResizeDialog::OnOK();
}

APrnPGNumDlg::APrnPGNumDlg(int number, CWnd* owner)
    : CDialog(numberTemplate, owner), number_(number)
{
}

int APrnPGNumDlg::OnInitDialog()
{
    if (auto* const arrows = dynamic_cast<CUpDownCtrl*>(GetDlgItem(IDC_PRINT_ARROWS))) {
        arrows->SetRange(leastFirstNumber, greatestFirstNumber);
        (void)arrows->SetPos(number_);
    }
    selectAll(*this);
    return 0;
}

void APrnPGNumDlg::OnOK()
{
    int isInRange = 0;
    int number = 0;
    if (const auto* const arrows = dynamic_cast<CUpDownCtrl*>(GetDlgItem(IDC_PRINT_ARROWS)))
        number = arrows->GetPos(&isInRange);
    if (isInRange) {
        number_ = number;
        CDialog::OnOK();
        return;
    }
    const HWND self = GetSafeHwnd();
    (void)AfxMessageBox(firstNumberRange);
    if (FromHandle(self) == this)
        selectAll(*this);
}

}  // namespace pavane
