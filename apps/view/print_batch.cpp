#include "apps/view/print_batch.h"

#include "pavane/axes/maps/map_titles.h"
#include "pavane/printing/APrinter.h"
#include "tessel/plain_text.h"
#include "tessel/uvfits/uv_values.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <array>
#include <csignal>

namespace pavane
{

namespace
{

constexpr double hertzPerGigahertz = 1e9;
constexpr int frequencyDigits = 4;
constexpr std::array<int, 3> stopSignals{SIGINT, SIGTERM, SIGHUP};

/// The signal that came while a job ran.
volatile std::sig_atomic_t stopSignal = 0;

void stopJob(int signal)
{
    stopSignal = signal;
    *GetAPrinterAbort() = 1;
}

/// While this lives signals end the job, which leaves nothing behind; then the program.
class StopBySignal
{
public:
    StopBySignal()
    {
        (void)GetAPrinterAbort();  // made here rather than in a handler
        struct sigaction stop {
        };
        stop.sa_handler = stopJob;
        stop.sa_flags = SA_RESETHAND;  // whoever asks twice does not want to wait
        for (std::size_t i = 0; i < stopSignals.size(); ++i)
            (void)sigaction(stopSignals[i], &stop, &before_[i]);
    }
    StopBySignal(const StopBySignal&) = delete;
    StopBySignal& operator=(const StopBySignal&) = delete;
    ~StopBySignal()
    {
        for (std::size_t i = 0; i < stopSignals.size(); ++i)
            (void)sigaction(stopSignals[i], &before_[i], nullptr);
        if (stopSignal)
            (void)std::raise(stopSignal);
    }

private:
    std::array<struct sigaction, stopSignals.size()> before_{};
};

/// A print-out whose caption and numbers the command line chooses.
class BatchPrintOut : public APrintOut
{
public:
    BatchPrintOut(const std::string& title, const PrintWish& wish, const std::string& caption)
        : APrintOut(title), wish_(wish), caption_(wish.hasCaption ? wish.caption : caption)
    {
        SetMargins(wish.margins);
    }
    int SetupPrintDlg(APrinter* printer, CPrintInfo* info) override
    {
        if (!APrintOut::SetupPrintDlg(printer, info))
            return 0;
        if (wish_.settings.from > info->maxPage) {
            fault_ = "there is no page " + std::to_string(wish_.settings.from) +
                     ", the last one is " + std::to_string(info->maxPage);
            return 0;
        }
        APrnAddInfo& add = GetAddInfo();
        add.subscript = !caption_.empty();
        add.subscriptFormat = caption_;
        if (wish_.number >= 0) {
            add.pageNumber = wish_.number > 0;
            add.firstNumber = std::max(wish_.number, leastFirstNumber);
        }
        return 1;
    }
    /// Why the print-out itself refused; "" when it did not.
    const std::string& fault() const { return fault_; }
    /// The job has cleared the flag of a signal that came before it began.
    void OnPrepareDC(CDC*, CPrintInfo*) override
    {
        if (stopSignal)
            *GetAPrinterAbort() = 1;
    }

private:
    const PrintWish& wish_;
    std::string caption_;
    std::string fault_;
};

/// Facts as the format of a caption, which takes "%" and "~" for its own.
std::string captionOf(const std::array<std::string, 3>& facts)
{
    std::string text;
    for (const std::string& fact : facts) {
        if (!fact.empty() && !text.empty())
            text += ", ";
        for (const char c : plainText(fact)) {
            if (c == '%')
                text += '%';
            text += c == '~' ? '-' : c;
        }
    }
    return text + " ~C";
}

std::string frequencyOf(double hertz)
{
    return hertz > 0 ? valToStr(hertz / hertzPerGigahertz, frequencyDigits) + " GHz" : "";
}

std::string dayOf(const std::string& date) { return date.substr(0, date.find('T')); }

}  // namespace

std::string usualCaption(const MapHeader& header)
{
    return captionOf({mapTitle(header), frequencyOf(header.frequency), dayOf(header.dateObs)});
}

std::string usualCaption(const UvHeader& header)
{
    return captionOf({header.object, frequencyOf(header.frequency), dayOf(header.dateObs)});
}

int printInBatch(const PrintWish& wish, const std::string& title, const std::string& caption,
                 ABWindow& window, std::string& error)
{
    const StopBySignal stop;
    BatchPrintOut out(title, wish, caption);
    out.SetPrintWindow(&window);
    APrinter printer(nullptr);
    if (printer.PrintDirect(out, wish.settings, error))
        return 1;
    if (!out.fault().empty())
        error = out.fault();
    if (!wish.settings.file.empty() && !error.starts_with(wish.settings.file))
        error = wish.settings.file + ": " + error;
    return 0;
}

}  // namespace pavane
