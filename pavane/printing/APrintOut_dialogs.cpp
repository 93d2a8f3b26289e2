#include "pavane/printing/APrintDialog.h"
#include "pavane/printing/APrinter.h"
#include "pavane/printing/APrintOut.h"
#include "pavane/printing/APrnPageSetupDlg.h"
#include "pavane/printing/APrnPreviewDlg.h"
#include "pavane/printing/print_dialogs.h"
#include "pavane/printing/print_edits.h"
#include "pavane/printing/print_setup.h"
#include "pavane/printing/printer_state.h"
#include "pavane/printing/range_controls.h"
#include "platform/controls.h"
#include "platform/message.h"

#include <optional>

namespace pavane
{

namespace
{

/// The print dialog when it is open, else the frame of the window.
CWnd* ownerOf(const APrintOut& out, const CPrintInfo* info)
{
    if (CWnd* const dialog = info ? CWnd::FromHandle(info->dialog) : nullptr)
        return dialog;
    const ABWindow* const window = out.GetPrintWindow();
    return window ? window->GetTopLevelParent() : nullptr;
}

}  // namespace

int APrintOut::OnPrintDlg(APrinter* printer, CPrintInfo* info)
{
    if (!info)
        return 0;
    APrintDialog dialog(printer, *this, *info, ownerOf(*this, nullptr));
    const int isOk = dialog.DoModal() == IDOK;
    info->dialog = 0;
    if (isOk && printer)
        keepPrinter(printer->GetApp(), *info);
    return isOk;
}

int APrintOut::OnPageSetupDlg(APrinter* printer, CPrintInfo* info)
{
    if (!info)
        return 0;
    APrnPageSetupDlg dialog(*info, margins_, ownerOf(*this, info));
    if (dialog.DoModal() != IDOK)
        return 0;
    info->settings.paper = dialog.paper();
    info->settings.landscape = dialog.landscape() ? 1 : -1;
    SetMargins(dialog.margins());
    keepSetup(printer ? printer->GetApp() : nullptr, *this, *info);
    return 1;
}

int APrintOut::Subscript(CPrintInfo* info)
{
    APrnSubscriptDlg dialog(addInfo_.subscriptFormat, ownerOf(*this, info));
    if (dialog.DoModal() != IDOK)
        return 0;
    addInfo_.subscriptFormat = dialog.format();
    return 1;
}

int APrintOut::PGNumber(CPrintInfo* info)
{
    APrnPGNumDlg dialog(addInfo_.firstNumber, ownerOf(*this, info));
    if (dialog.DoModal() != IDOK)
        return 0;
    addInfo_.firstNumber = dialog.number();
    return 1;
}

int APrintOut::IsValidPrintPar(CPrintInfo* info)
{
    if (!info || !info->rangeIsPages)
        return info != nullptr;
    const RangeCheck check = checkPageRange(info->from, info->to, info->minPage, info->maxPage);
    if (check.focus == RangeField::none)
        return 1;
    (void)AfxMessageBox(check.message);
    const CWnd* const dialog = CWnd::FromHandle(info->dialog);
    const unsigned id = check.focus == RangeField::from ? IDC_PRINT_FROM : IDC_PRINT_TO;
    if (auto* const edit = dynamic_cast<CEdit*>(dialog ? dialog->GetDlgItem(id) : nullptr)) {
        edit->SetFocus();
        edit->SetSel(0, -1);
    }
    return 0;
}

int APrintOut::PreviewDlg(CPrintInfo* info)
{
    if (!info || !IsValidPrintPar(info))
        return 0;
    // inside the print dialog it is that dialog's turn
    std::optional<PrinterTurn> turn;
    if (!CWnd::FromHandle(info->dialog) && !turn.emplace())
        return 0;
    *GetAPrinterAbort() = 0;
    CString error;
    const std::unique_ptr<CPrinterDC> dc =
        canPrint(*this, *info, error) ? createPrinterDC(*info, error) : nullptr;
    if (!dc) {
        (void)AfxMessageBox(error, MB_OK | MB_ICONERROR);
        return 0;
    }
    CPrintInfo shown = *info;
    if (!shown.rangeIsPages) {
        shown.from = shown.minPage;
        shown.to = shown.maxPage;
    }
    APrnPreviewDlg dialog(*this, shown, *dc, ownerOf(*this, info));
    return dialog.DoModal() > 0;
}

void APrintOut::ReSetupPrintDlg(HWND dialog, CPrintInfo* info)
{
    CString error;
    const std::unique_ptr<CPrinterDC> dc =
        info && GetPrintWindow() ? createPrinterDC(*info, error) : nullptr;
    if (!dc)
        return;
    const int pages = countPages(*dc);
    if (pages == info->maxPage)
        return;
    RangeControls controls;
    CWnd* const window = CWnd::FromHandle(dialog);
    if (window)
        controls = readRangeControls(*window, info->maxPage);
    countAgain(controls, pages);
    info->maxPage = pages;
    addInfo_.pageNumber = controls.pageNumber;
    if (window)
        showRangeControls(*window, controls);
}

}  // namespace pavane
