#include "pavane/printing/APrinter.h"

#include "pavane/printing/InteractiveJob.h"
#include "pavane/printing/print_setup.h"
#include "pavane/printing/printer_state.h"
#include "pavane/printing/PrintJob.h"
#include "pavane/resources/print_messages.h"
#include "platform/message.h"
#include "platform/print_queues.h"

#include <algorithm>
#include <cstdio>

namespace pavane
{

namespace
{

/// Fills what is known of the queue; a name that nobody knows stays as it is. Empty: the default.
int findPrinter(CPrintInfo& info)
{
    const std::vector<PrinterInfo> printers = FindPrinters();
    for (const PrinterInfo& known : printers) {
        const bool isMeant = info.settings.printer.empty() ? known.isDefault != 0
                                                           : known.name == info.settings.printer;
        if (!isMeant)
            continue;
        info.printer = known;
        info.settings.printer = known.name;
        return 1;
    }
    return !info.settings.printer.empty();
}

void takeRange(CPrintInfo& info)
{
    info.maxPage = std::max(info.maxPage, info.minPage);
    info.from = info.minPage;
    info.to = info.maxPage;
}

}  // namespace

APrinter::APrinter(CWinApp* app) : app_(app) {}
APrinter::~APrinter() = default;

int APrinter::DoPreparePrinting(APrintOut* out, CPrintInfo* info)
{
    if (!out || !info)
        return 0;
    const int asks = !info->direct || !findPrinter(*info);
    if (!out->SetupPrintDlg(this, info))
        return 0;
    takeRange(*info);
    if (asks && !out->OnPrintDlg(this, info))
        return 0;
    CString error;
    if (canPrint(*out, *info, error))
        return 1;
    (void)AfxMessageBox(error, MB_OK | MB_ICONERROR);
    return 0;
}

int APrinter::Printing(APrintOut* out)
{
    const PrinterTurn turn;
    if (!turn || !out)
        return 0;
    CPrintInfo info;
    takeKeptSetup(app_, *out, info);
    if (!OnPreparePrinting(out, &info))
        return 0;
    return InteractiveJob(*this, *out, info).run();
}

int APrinter::Preview(APrintOut* out)
{
    CPrintInfo info;
    {
        // not during a job: its window must not be asked for pages then
        const PrinterTurn turn;
        if (!turn || !out)
            return 0;
        takeKeptSetup(app_, *out, info);
        if (!out->SetupPrintDlg(this, &info))
            return 0;
    }
    takeRange(info);
    return out->PreviewDlg(&info);
}

int APrinter::PageSetup(APrintOut* out)
{
    const PrinterTurn turn;
    if (!turn || !out)
        return 0;
    CPrintInfo info;
    takeKeptSetup(app_, *out, info);
    return out->OnPageSetupDlg(this, &info);
}

int APrinter::PrintDirect(APrintOut& out, const CPrintSettings& settings, CString& error)
{
    error.clear();
    const PrinterTurn turn;
    if (!turn) {
        error = anotherJob;
        return 0;
    }
    CPrintInfo info;
    info.direct = 1;
    info.settings = settings;
    completeSettings(app_, info.settings);
    info.printToFile = !info.settings.file.empty();
    if (!info.printToFile && !findPrinter(info)) {
        error = noPrinterKnown;
        return 0;
    }
    if (out.isWindowLost()) {
        error = printWindowGone;
        return 0;
    }
    const std::unique_ptr<CPrinterDC> dc =
        canPrint(out, info, error) ? createPrinterDC(info, error) : nullptr;
    if (!dc)
        return 0;
    if (!out.SetupPrintDlg(this, &info)) {
        error = jobStopped;
        return 0;
    }
    takeRange(info);
    info.rangeIsPages = settings.from != 0 || settings.to != 0;
    info.from = settings.from != 0 ? settings.from : info.minPage;
    info.to = settings.to != 0 ? settings.to : info.maxPage;
    const JobResult result = runJob(out, *dc, info, nullptr);
    if (result.isRefused)
        (void)std::remove(result.pdf.c_str());
    if (result.end == JobEnd::done)
        return 1;
    error = result.end == JobEnd::cancelled ? CString(jobStopped) : result.message;
    return 0;
}

}  // namespace pavane
