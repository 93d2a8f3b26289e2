#pragma once

#include "pavane/printing/layout/paper.h"
#include "pavane/printing/SheetWnd.h"
#include "pavane/windows/AResizeDialog.h"
#include "platform/print_info.h"

#include <vector>

namespace pavane
{

/// Paper, direction and margins, with a picture of the sheet. Margins below those of a printer that
/// tells them, or that leave no page, are refused.
class APrnPageSetupDlg : public AResizeDialog
{
public:
    APrnPageSetupDlg(const CPrintInfo& info, const CRect& margins, CWnd* owner);
    // When it has ended with OK:
    const CString& paper() const { return paper_; }
    int landscape() const { return landscape_; }
    const CRect& margins() const { return margins_; }

protected:
    int OnInitDialog() override;
    void OnOK() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    void listPapers();
    int chosenPaper(PaperSize& paper) const;
    void choosePaper();
    /// What the edits hold; the identifier of the first that holds no length, 0 for none.
    unsigned readMargins(CRect& margins) const;
    CRect leastMargins(int landscape) const;
    void showSheet();
    void refuse(const CString& message, unsigned id);

    const CPrintInfo& info_;
    CString paper_;
    int landscape_;
    CRect margins_;
    std::vector<PaperSize> papers_;  ///< lines of the list but the last, which is for own sizes
    SheetWnd sheet_;
};

}  // namespace pavane
