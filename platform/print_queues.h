#pragma once

#include "platform/print_settings.h"
#include "platform/printer_info.h"

#include <memory>

namespace pavane
{

// Print queues are spoken to through the programs of the CUPS client, which are started when they
// are asked for here and not before. A host without them has no queues, and is told so.

/// How lists of printers call the file that stands in the place of a queue.
inline constexpr const char* printToFileName = "Print to file (PDF)";
/// How long a list of queues may take, in milliseconds.
inline constexpr int printerQueryTime = 2000;

/// Asks the print scheduler for its queues, without waiting for it: begun by the constructor,
/// carried on by each `poll`, given up after `printerQueryTime` and when the object goes.
class PAVANE_API PrinterQuery
{
public:
    PrinterQuery();
    PrinterQuery(const PrinterQuery&) = delete;
    PrinterQuery& operator=(const PrinterQuery&) = delete;
    ~PrinterQuery();

    /// Non-zero when there is no more to come.
    int poll();
    /// The queues that are known by now, in the scheduler's order. Names and status come first,
    /// papers and the rest before `poll` is non-zero, unless the time was too short for them.
    const std::vector<PrinterInfo>& printers() const;
    /// Why there are no queues: one line, "" when all went well (also where there are just none).
    CString failure() const;

private:
    class Work;
    std::unique_ptr<Work> work_;
};

/// The same, waiting: at most so long.
PAVANE_API std::vector<PrinterInfo> FindPrinters(int milliseconds = printerQueryTime);

/// Hands the finished file `pdf` to the queue settings.printer with its title, copies, collation,
/// sides and paper, never to be scaled. While the queue takes it `idle`, if any, is asked with
/// `context` every 50 ms, and 0 gives up. Non-zero when the queue has the job; else `error` is one
/// line, with the queue's reason where it gives one, "" after giving up. The file stays.
PAVANE_API int SubmitPrintJob(const CString& pdf, const CString& title,
                              const CPrintSettings& settings, int (*idle)(void*), void* context,
                              CString& error);

}  // namespace pavane
