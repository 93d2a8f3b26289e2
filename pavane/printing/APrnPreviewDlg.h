#pragma once

#include "pavane/printing/APrnPreviewWnd.h"
#include "pavane/windows/AResizeDialog.h"
#include "platform/controls.h"

#include <vector>

namespace pavane
{

/// The preview (template 10002): the pages `info.from` to `info.to`, the first one shown.
class APrnPreviewDlg : public AResizeDialog
{
public:
    APrnPreviewDlg(APrintOut& out, const CPrintInfo& info, const CDC& printer, CWnd* owner);

    int PreTranslateMessage(const MSG& message) override;

protected:
    int OnInitDialog() override;
    void OnOK() override;
    void OnCancel() override;
    void OnTimer(unsigned id) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    CComboBox* pageList() const;
    void showPage(int page);
    void listPages();
    void turn(APrnPreviewWnd::Turn to);
    int takeTypedPage();
    void showStatus(const CString& text = {});
    void copyPage();
    void close();

    CPrintInfo info_;
    APrnPreviewWnd page_;
    std::vector<int> listed_;
    int hasTyped_ = 0;
};

}  // namespace pavane
