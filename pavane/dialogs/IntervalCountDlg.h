#pragma once

#include "pavane/dialogs/values/TimeIntervalForm.h"
#include "pavane/windows/AResizeDialog.h"

namespace pavane
{

/// Asks how many intervals the range on a page shall be cut into, and says how long each would be.
/// OK keeps it open while the text is no count that the page takes.
class IntervalCountDlg : public AResizeDialog
{
public:
    /// Begins with `count`; `form` as the page holds it, of which it takes a copy.
    IntervalCountDlg(const TimeIntervalForm& form, int count, CWnd* parent);
    /// What was chosen, after OK; applyCount takes it.
    const CString& count() const { return count_; }

protected:
    int OnInitDialog() override;
    void OnOK() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    int tryCount();

    TimeIntervalForm form_;
    CString count_;
};

}  // namespace pavane
