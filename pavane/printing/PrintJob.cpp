#include "pavane/printing/PrintJob.h"

#include "pavane/printing/APrinter.h"
#include "pavane/printing/layout/page_range.h"
#include "pavane/printing/layout/page_texts.h"
#include "pavane/resources/print_messages.h"
#include "platform/print_queues.h"

#include <cstdio>
#include <utility>

namespace pavane
{

namespace
{

JobWatch* watching = nullptr;
bool isInPage = false;

int isStopped() { return *GetAPrinterAbort(); }

int goesOn()
{
    if (!isStopped() && watching && !watching->letWork(isInPage))
        *GetAPrinterAbort() = 1;
    return !isStopped();
}

int onAbort(CDC&) { return goesOn(); }
int onIdle(void*) { return goesOn(); }

/// What holds while a job runs, whichever way it ends.
class Running
{
public:
    Running(CPrinterDC& dc, JobWatch* watch) : dc_(dc), before_(std::exchange(watching, watch))
    {
        *GetAPrinterAbort() = 0;
        (void)dc_.SetAbortProc(onAbort);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running()
    {
        (void)dc_.SetAbortProc(nullptr);
        watching = before_;
        isInPage = false;
    }

private:
    CPrinterDC& dc_;
    JobWatch* before_;
};

JobResult failure(CString message)
{
    return isStopped() ? JobResult{JobEnd::cancelled, {}, 0, {}}
                       : JobResult{JobEnd::failed, std::move(message), 0, {}};
}

/// One page, with a message when it could not be printed.
JobResult runPage(APrintOut& out, CPrinterDC& dc, CPrintInfo& info, JobWatch* watch)
{
    const auto notPage = [&](const CString& why) {
        CString text = pageNotPrinted + std::to_string(info.currentPage);
        text += why.empty() ? "." : ": " + why;
        return failure(std::move(text));
    };
    if (out.isWindowLost())
        return failure(printWindowGone);
    out.OnPrepareDC(&dc, &info);
    if (!info.continuePrinting)
        return {};
    if (watch)
        watch->onPage(info.currentPage);
    if (!dc.StartPage())
        return notPage(dc.lastError());
    isInPage = true;
    out.OnPrepareDC(&dc, &info);
    const int isDrawn = out.OnPrintPage(&dc, &info);
    isInPage = false;
    if (!isDrawn)
        return notPage(out.isWindowLost() ? CString(printWindowGone) : CString());
    return dc.EndPage() ? JobResult{} : notPage(dc.lastError());
}

JobResult runPages(APrintOut& out, CPrinterDC& dc, CPrintInfo& info, JobWatch* watch)
{
    JobPages pages(info.from, info.to, info.minPage, info.maxPage);
    for (; pages.more(); pages.next()) {
        info.currentPage = pages.page();
        JobResult result = runPage(out, dc, info, watch);
        if (result.end != JobEnd::done || !info.continuePrinting)
            return result;
        if (!goesOn())
            return failure({});
    }
    return {};
}

/// Hands the finished document over.
JobResult finish(CPrinterDC& dc, const CPrintInfo& info, const CString& title)
{
    CString error;
    if (!info.settings.file.empty())
        return dc.EndDoc(error) ? JobResult{} : failure(fileNotPrinted + error);
    CString pdf;
    if (!dc.EndDocKeep(pdf, error))
        return failure(fileNotPrinted + error);
    if (SubmitPrintJob(pdf, title, info.settings, onIdle, nullptr, error)) {
        (void)std::remove(pdf.c_str());
        return {};
    }
    JobResult result = failure(queueRefused + error);
    if (result.end == JobEnd::failed) {
        result.isRefused = 1;
        result.pdf = pdf;
    } else {
        (void)std::remove(pdf.c_str());
    }
    return result;
}

}  // namespace

JobResult runJob(APrintOut& out, CPrinterDC& dc, CPrintInfo& info, JobWatch* watch)
{
    const Running running(dc, watch);
    const CString title = documentTitle(out.GetTitle());
    info.continuePrinting = 1;
    out.OnBeginPrinting(&dc, &info);
    JobResult result;
    CString error;
    if (!dc.StartDoc(title, info.settings.file, error))
        result = failure(jobNotStarted + error);
    else
        result = runPages(out, dc, info, watch);
    if (result.end == JobEnd::done)
        result = finish(dc, info, title);
    if (result.end != JobEnd::done)
        (void)dc.AbortDoc();
    out.OnEndPrinting(&dc, &info);
    return result;
}

}  // namespace pavane
