#include "pavane/printing/InteractiveJob.h"

#include "pavane/printing/APrinter.h"
#include "pavane/printing/layout/page_texts.h"
#include "pavane/printing/print_setup.h"
#include "pavane/resources/print_messages.h"
#include "platform/CWinApp.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/message_scope.h"
#include "platform/print_queues.h"
#include "tessel/SafeFile.h"

#include <cstdio>
#include <fstream>
#include <iterator>

namespace pavane
{

namespace
{

constexpr const char* pdfFilter = "PDF files (*.pdf)|*.pdf";
/// What the user is heard for at a time.
constexpr int moment = 20;

/// A title as the name of a file.
CString fileNameOf(const CString& title)
{
    CString name = documentTitle(title);
    for (char& c : name)
        if (c == '/' || c == '\\' || c == '\0')
            c = '_';
    while (!name.empty() && (name.front() == '.' || name.front() == '-' || name.front() == ' '))
        name.erase(0, 1);
    // a name of the ending alone would be a hidden file
    return (name.empty() ? CString(untitled) : name) + ".pdf";
}

int copyFile(const CString& from, const CString& to, CString& error)
{
    std::ifstream source(from, std::ios::binary);
    SafeFile target;
    if (!source || !target.open(to)) {
        error = source ? CString(target.fault()) : CString("the pages are gone");
        return 0;
    }
    char block[1 << 16];
    do {
        source.read(block, sizeof block);
        const auto count = static_cast<std::int64_t>(source.gcount());
        if (count > 0 && !target.file().write(block, count)) {
            error = target.fault();
            return 0;
        }
    } while (source);
    if (target.commit())
        return 1;
    error = target.fault();
    return 0;
}

}  // namespace

void BlockedWindows::block(CWnd* window)
{
    if (!window || !window->IsWindowEnabled())
        return;
    window->EnableWindow(0);
    blocked_.push_back(window->GetSafeHwnd());
}

void BlockedWindows::release()
{
    for (const HWND handle : blocked_)
        if (CWnd* const window = CWnd::FromHandle(handle))
            window->EnableWindow(1);
    blocked_.clear();
}

InteractiveJob::InteractiveJob(const APrinter& printer, APrintOut& out, CPrintInfo& info)
    : printer_(printer), out_(out), info_(info)
{
}

CWnd* InteractiveJob::owner() const
{
    ABWindow* const window = out_.GetPrintWindow();
    return window ? window->GetTopLevelParent() : nullptr;
}

int InteractiveJob::askFile()
{
    if (!info_.printToFile || !info_.settings.file.empty())
        return 1;
    CString name = fileNameOf(out_.GetTitle());
    if (!fnFileDialog1(name, pdfFilter, printToFileTitle, 0, "pdf", OFN_OVERWRITEPROMPT, owner()))
        return 0;
    info_.settings.file = name;
    return 1;
}

int InteractiveJob::run()
{
    if (!askFile())
        return 0;
    ABWindow* const window = out_.GetPrintWindow();
    if (window && window->GetSafeHwnd())
        window->UpdateWindow();
    CString error;
    const std::unique_ptr<CPrinterDC> dc = createPrinterDC(info_, error);
    if (!dc) {
        (void)AfxMessageBox(error, MB_OK | MB_ICONERROR);
        return 0;
    }
    const JobResult result = runWithBox(*dc);
    if (result.isRefused)
        offerPdf(result);
    else if (result.end == JobEnd::failed)
        (void)AfxMessageBox(result.message, MB_OK | MB_ICONERROR);
    return result.end == JobEnd::done;
}

JobResult InteractiveJob::runWithBox(CPrinterDC& dc)
{
    BlockedWindows blocked;
    CWnd* const top = owner();
    const CWnd* const focus = CWnd::GetFocus();
    const HWND focusHandle = focus ? focus->GetSafeHwnd() : HWND();
    box_ = std::make_unique<APrintingDialog>(top);
    const bool isFile = !info_.settings.file.empty();
    (void)box_->show(documentTitle(out_.GetTitle()),
                     isFile ? CString(printToFileName) : info_.settings.printer,
                     isFile ? info_.settings.file : info_.printer.place);
    blocked.block(top);
    if (const CWinApp* const app = printer_.GetApp(); app && app->GetMainWnd() != top)
        blocked.block(app->GetMainWnd());
    JobResult result = runJob(out_, dc, info_, this);
    // first, so that the desktop activates the window and not some other program's
    blocked.release();
    box_ = nullptr;
    if (CWnd* const before = CWnd::FromHandle(focusHandle))
        before->SetFocus();
    return result;
}

void InteractiveJob::onPage(int page) { box_->setPage(page); }

int InteractiveJob::letWork(bool inPage)
{
    const bool isShown = box_ && box_->GetSafeHwnd();
    if (inPage && !isShown)
        return 1;
    return HandOutMessages(moment, inPage ? box_.get() : nullptr);
}

void InteractiveJob::offerPdf(const JobResult& result) const
{
    CString name = fileNameOf(out_.GetTitle());
    CString error;
    const int answer = AfxMessageBox(result.message + offerToSave, MB_YESNO | MB_ICONWARNING);
    if (answer == IDYES &&
        fnFileDialog1(name, pdfFilter, printToFileTitle, 0, "pdf", OFN_OVERWRITEPROMPT, owner()) &&
        !copyFile(result.pdf, name, error))
        (void)AfxMessageBox(fileNotSaved + error, MB_OK | MB_ICONERROR);
    (void)std::remove(result.pdf.c_str());
}

}  // namespace pavane
