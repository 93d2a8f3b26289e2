#pragma once

#include "pavane/windows/AResizeDialog.h"

namespace pavane
{

/// Edits the format of a caption (template 10003).
class APrnSubscriptDlg : public AResizeDialog
{
public:
    APrnSubscriptDlg(CString format, CWnd* owner);
    const CString& format() const { return format_; }

protected:
    int OnInitDialog() override;
    void OnOK() override;

private:
    CString format_;
    CString shown_;  ///< in the edit, which knows no line breaks
};

/// Edits the number of the first page (template 10004).
class APrnPGNumDlg : public CDialog
{
public:
    APrnPGNumDlg(int number, CWnd* owner);
    int number() const { return number_; }

protected:
    int OnInitDialog() override;
    void OnOK() override;

private:
    int number_;
};

}  // namespace pavane
