#pragma once

#include "platform/CDialog.h"

namespace pavane
{

/// Asks how many IFs each group shall have: 1 at first, at most `limit`.
class PAVANE_API AFreqGroupFixedStepDlg : public CDialog
{
public:
    explicit AFreqGroupFixedStepDlg(int limit, CWnd* parent = nullptr);
    /// What was chosen, after OK.
    int step() const { return step_; }

protected:
    int OnInitDialog() override;
    void OnOK() override;

private:
    int limit_;
    int step_ = 1;
};

}  // namespace pavane
