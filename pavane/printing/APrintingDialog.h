#pragma once

#include "pavane/windows/AResizeDialog.h"

namespace pavane
{

/// The box that shows how far a job is; its button, Escape and its close box set the abort flag.
class APrintingDialog : public AResizeDialog
{
public:
    explicit APrintingDialog(CWnd* owner);
    /// Shows the box, without waiting. Non-zero on success.
    int show(const CString& title, const CString& printer, const CString& port);
    void setPage(int page);

protected:
    void OnOK() override {}
    void OnCancel() override;
};

}  // namespace pavane
