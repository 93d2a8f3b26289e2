#pragma once

#include "platform/print_queues.h"

#include <vector>

namespace pavane
{

/// The lines of the print dialog's list: the queues as they become known, and the file behind them.
class PrinterList
{
public:
    /// `wanted` is the queue that the user printed on before, "" for none. It has a line at once.
    explicit PrinterList(const CString& wanted);
    /// Non-zero when the lines have changed.
    int poll();
    int isComplete() const { return complete_; }
    /// Lines with the file's, which is the last.
    int count() const { return static_cast<int>(printers_.size()) + 1; }
    CString name(int line) const;
    /// Null for the file.
    const PrinterInfo* printer(int line) const;
    /// The line to choose for a user who has not chosen: the wanted queue, the default one, the
    /// file.
    int preferred() const;
    int lineOf(const CString& name) const;
    /// What is said of a line; with the file's, why there are no queues.
    CString status(int line) const;
    CString comment(int line) const;

private:
    CString wanted_;
    PrinterQuery query_;
    std::vector<PrinterInfo> printers_;
    int complete_ = 0;
};

}  // namespace pavane
