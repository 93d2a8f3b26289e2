#include "pavane/dialogs/IntervalCountDlg.h"

#include "pavane/resources/time_dialogs.h"
#include "platform/accessibility.h"
#include "platform/up_down.h"

#include <string>

namespace pavane
{

// the library's own template, whatever a host calls by that number
IntervalCountDlg::IntervalCountDlg(const TimeIntervalForm& form, int count, CWnd* parent)
    : AResizeDialog(timeCountDialog, parent), form_(form), count_(std::to_string(count))
{
    SetResizeItems(timeCountResize);
}

int IntervalCountDlg::OnInitDialog()
{
    const int result = AResizeDialog::OnInitDialog();
    if (auto* const arrows = dynamic_cast<CUpDownCtrl*>(GetDlgItem(IDC_TIME_COUNT_ARROWS)))
        arrows->SetRange(leastIntervals, mostIntervals);
    if (auto* const edit = dynamic_cast<CEdit*>(GetDlgItem(IDC_TIME_COUNT))) {
        SetAccessName(edit->GetSafeHwnd(), timeCountItems[0].text);
        edit->SetWindowText(count_);
        edit->SetSel(0, -1);
    }
    return result;
}

/// Takes over what stands in the edit and tells what it would give; 0 when it is no count.
int IntervalCountDlg::tryCount()
{
    count_ = GetDlgItemText(IDC_TIME_COUNT);
    const int isCount = form_.applyCount(count_);
    SetDlgItemText(IDC_TIME_COUNT_NOTE, isCount ? "each " + form_.text(TimeField::interval)
                                                : "a whole number from " +
                                                      std::to_string(leastIntervals) + " to " +
                                                      std::to_string(mostIntervals));
    return isCount;
}

void IntervalCountDlg::OnOK()
{
    if (tryCount()) {
        AResizeDialog::OnOK();
        return;
    }
    if (auto* const edit = dynamic_cast<CEdit*>(GetDlgItem(IDC_TIME_COUNT))) {
        edit->SetFocus();
        edit->SetSel(0, -1);
    }
}

int IntervalCountDlg::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id == IDC_TIME_COUNT && code == EN_CHANGE)
        (void)tryCount();
    return AResizeDialog::OnCommand(id, code, control);
}

}  // namespace pavane
