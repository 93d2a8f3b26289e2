#pragma once

#include "platform/print_info.h"
#include "platform/printer_dc.h"

#include <memory>

namespace pavane
{

class APrintOut;
class CWinApp;

/// Dots per inch where nobody says.
inline constexpr int standardDpi = 600;

/// The sheet of `info` as it lies, hundredths of a millimetre: a known paper, one of the queue's,
/// an own one; without a name the locale's. 0 when there is no such paper, and `error` says so.
int sheetOfInfo(const CPrintInfo& info, CSize& sheet, CString& error);

/// A printer at rest with the sheet and resolution of `info`; null, and why, when there is none.
std::unique_ptr<CPrinterDC> createPrinterDC(const CPrintInfo& info, CString& error);

/// Whether `out` can be printed as `info` says; else a line for the user.
int canPrint(const APrintOut& out, const CPrintInfo& info, CString& error);

/// What a job without dialogs was not told, from the program's choices of this run.
void completeSettings(const CWinApp* app, CPrintSettings& settings);

/// What a command with dialogs begins with: the program's choices of this run, then what the
/// profile keeps, section "Printing"; margins too when the print-out has none of its own. Texts of
/// the profile that are no paper or margins count as none.
void takeKeptSetup(CWinApp* app, APrintOut& out, CPrintInfo& info);
/// Keeps paper, direction and margins in both; the printer and its properties for this run.
void keepSetup(CWinApp* app, const APrintOut& out, const CPrintInfo& info);
void keepPrinter(CWinApp* app, const CPrintInfo& info);

}  // namespace pavane
