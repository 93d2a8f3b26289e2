#pragma once

#include "pavane/printing/layout/APrnAddInfo.h"
#include "pavane/printing/layout/page_geometry.h"
#include "pavane/windows/ABWindow.h"
#include "platform/print_info.h"

#include <memory>

namespace pavane
{

class APrinter;

/// What is printed: a title, margins, what stands beside the picture, and the window that draws the
/// pages. It keeps what the user sets in its dialogs for the next job with the same object.
///
/// Margins are left, top, right and bottom in hundredths of a millimetre. Copies print the same
/// window.
class PAVANE_API APrintOut
{
public:
    explicit APrintOut(const CString& title);
    APrintOut(const APrintOut&) = default;
    APrintOut& operator=(const APrintOut&) = default;

    // In this order; new ones go to the end. Those that return a number say non-zero for success.
    virtual ~APrintOut();
    /// Draws page `info->currentPage` on a context in device pixels, within the margins. 0 ends the
    /// job as Cancel does.
    virtual int OnPrintPage(CDC* dc, CPrintInfo* info);
    /// Before the first page and behind the last; the second comes whenever the first did.
    virtual void OnBeginPrinting(CDC* dc, CPrintInfo* info);
    virtual void OnEndPrinting(CDC* dc, CPrintInfo* info);
    /// Before each page, twice: `info->continuePrinting` 0 ends the job in good order.
    virtual void OnPrepareDC(CDC* dc, CPrintInfo* info);
    /// Shows the print dialog; 0 when the user gave up.
    virtual int OnPrintDlg(APrinter* printer, CPrintInfo* info);
    /// Shows the page set-up; 0 when the user gave up, or without a page to set up.
    virtual int OnPageSetupDlg(APrinter* printer, CPrintInfo* info);
    /// Counts the pages. The first job of a window takes caption and page-number switch from it.
    virtual int SetupPrintDlg(APrinter* printer, CPrintInfo* info);
    /// Draws number, caption and the window's page into `rect`; leaves the context as it was.
    virtual int PrintPage(CDC& dc, int page, const CRect& rect, APrnAddInfo& info);
    /// Whether the range of `info` can be printed; if not the user is told, and the edit at fault
    /// gets the focus.
    virtual int IsValidPrintPar(CPrintInfo* info);
    /// Shows the pages of `info`.
    virtual int PreviewDlg(CPrintInfo* info);
    /// Lets the user change the caption; the number of the first page.
    virtual int Subscript(CPrintInfo* info);
    virtual int PGNumber(CPrintInfo* info);
    /// Counts the pages again after a change of printer, paper or margins, and tells the controls
    /// of the print dialog.
    virtual void ReSetupPrintDlg(HWND dialog, CPrintInfo* info);

    const CString& GetTitle() const { return title_; }
    /// Not owned. A window that is destroyed meanwhile ends its job.
    void SetPrintWindow(ABWindow* window);
    /// Null when there is none any more.
    ABWindow* GetPrintWindow() const;
    const CRect& GetMargins() const { return margins_; }
    void SetMargins(const CRect& margins);
    APrnAddInfo& GetAddInfo() { return addInfo_; }
    const APrnAddInfo& GetAddInfo() const { return addInfo_; }

    /// The caption of a page, and in `flags` where it stands (layout/caption_format.h).
    static CString FormatStr(const CString& format, int page, int& flags);

    /// Non-zero when a window was set and is gone.
    int isWindowLost() const;
    /// Non-zero when SetMargins, or a user, chose the margins.
    int hasOwnMargins() const { return ownMargins_; }
    /// The pages of the window on that device, 1 at least; also without one.
    int countPages(CDC& dc);
    /// How small the window prints on that device for want of room, per cent; 100 without one.
    int printPercent(CDC& dc);
    /// Whether pages can be printed on `paper` (hundredths of a millimetre, as it lies).
    MarginCheck checkPaper(const CSize& paper, const CRect& least = {}) const;

private:
    int askForRoom(CDC& dc, int (ABWindow::*question)(CDC& dc), int otherwise);

    CString title_;
    CRect margins_ = standardMargins;
    ABWindow* window_ = nullptr;
    std::weak_ptr<const void> life_;  ///< of the window
    HWND handle_ = 0;                 ///< when it was set, 0 when it had none
    APrnAddInfo addInfo_;
    int ownMargins_ = 0;
    int asked_ = 0;  ///< caption and switch were taken from the window
};

}  // namespace pavane
