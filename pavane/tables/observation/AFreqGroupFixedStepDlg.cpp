#include "pavane/tables/observation/AFreqGroupFixedStepDlg.h"

#include "pavane/resources/resource_ids.h"
#include "pavane/windows/library_resources.h"
#include "platform/controls.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// A template is looked up when a dialog is made.
unsigned knownTemplate()
{
    AddLibraryResources();
    return IDD_FREQ_STEP;
}

}  // namespace

AFreqGroupFixedStepDlg::AFreqGroupFixedStepDlg(int limit, CWnd* parent)
    : CDialog(knownTemplate(), parent), limit_(std::max(limit, 1))
{
}

int AFreqGroupFixedStepDlg::OnInitDialog()
{
    CDialog::OnInitDialog();
    if (auto* const spin = dynamic_cast<CSpinButtonCtrl*>(GetDlgItem(IDC_FREQ_STEP))) {
        spin->SetRange(1, limit_);
        spin->SetPos(step_);
    }
    return 1;
}

void AFreqGroupFixedStepDlg::OnOK()
{
    if (const auto* const spin = dynamic_cast<CSpinButtonCtrl*>(GetDlgItem(IDC_FREQ_STEP)))
        step_ = std::clamp(spin->GetPos(), 1, limit_);
    CDialog::OnOK();
}

}  // namespace pavane
