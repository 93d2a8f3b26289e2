#include "pavane/printing/range_controls.h"

#include "pavane/printing/print_dialogs.h"
#include "platform/controls.h"

#include <string>

namespace pavane
{

namespace
{

int numberOf(const CWnd& dialog, unsigned id)
{
    const CWnd* const edit = dialog.GetDlgItem(id);
    return edit ? pageEditValue(edit->GetWindowText()) : 0;
}

void showNumber(const CWnd& dialog, unsigned id, int number)
{
    CWnd* const edit = dialog.GetDlgItem(id);
    if (edit && numberOf(dialog, id) != number)
        edit->SetWindowText(std::to_string(number));
}

}  // namespace

int isChecked(const CWnd& dialog, unsigned id)
{
    const auto* const button = dynamic_cast<const CButton*>(dialog.GetDlgItem(id));
    return button && button->GetCheck();
}

void setChecked(CWnd& dialog, unsigned id, int on)
{
    if (auto* const button = dynamic_cast<CButton*>(dialog.GetDlgItem(id)))
        button->SetCheck(on);
}

void enableItem(CWnd& dialog, unsigned id, int on)
{
    if (CWnd* const control = dialog.GetDlgItem(id))
        control->EnableWindow(on);
}

RangeControls readRangeControls(const CWnd& dialog, int pages)
{
    RangeControls controls;
    controls.maximum = pages;
    controls.from = numberOf(dialog, IDC_PRINT_FROM);
    controls.to = numberOf(dialog, IDC_PRINT_TO);
    controls.pages = isChecked(dialog, IDC_PRINT_PAGES);
    controls.all = !controls.pages;
    const CWnd* const range = dialog.GetDlgItem(IDC_PRINT_PAGES);
    controls.rangeEnabled = range && range->IsWindowEnabled();
    controls.pageNumber = isChecked(dialog, IDC_PRINT_NUMBER_ON);
    const CWnd* const all = dialog.GetDlgItem(IDC_PRINT_ALL);
    controls.allLabel = all ? all->GetWindowText() : CString();
    return controls;
}

void showRangeControls(CWnd& dialog, const RangeControls& controls)
{
    if (CWnd* const all = dialog.GetDlgItem(IDC_PRINT_ALL))
        all->SetWindowText(controls.allLabel);
    showNumber(dialog, IDC_PRINT_FROM, controls.from);
    showNumber(dialog, IDC_PRINT_TO, controls.to);
    // the one that comes on takes the other off
    setChecked(dialog, controls.pages ? IDC_PRINT_PAGES : IDC_PRINT_ALL, 1);
    for (const unsigned id :
         {IDC_PRINT_PAGES, IDC_PRINT_FROM, IDC_PRINT_TO, IDC_PRINT_FROM_LABEL, IDC_PRINT_TO_LABEL})
        enableItem(dialog, id, controls.rangeEnabled);
    setChecked(dialog, IDC_PRINT_NUMBER_ON, controls.pageNumber);
    enableItem(dialog, IDC_PRINT_NUMBER, controls.pageNumber);
}

}  // namespace pavane
