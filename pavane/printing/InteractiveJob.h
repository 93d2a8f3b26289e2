#pragma once

#include "pavane/printing/APrintingDialog.h"
#include "pavane/printing/PrintJob.h"

#include <memory>
#include <vector>

namespace pavane
{

/// Windows that take no input while this lives.
class BlockedWindows
{
public:
    BlockedWindows() = default;
    BlockedWindows(const BlockedWindows&) = delete;
    BlockedWindows& operator=(const BlockedWindows&) = delete;
    ~BlockedWindows() { release(); }
    /// Null, and one that takes none already, is left alone.
    void block(CWnd* window);
    void release();

private:
    std::vector<HWND> blocked_;
};

/// A job with its box: asks for a file when there is to be one, runs the pages, and tells what went
/// wrong.
class InteractiveJob : private JobWatch
{
public:
    InteractiveJob(const APrinter& printer, APrintOut& out, CPrintInfo& info);
    /// Non-zero when a document was printed.
    int run();

private:
    void onPage(int page) override;
    int letWork(bool inPage) override;
    CWnd* owner() const;
    int askFile();
    JobResult runWithBox(CPrinterDC& dc);
    void offerPdf(const JobResult& result) const;

    const APrinter& printer_;
    APrintOut& out_;
    CPrintInfo& info_;
    std::unique_ptr<APrintingDialog> box_;
};

}  // namespace pavane
