#include "pavane/printing/print_setup.h"

#include "pavane/printing/APrintOut.h"
#include "pavane/printing/layout/paper.h"
#include "pavane/printing/layout/print_arguments.h"
#include "pavane/resources/print_messages.h"
#include "platform/CWinApp.h"
#include "platform/profile.h"

#include <algorithm>
#include <string>

namespace pavane
{

namespace
{

constexpr const char* section = "Printing";
constexpr const char* paperEntry = "Paper";
constexpr const char* landscapeEntry = "Landscape";
constexpr const char* marginsEntry = "Margins";

constexpr int leastDpi = 36;
constexpr int greatestDpi = 4800;

/// A paper that the queue offers by this name.
int offeredPaper(const CPrintInfo& info, PaperSize& paper)
{
    for (const PrinterPaper& offered : info.printer.papers)
        if (offered.name == info.settings.paper && offered.cx > 0 && offered.cy > 0) {
            paper = {offered.name, offered.cx, offered.cy};
            return 1;
        }
    return 0;
}

/// Papers with names of a queue that were chosen in this run, for when the queue is not asked.
std::vector<PaperSize>& chosenPapers()
{
    static std::vector<PaperSize> papers;
    return papers;
}

int chosenPaper(const CString& name, PaperSize& paper)
{
    for (const PaperSize& known : chosenPapers())
        if (known.name == name) {
            paper = known;
            return 1;
        }
    return 0;
}

/// The paper of `info` for a run that has not met its queue: by its size, if only that knows it.
CString lastingPaper(const CPrintInfo& info)
{
    PaperSize paper;
    CString error;
    if (readPaper(info.settings.paper, paper, error) || !offeredPaper(info, paper))
        return info.settings.paper;
    std::erase_if(chosenPapers(), [&](const PaperSize& p) { return p.name == paper.name; });
    chosenPapers().push_back(paper);
    return millimetreText(paper.width) + "x" + millimetreText(paper.height);
}

CString marginsText(const CRect& margins)
{
    return millimetreText(margins.left) + "," + millimetreText(margins.top) + "," +
           millimetreText(margins.right) + "," + millimetreText(margins.bottom);
}

}  // namespace

int sheetOfInfo(const CPrintInfo& info, CSize& sheet, CString& error)
{
    PaperSize paper;
    const CString name = info.settings.paper.empty() ? localePaper() : info.settings.paper;
    if (!offeredPaper(info, paper) && !chosenPaper(name, paper) && !readPaper(name, paper, error))
        return 0;
    sheet = sheetOf(paper, info.settings.landscape > 0);
    return 1;
}

std::unique_ptr<CPrinterDC> createPrinterDC(const CPrintInfo& info, CString& error)
{
    CSize sheet;
    if (!sheetOfInfo(info, sheet, error))
        return nullptr;
    const int dpi = info.settings.dpi ? info.settings.dpi : standardDpi;
    if (dpi < leastDpi || dpi > greatestDpi) {
        error = std::to_string(dpi) + resolutionBeyond;
        return nullptr;
    }
    return std::make_unique<CPrinterDC>(sheet, dpi, info.settings.gray > 0);
}

int canPrint(const APrintOut& out, const CPrintInfo& info, CString& error)
{
    CSize sheet;
    if (!sheetOfInfo(info, sheet, error))
        return 0;
    error = out.checkPaper(sheet).message;
    return error.empty();
}

void completeSettings(const CWinApp* app, CPrintSettings& settings)
{
    if (!app)
        return;
    const CPrintSettings& kept = app->PrintSettings();
    if (settings.file.empty() && settings.printer.empty())
        settings.printer = kept.printer;
    if (settings.paper.empty())
        settings.paper = kept.paper;
    for (int CPrintSettings::*const value :
         {&CPrintSettings::landscape, &CPrintSettings::dpi, &CPrintSettings::copies,
          &CPrintSettings::collate, &CPrintSettings::sides, &CPrintSettings::gray})
        if (settings.*value == 0)
            settings.*value = kept.*value;
}

void takeKeptSetup(CWinApp* app, APrintOut& out, CPrintInfo& info)
{
    if (app)
        info.settings = app->PrintSettings();
    CString error;
    if (info.settings.paper.empty())
        (void)readPaperName(GetProfileString(section, paperEntry), info.settings, error);
    if (info.settings.landscape == 0)
        info.settings.landscape = GetProfileString(section, landscapeEntry) == "1" ? 1 : -1;
    CRect margins;
    if (!out.hasOwnMargins() &&
        readMargins(GetProfileString(section, marginsEntry), margins, error))
        out.SetMargins(margins);
}

void keepSetup(CWinApp* app, const APrintOut& out, const CPrintInfo& info)
{
    if (app) {
        app->PrintSettings().paper = info.settings.paper;
        app->PrintSettings().landscape = info.settings.landscape;
    }
    (void)WriteProfileString(section, paperEntry, lastingPaper(info));
    (void)WriteProfileString(section, landscapeEntry, info.settings.landscape > 0 ? "1" : "0");
    (void)WriteProfileString(section, marginsEntry, marginsText(out.GetMargins()));
}

void keepPrinter(CWinApp* app, const CPrintInfo& info)
{
    if (!app)
        return;
    CPrintSettings& kept = app->PrintSettings();
    kept.printer = info.settings.printer;
    kept.sides = info.settings.sides;
    kept.gray = info.settings.gray;
    kept.dpi = info.settings.dpi;
}

}  // namespace pavane
