#include "pavane/printing/PrinterList.h"

#include "pavane/resources/print_messages.h"

#include <algorithm>

namespace pavane
{

PrinterList::PrinterList(const CString& wanted) : wanted_(wanted)
{
    if (wanted_.empty())
        return;
    PrinterInfo known;
    known.name = wanted_;
    printers_.push_back(known);
}

int PrinterList::poll()
{
    if (complete_)
        return 0;
    complete_ = query_.poll();
    std::vector<PrinterInfo> now = query_.printers();
    const auto isWanted = [&](const PrinterInfo& p) { return p.name == wanted_; };
    // until all is told the queue may still come
    if (!complete_ && !wanted_.empty() && std::none_of(now.begin(), now.end(), isWanted)) {
        PrinterInfo known;
        known.name = wanted_;
        now.push_back(known);
    }
    const bool isSame = std::equal(now.begin(), now.end(), printers_.begin(), printers_.end(),
                                   [](const PrinterInfo& a, const PrinterInfo& b) {
                                       return a.name == b.name && a.status == b.status &&
                                              a.type == b.type &&
                                              a.papers.size() == b.papers.size();
                                   });
    printers_ = std::move(now);
    return !isSame || complete_;
}

CString PrinterList::name(int line) const
{
    const PrinterInfo* const known = printer(line);
    return known ? known->name : CString(printToFileName);
}

const PrinterInfo* PrinterList::printer(int line) const
{
    return line >= 0 && line + 1 < count() ? &printers_[static_cast<std::size_t>(line)] : nullptr;
}

int PrinterList::lineOf(const CString& name) const
{
    for (int line = 0; line < count(); ++line)
        if (this->name(line) == name)
            return line;
    return -1;
}

int PrinterList::preferred() const
{
    if (const int line = wanted_.empty() ? -1 : lineOf(wanted_); line >= 0)
        return line;
    for (int line = 0; line + 1 < count(); ++line)
        if (printer(line)->isDefault)
            return line;
    return count() - 1;
}

CString PrinterList::comment(int line) const
{
    const PrinterInfo* const known = printer(line);
    if (known)
        return known->comment;
    const CString failure = complete_ ? query_.failure() : CString();
    return failure.empty() ? failure : noQueues + failure;
}

CString PrinterList::status(int line) const
{
    const PrinterInfo* const known = printer(line);
    if (!known)
        return complete_ ? printerReady : printerAsked;
    if (!known->status.empty())
        return known->status;
    return !complete_ ? printerAsked : known->accepts ? printerReady : printerRejects;
}

}  // namespace pavane
