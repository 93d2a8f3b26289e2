#include "platform/print_queues.h"

#include "platform/core/queue_texts.h"
#include "platform/core/QueueQuestion.h"
#include "posix/ChildProcess.h"

#include <chrono>
#include <deque>
#include <filesystem>
#include <thread>

namespace pavane
{

namespace
{

using Clock = std::chrono::steady_clock;

/// Queues whose details are asked for, and programs that ask at the same time.
constexpr std::size_t mostDetailed = 64;
constexpr std::size_t mostAtOnce = 4;
/// A job gets this time and more for its length; a scheduler may be slow, but not for ever.
constexpr int submitTime = 30000;
constexpr std::uintmax_t bytesInSubmitSecond = 1000000;
constexpr int idlePause = 50;
constexpr int pollPause = 5;

constexpr const char* noAnswer = "the print scheduler does not answer";

/// The programs' texts are read in this language.
std::vector<std::string> plainLanguage() { return {"LC_ALL=C", "LANGUAGE="}; }

int startTool(ChildProcess& tool, const std::vector<std::string>& arguments, int milliseconds,
              CString& error)
{
    CString fault;
    if (tool.start(arguments, fault, {std::max(milliseconds, 1)}, plainLanguage()))
        return 1;
    error = "the printing program '" + arguments[0] + "' " + fault;
    return 0;
}

}  // namespace

/// A question to the scheduler for the list, then one for each queue of it, on its local socket; or
/// two through the programs, where there is no such socket or no answer on it.
class PrinterQuery::Work
{
public:
    Work() { isListing_ = startTool(list_, {"lpstat", "-d", "-a", "-l", "-p"}, left(), failure); }

    int poll()
    {
        if (isListing_ && list_.poll()) {
            isListing_ = 0;
            takeList();
        }
        if (isListing_)
            return 0;
        if (!left())
            return endNow();
        for (std::size_t i = 0; i < asked_.size();)
            if (isAnswered(asked_[i])) {
                const Question question = std::move(asked_[i]);
                asked_.erase(asked_.begin() + static_cast<std::ptrdiff_t>(i));
                takeAnswer(question);
            } else {
                ++i;
            }
        while (!waiting_.empty() && asked_.size() < mostAtOnce)
            ask();
        return asked_.empty() && waiting_.empty();
    }

    std::vector<PrinterInfo> printers;
    CString failure;

private:
    enum class About { all, attributes, choices };
    struct Question {
        std::size_t queue = 0;
        About about = About::all;
        std::unique_ptr<ChildProcess> tool;
        std::unique_ptr<QueueQuestion> direct;
    };
    static int isAnswered(const Question& question)
    {
        return question.direct ? question.direct->poll() : question.tool->poll();
    }
    int endNow()
    {
        waiting_.clear();
        asked_.clear();
        return 1;
    }
    int left() const
    {
        const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(end_ - Clock::now());
        return static_cast<int>(std::max<std::int64_t>(now.count(), 0));
    }
    void takeList()
    {
        if (!list_.isLate())
            printers = readQueueList(list_.output());
        const CString said = jobFailure(list_.errors());
        if (list_.isLate())
            failure = noAnswer;
        else if (printers.empty() && list_.exitStatus() != 0 &&
                 said.find("No destinations added") == CString::npos)
            failure = said.empty() ? "the print scheduler gives no list of its queues" : said;
        // the default one first: it is what a dialog shows
        for (const int isDefault : {1, 0})
            for (std::size_t i = 0; i < printers.size() && waiting_.size() < mostDetailed; ++i)
                if (printers[i].isDefault == isDefault)
                    waiting_.push_back({i, About::all, nullptr, nullptr});
    }
    void ask()
    {
        Question question = std::move(waiting_.front());
        waiting_.pop_front();
        const CString& name = printers[question.queue].name;
        if (question.about == About::all) {
            question.direct = std::make_unique<QueueQuestion>();
            if (!question.direct->ask(socket_, name))
                return askPrograms(question.queue);
            return asked_.push_back(std::move(question));
        }
        std::vector<std::string> arguments{"lpoptions", "-p", name};
        if (question.about == About::choices)
            arguments.emplace_back("-l");
        question.tool = std::make_unique<ChildProcess>();
        CString ignored;
        if (startTool(*question.tool, arguments, left(), ignored))
            asked_.push_back(std::move(question));
    }
    void askPrograms(std::size_t queue)
    {
        for (const About about : {About::attributes, About::choices})
            waiting_.push_back({queue, about, nullptr, nullptr});
    }
    void takeAnswer(const Question& question)
    {
        PrinterInfo& queue = printers[question.queue];
        if (question.direct) {
            if (!question.direct->take(queue))
                askPrograms(question.queue);
            return;
        }
        if (question.tool->exitStatus() != 0)
            return;
        if (question.about == About::choices)
            readQueueChoices(question.tool->output(), queue);
        else
            readQueueAttributes(question.tool->output(), queue);
    }

    Clock::time_point end_ = Clock::now() + std::chrono::milliseconds(printerQueryTime);
    const std::string socket_ = schedulerSocket();
    ChildProcess list_;
    int isListing_ = 0;
    std::deque<Question> waiting_;
    std::vector<Question> asked_;
};

PrinterQuery::PrinterQuery() : work_(std::make_unique<Work>()) {}
PrinterQuery::~PrinterQuery() = default;
int PrinterQuery::poll() { return work_->poll(); }
const std::vector<PrinterInfo>& PrinterQuery::printers() const { return work_->printers; }
CString PrinterQuery::failure() const { return work_->failure; }

std::vector<PrinterInfo> FindPrinters(int milliseconds)
{
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    PrinterQuery query;
    while (!query.poll() && Clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(pollPause));
    return query.printers();
}

namespace
{

/// The scheduler's word for a refusal is short; the queue's own reason stands elsewhere.
CString reasonOf(const CString& queue)
{
    ChildProcess tool;
    CString ignored;
    if (!startTool(tool, {"lpstat", "-a", queue}, printerQueryTime, ignored))
        return {};
    tool.wait(printerQueryTime + idlePause);
    return refusalReason(tool.output());
}

}  // namespace

int SubmitPrintJob(const CString& pdf, const CString& title, const CPrintSettings& settings,
                   int (*idle)(void*), void* context, CString& error)
{
    error.clear();
    const std::vector<std::string> arguments = jobArguments(pdf, title, settings, error);
    if (arguments.empty())
        return 0;
    std::error_code fault;
    const std::uintmax_t bytes = std::filesystem::file_size(pdf, fault);
    if (fault) {
        error = "the page file cannot be read: " + fault.message();
        return 0;
    }
    const std::uintmax_t seconds = std::min<std::uintmax_t>(bytes / bytesInSubmitSecond, 100000);
    ChildProcess tool;
    if (!startTool(tool, arguments, submitTime + static_cast<int>(1000 * seconds), error))
        return 0;
    while (!tool.wait(idlePause))
        if (idle && !idle(context))
            return 0;
    if (tool.exitStatus() == 0)
        return 1;
    CString why = tool.isLate() ? noAnswer : jobFailure(tool.errors());
    if (const CString reason = tool.isLate() ? CString() : reasonOf(settings.printer);
        !reason.empty())
        why += ": " + reason;
    error = "'" + settings.printer + "': " + (why.empty() ? "the job was not taken" : why);
    return 0;
}

}  // namespace pavane
