#pragma once

#include "pavane/printing/APrintOut.h"
#include "platform/print_settings.h"
#include "platform/resources.h"

namespace pavane
{

class CWinApp;

/// Prints: asks the user what and where, and runs the pages. One job, preview or page set-up at a
/// time in the program; what is called during another does nothing.
class PAVANE_API APrinter
{
public:
    /// `app` may be null: then no main window is known, and choices last for this object.
    explicit APrinter(CWinApp* app);
    APrinter(const APrinter&) = delete;
    APrinter& operator=(const APrinter&) = delete;

    // In this order; new ones go to the end.
    virtual ~APrinter();
    /// Everything before the first page: settings, number of pages, the print dialog (not for a
    /// direct job that knows its printer). 0: no job.
    virtual int DoPreparePrinting(APrintOut* out, CPrintInfo* info);

    int OnPreparePrinting(APrintOut* out, CPrintInfo* info) { return DoPreparePrinting(out, info); }
    /// The whole print command, with its dialog and the box that cancels it. Non-zero when a
    /// document was printed. The user has been told of everything else.
    int Printing(APrintOut* out);
    /// The preview and the page set-up as commands of their own. Non-zero when one was shown, or
    /// changed something.
    int Preview(APrintOut* out);
    int PageSetup(APrintOut* out);

    /// Prints without dialog, box, message or display. What `settings` leave open is that of the
    /// program, then of the locale; nothing is read from the profile. Without a file and a printer
    /// the default printer gets it. Non-zero on success; else `error` is one line and nothing is
    /// left behind. GetAPrinterAbort ends it.
    int PrintDirect(APrintOut& out, const CPrintSettings& settings, CString& error);

    CWinApp* GetApp() const { return app_; }

private:
    CWinApp* app_;
};

/// The flag that stops the job or the preview that runs: non-zero means stop. It is cleared when
/// one begins. A handler of a signal may set it.
PAVANE_API int* GetAPrinterAbort();

/// The module that the template of the print dialog (identifier 10001) comes from. Without one in
/// it the library's is shown; other dialogs are always the library's.
PAVANE_API void SetPrinterResource(const ResourceModule& module);

}  // namespace pavane
