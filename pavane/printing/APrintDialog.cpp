#include "pavane/printing/APrintDialog.h"

#include "pavane/printing/APrintPropertiesDlg.h"
#include "pavane/printing/print_dialogs.h"
#include "pavane/printing/printer_state.h"
#include "pavane/printing/range_controls.h"
#include "pavane/resources/print_messages.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr unsigned pollTimer = 1;
constexpr unsigned pollTime = 50;
constexpr int mostCopies = 999;

template <class Control>
Control* controlOf(const CWnd& dialog, unsigned id)
{
    return dynamic_cast<Control*>(dialog.GetDlgItem(id));
}

}  // namespace

APrintDialog::APrintDialog(APrinter* printer, APrintOut& out, CPrintInfo& info, CWnd* owner)
    : AResizeDialog(printDialogTemplate(), owner), printer_(printer), out_(out), info_(info),
      printers_(info.settings.printer)
{
    // where the controls of a host's own template stand is the host's matter
    if (&printDialogTemplate() == &printTemplate)
        SetResizeItems(printResize);
}

int APrintDialog::OnInitDialog()
{
    (void)AResizeDialog::OnInitDialog();
    info_.dialog = GetSafeHwnd();
    fillList();
    RangeControls range = openedControls(info_.maxPage, out_.GetAddInfo().pageNumber);
    range.from = info_.minPage;
    showRangeControls(*this, range);
    enableItem(*this, IDC_PRINT_SELECTION, 0);
    if (auto* const copies = controlOf<CSpinButtonCtrl>(*this, IDC_PRINT_COPIES)) {
        copies->SetRange(1, mostCopies);
        copies->SetPos(std::clamp(info_.settings.copies, 1, mostCopies));
    }
    setChecked(*this, IDC_PRINT_COLLATE, info_.settings.collate > 0);
    setChecked(*this, IDC_PRINT_SUBSCRIPT_ON, out_.GetAddInfo().subscript);
    enableItem(*this, IDC_PRINT_SUBSCRIPT, out_.GetAddInfo().subscript);
    (void)SetTimer(pollTimer, pollTime);
    return 1;
}

void APrintDialog::OnDestroy()
{
    if (info_.dialog == GetSafeHwnd())
        info_.dialog = 0;
    AResizeDialog::OnDestroy();
}

int APrintDialog::chosenLine() const
{
    const auto* const list = controlOf<CComboBox>(*this, IDC_PRINT_NAME);
    const int line = list ? list->GetCurSel() : -1;
    return line >= 0 ? line : printers_.count() - 1;
}

/// Shows the lines as they are known now; what the user has chosen stays chosen while it is there.
void APrintDialog::fillList()
{
    auto* const list = controlOf<CComboBox>(*this, IDC_PRINT_NAME);
    if (!list)
        return;
    const CString before = list->GetCurSel() >= 0 ? list->GetLBText(list->GetCurSel()) : CString();
    list->ResetContent();
    for (int line = 0; line < printers_.count(); ++line)
        (void)list->AddString(printers_.name(line));
    const int kept = userChose_ ? printers_.lineOf(before) : -1;
    (void)list->SetCurSel(kept >= 0 ? kept : printers_.preferred());
    const bool isAnother = list->GetLBText(list->GetCurSel()) != before;
    showPrinter();
    if (isAnother)
        choosePrinter();
}

/// Another printer may have other papers, and so other pages.
void APrintDialog::choosePrinter()
{
    const PrinterInfo* const chosen = printers_.printer(chosenLine());
    info_.printer = chosen ? *chosen : PrinterInfo();
    setChecked(*this, IDC_PRINT_TO_FILE, !chosen);
    enableItem(*this, IDC_PRINT_TO_FILE, chosen != nullptr);
    showPrinter();
    (void)PostMessage(WM_COMMAND, ID_PRINT_COUNT_AGAIN);
}

void APrintDialog::showPrinter()
{
    const int line = chosenLine();
    const PrinterInfo* const chosen = printers_.printer(line);
    if (chosen)
        info_.printer = *chosen;
    SetDlgItemText(IDC_PRINT_STATUS, printers_.status(line));
    SetDlgItemText(IDC_PRINT_TYPE, chosen ? chosen->type : CString(fileType));
    SetDlgItemText(IDC_PRINT_WHERE, chosen ? chosen->place : CString(fileWhere));
    SetDlgItemText(IDC_PRINT_COMMENT, printers_.comment(line));
}

