#include "pavane/printing/APrintingDialog.h"

#include "pavane/printing/APrinter.h"
#include "pavane/printing/print_dialogs.h"
#include "pavane/resources/print_messages.h"

#include <string>

namespace pavane
{

APrintingDialog::APrintingDialog(CWnd* owner) : AResizeDialog(printingTemplate, owner)
{
    SetResizeItems(printingResize);
}

int APrintingDialog::show(const CString& title, const CString& printer, const CString& port)
{
    if (!CreateModeless())
        return 0;
    SetDlgItemText(IDC_PRINTING_TITLE, title);
    SetDlgItemText(IDC_PRINTING_PRINTER, printer);
    SetDlgItemText(IDC_PRINTING_PORT, port);
    ShowWindow(SW_SHOW);
    UpdateWindow();
    return 1;
}

void APrintingDialog::setPage(int page)
{
    if (GetSafeHwnd())
        SetDlgItemText(IDC_PRINTING_PAGE, printingPage + std::to_string(page));
}

void APrintingDialog::OnCancel()
{
    *GetAPrinterAbort() = 1;
    if (CWnd* const button = GetDlgItem(IDCANCEL))
        button->EnableWindow(0);
}

}  // namespace pavane
