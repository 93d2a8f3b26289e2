#pragma once

#include "pavane/windows/AResizeDialog.h"
#include "platform/print_info.h"

namespace pavane
{

/// Sides, colours and resolution of a job, as far as its printer has a choice.
class APrintPropertiesDlg : public AResizeDialog
{
public:
    APrintPropertiesDlg(CPrintInfo& info, CWnd* owner);

protected:
    int OnInitDialog() override;
    void OnOK() override;

private:
    CPrintInfo& info_;
};

}  // namespace pavane