void APrintDialog::OnTimer(unsigned id)
{
    AResizeDialog::OnTimer(id);
    if (id != pollTimer)
        return;
    const auto* const list = controlOf<CComboBox>(*this, IDC_PRINT_NAME);
    // an open list does not change under the pointer
    if (list && list->GetDroppedState())
        return;
    if (printers_.poll())
        fillList();
    if (printers_.isComplete())
        (void)KillTimer(pollTimer);
}

void APrintDialog::takeControls()
{
    const PrinterInfo* const chosen = printers_.printer(chosenLine());
    info_.printer = chosen ? *chosen : PrinterInfo();
    info_.settings.printer = chosen ? chosen->name : CString();
    info_.printToFile = !chosen || isChecked(*this, IDC_PRINT_TO_FILE);
    info_.settings.file.clear();
    if (const auto* const copies = controlOf<CSpinButtonCtrl>(*this, IDC_PRINT_COPIES))
        info_.settings.copies = copies->GetPos();
    info_.settings.collate = isChecked(*this, IDC_PRINT_COLLATE) ? 1 : -1;
    const RangeControls range = readRangeControls(*this, info_.maxPage);
    info_.rangeIsPages = range.pages;
    info_.from = range.pages ? range.from : info_.minPage;
    info_.to = range.pages ? range.to : info_.maxPage;
}

void APrintDialog::OnOK()
{
    takeControls();
    const HWND self = GetSafeHwnd();
    if (out_.IsValidPrintPar(&info_) && FromHandle(self) == this)
        AResizeDialog::OnOK();
}

/// What the user types is a range; what the program writes is not.
void APrintDialog::takeTypedRange(unsigned id)
{
    const auto* const edit = controlOf<CEdit>(*this, id);
    if (edit && edit->GetModify())
        setChecked(*this, IDC_PRINT_PAGES, 1);
}

void APrintDialog::setUpPage()
{
    const HWND self = GetSafeHwnd();
    takeControls();
    if (out_.OnPageSetupDlg(printer_, &info_) && FromHandle(self) == this)
        out_.ReSetupPrintDlg(self, &info_);
}

void APrintDialog::showProperties()
{
    takeControls();
    APrintPropertiesDlg dialog(info_, this);
    (void)dialog.DoModal();
}

int APrintDialog::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    switch (id) {
    case IDC_PRINT_NAME:
        if (code == CBN_SELCHANGE) {
            userChose_ = 1;
            choosePrinter();
        }
        return 1;
    case IDC_PRINT_FROM:
    case IDC_PRINT_TO:
        if (code == EN_CHANGE)
            takeTypedRange(id);
        return 1;
    case ID_PRINT_COUNT_AGAIN:
        out_.ReSetupPrintDlg(GetSafeHwnd(), &info_);
        return 1;
    case IDC_PRINT_PROPERTIES:
        showProperties();
        return 1;
    case IDC_PRINT_PAGE_SETUP:
        setUpPage();
        return 1;
    case IDC_PRINT_PREVIEW:
        takeControls();
        (void)out_.PreviewDlg(&info_);
        return 1;
    case IDC_PRINT_SUBSCRIPT_ON:
        out_.GetAddInfo().subscript = isChecked(*this, id);
        enableItem(*this, IDC_PRINT_SUBSCRIPT, out_.GetAddInfo().subscript);
        return 1;
    case IDC_PRINT_SUBSCRIPT:
        (void)out_.Subscript(&info_);
        return 1;
    case IDC_PRINT_NUMBER_ON:
        out_.GetAddInfo().pageNumber = isChecked(*this, id);
        enableItem(*this, IDC_PRINT_NUMBER, out_.GetAddInfo().pageNumber);
        return 1;
    case IDC_PRINT_NUMBER:
        (void)out_.PGNumber(&info_);
        return 1;
    default:
        return AResizeDialog::OnCommand(id, code, control);
    }
}

}  // namespace pavane
