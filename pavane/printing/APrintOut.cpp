#include "pavane/printing/APrintOut.h"

#include "pavane/printing/layout/caption_format.h"
#include "pavane/printing/page_drawing.h"
#include "pavane/printing/print_setup.h"
#include "platform/window_life.h"

#include <algorithm>

namespace pavane
{

APrintOut::APrintOut(const CString& title) : title_(title) {}
APrintOut::~APrintOut() = default;

void APrintOut::SetPrintWindow(ABWindow* window)
{
    if (window != window_ || isWindowLost())
        asked_ = 0;
    window_ = window;
    life_ = window ? LifeOf(*window) : std::weak_ptr<const void>();
    handle_ = window ? window->GetSafeHwnd() : HWND();
}

int APrintOut::isWindowLost() const
{
    return window_ && (life_.expired() || (handle_ && CWnd::FromHandle(handle_) != window_));
}

ABWindow* APrintOut::GetPrintWindow() const { return isWindowLost() ? nullptr : window_; }

void APrintOut::SetMargins(const CRect& margins)
{
    margins_ = margins;
    ownMargins_ = 1;
}

CString APrintOut::FormatStr(const CString& format, int page, int& flags)
{
    return pavane::FormatStr(format, page, flags);
}

MarginCheck APrintOut::checkPaper(const CSize& paper, const CRect& least) const
{
    return checkMargins(margins_, paper, least);
}

/// Asks the window while the context is mapped as for a page and clipped to what can be printed on.
int APrintOut::askForRoom(CDC& dc, int (ABWindow::*question)(CDC& dc), int otherwise)
{
    ABWindow* const window = GetPrintWindow();
    const CRect printable = printableRect(pageCaps(dc), margins_);
    if (!window || printable.IsRectEmpty())
        return otherwise;
    const MappedPage mapped(dc, printable);
    (void)dc.IntersectClipRect(mapped.rect());
    return (window->*question)(dc);
}

int APrintOut::countPages(CDC& dc) { return std::max(askForRoom(dc, &ABWindow::GetPages, 1), 1); }

int APrintOut::printPercent(CDC& dc) { return askForRoom(dc, &ABWindow::GetPrintPercent, 100); }

int APrintOut::OnPrintPage(CDC* dc, CPrintInfo* info)
{
    if (!dc || !info || isWindowLost())
        return 0;
    const CRect printable = printableRect(pageCaps(*dc), margins_);
    if (printable.IsRectEmpty())
        return 0;
    const MappedPage mapped(*dc, printable);
    return PrintPage(*dc, info->currentPage, mapped.rect(), addInfo_);
}

int APrintOut::PrintPage(CDC& dc, int page, const CRect& rect, APrnAddInfo& info)
{
    if (isWindowLost())
        return 0;
    drawPage(dc, page, rect, info, window_);
    return 1;
}

void APrintOut::OnBeginPrinting(CDC*, CPrintInfo*) {}
void APrintOut::OnEndPrinting(CDC*, CPrintInfo*) {}
void APrintOut::OnPrepareDC(CDC*, CPrintInfo*) {}

int APrintOut::SetupPrintDlg(APrinter*, CPrintInfo* info)
{
    if (!info)
        return 0;
    // made after it was set
    if (window_ && !handle_ && !isWindowLost())
        handle_ = window_->GetSafeHwnd();
    CString error;
    const std::unique_ptr<CPrinterDC> dc = createPrinterDC(*info, error);
    info->maxPage = dc ? countPages(*dc) : 1;
    if (asked_)
        return 1;
    ABWindow* const window = GetPrintWindow();
    addInfo_.subscriptFormat = window ? window->GetSubscript() : CString("Figure %d");
    addInfo_.pageNumber = info->maxPage > 1;
    asked_ = 1;
    return 1;
}

}  // namespace pavane
