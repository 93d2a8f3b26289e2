#include "platform/printer_dc.h"

#include "platform/core/PdfDocument.h"
#include "platform/core/PrintedPage.h"
#include "posix/FileReplacement.h"
#include "posix/plain_file.h"
#include "posix/spool_file.h"

#include <cerrno>

namespace pavane
{

namespace
{

/// Points of 1/72 inch, of hundredths of a millimetre.
CPointF pointsOf(const CSize& sheet) { return {sheet.cx * 72.0 / 2540, sheet.cy * 72.0 / 2540}; }

}  // namespace

/// The document comes last, so that it is gone before the file that it writes.
struct CPrinterDC::Job {
    PrinterBackend* printer = nullptr;
    CString error;
    CString spooled;  ///< the name of a document that got none
    int isPageOpen = 0;
    FileReplacement file;
    std::unique_ptr<PdfDocument> document;

    int fail(const CString& why)
    {
        error = printer->printed().isStopped() ? "The job was cancelled" : why;
        return 0;
    }
};

CPrinterDC::CPrinterDC(const CSize& sheet, int dpi, int gray)
    : CDC(std::make_unique<PrinterBackend>(sheet, dpi, gray)), job_(std::make_unique<Job>())
{
    job_->printer = static_cast<PrinterBackend*>(backend());
}

CPrinterDC::~CPrinterDC() { (void)AbortDoc(); }

int CPrinterDC::ResetDC(const CSize& sheet)
{
    return !job_->isPageOpen && job_->printer->setSheet(sheet);
}

const CSize& CPrinterDC::sheet() const { return job_->printer->sheet(); }

int CPrinterDC::StartDoc(const CString& title, const CString& file, CString& error)
{
    Job& job = *job_;
    error.clear();
    if (job.document) {
        error = job.error = "A document is open";
        return 0;
    }
    job.error.clear();
    job.printer->printed().restart();
    if (job.printer->size().cx < 1)
        error = "The paper has no size";
    else if (!graphicsHook())
        error = "There are no fonts";
    job.spooled.clear();
    // also before a job for a file: a run that was killed may have left some, whatever comes next
    sweepSpoolFiles();
    if (error.empty() && file.empty())
        job.spooled = newSpoolName();
    if (error.empty() &&
        !job.file.begin(file.empty() ? job.spooled : file, file.empty() ? 0600 : 0666))
        error = job.file.fault();
    if (error.empty()) {
        PrintedPage& page = job.printer->printed();
        job.document = std::make_unique<PdfDocument>(
            [&job](std::string_view bytes) {
                return writeAll(job.file.descriptor(), bytes) ? 0 : errno;
            },
            title, job.printer->dpi(), [&page] { return page.goesOn(); });
    }
    job.error = error;
    return error.empty();
}

int CPrinterDC::StartPage()
{
    Job& job = *job_;
    if (!job.document || job.isPageOpen)
        return job.fail(job.document ? "A page is open" : "No document is open");
    if (!job.printer->printed().goesOn() ||
        !job.document->startPage(pointsOf(job.printer->sheet()), job.printer->size()))
        return job.fail(job.document->fault());
    job.isPageOpen = 1;
    job.printer->printed().drawOn(&job.document->device());
    (void)SaveDC();
    (void)RestoreDC(-1);  // the new page hears of the clip
    return 1;
}

int CPrinterDC::EndPage()
{
    Job& job = *job_;
    if (!job.isPageOpen)
        return job.fail("No page is open");
    job.isPageOpen = 0;
    job.printer->printed().drawOn(nullptr);
    if (job.printer->printed().isStopped() || !job.document->endPage() ||
        job.printer->printed().isStopped())
        return job.fail(job.document->fault());
    return 1;
}

int CPrinterDC::finish(CString& error)
{
    Job& job = *job_;
    const int ended = job.document && (!job.isPageOpen || EndPage());
    if (!job.document)
        (void)job.fail("No document is open");
    else if (ended && (job.printer->printed().isStopped() || !job.document->finish()))
        (void)job.fail(job.document->fault());
    else if (ended && !job.file.finish())
        (void)job.fail(job.file.fault());
    else if (ended)
        job.error.clear();
    error = job.error;
    (void)AbortDoc();
    return error.empty();
}

int CPrinterDC::EndDoc(CString& error)
{
    if (job_->spooled.empty())
        return finish(error);
    (void)AbortDoc();
    error = job_->error = "The document has no name";
    return 0;
}

int CPrinterDC::EndDocKeep(CString& temporary, CString& error)
{
    const CString spooled = job_->spooled;
    temporary.clear();
    if (job_->document && spooled.empty()) {
        (void)AbortDoc();
        error = job_->error = "The document has a name";
        return 0;
    }
    if (!finish(error))
        return 0;
    temporary = spooled;
    return 1;
}

int CPrinterDC::AbortDoc()
{
    const int wasOpen = job_->document != nullptr;
    job_->printer->printed().drawOn(nullptr);
    job_->isPageOpen = 0;
    job_->document.reset();
    job_->file.discard();
    job_->spooled.clear();
    return wasOpen;
}

int CPrinterDC::SetAbortProc(AbortProc proc)
{
    std::function<int()> ask;
    if (proc)
        ask = [this, proc] { return proc(*this); };
    job_->printer->printed().askBefore(std::move(ask));
    return 1;
}

int CPrinterDC::isAborted() const { return job_->printer->printed().isStopped(); }

const CString& CPrinterDC::lastError() const { return job_->error; }

}  // namespace pavane
