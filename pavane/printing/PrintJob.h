#pragma once

#include "pavane/printing/APrintOut.h"
#include "platform/printer_dc.h"

namespace pavane
{

enum class JobEnd { done, cancelled, failed };

/// Follows a job and may end it.
class JobWatch
{
public:
    virtual ~JobWatch() = default;
    /// Before the page is drawn.
    virtual void onPage(int page) = 0;
    /// Lets the user be heard for a moment; `inPage`: while a page is being drawn, so that no other
    /// window may change. 0 ends the job.
    virtual int letWork(bool inPage) = 0;
};

/// How a job ended; `message` says why it failed.
struct JobResult {
    JobEnd end = JobEnd::done;
    CString message;
    int isRefused = 0;  ///< a queue did not take the pages that stand in `pdf`
    CString pdf;        ///< a temporary file, the caller's
};

/// The document of `info`, into its file or its queue. `watch` null: nobody looks on.
JobResult runJob(APrintOut& out, CPrinterDC& dc, CPrintInfo& info, JobWatch* watch);

}  // namespace pavane
