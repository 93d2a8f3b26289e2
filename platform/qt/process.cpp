#include "platform/process.h"

#include "platform/core/LineSplitter.h"
#include "platform/core/utf8.h"
#include "platform/CWnd.h"
#include "platform/qt/message_scope.h"
#include "platform/qt/WindowPeer.h"
#include "posix/ChildProcess.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>
#include <QSocketNotifier>
#include <QTimer>
#include <utility>

namespace pavane
{

/// The program that runs, and who hears of it.
class CProcess::Run : public QObject
{
public:
    Run(HWND window, unsigned message) : window_(window), message_(message)
    {
        killer_.setSingleShot(true);
        again_.setSingleShot(true);
        connect(&killer_, &QTimer::timeout, this, [this] { process_.killGroup(); });
        connect(&again_, &QTimer::timeout, this, [this] { goOn(); });
    }
    int start(const ProcessCommand& command, CString& error)
    {
        ProcessLimits limits;
        limits.isBound = 1;
        if (!process_.start(command.words, error, limits, command.settings))
            return 0;
        id_ = static_cast<int>(process_.id());
        const std::array<int, 3> ends = process_.descriptors();
        for (std::size_t i = 0; i < ends.size(); ++i)
            if (ends[i] >= 0) {
                notifiers_[i].reset(new QSocketNotifier(ends[i], QSocketNotifier::Read));
                connect(notifiers_[i].get(), &QSocketNotifier::activated, this, [this] { goOn(); });
            }
        return 1;
    }
    int isRunning() const { return process_.isRunning(); }
    int id() const { return process_.isRunning() ? id_ : -1; }
    void terminate(int milliseconds)
    {
        process_.terminate();
        killer_.start(milliseconds);
    }
    /// No further message.
    void end()
    {
        notifiers_ = {};
        killer_.stop();
        again_.stop();
        process_.stop();
        window_ = {};
    }

private:
    /// A notifier may be in the middle of telling.
    struct Later {
        void operator()(QSocketNotifier* notifier) const
        {
            notifier->setEnabled(false);
            notifier->deleteLater();
        }
    };

    void watch(bool on)
    {
        for (const auto& notifier : notifiers_)
            if (notifier)
                notifier->setEnabled(on);
    }
    void goOn()
    {
        if (isTelling_)
            return;  // in a loop within a message: what comes meanwhile waits
        if (news_.empty())
            collect();
        tell();
    }
    void collect()
    {
        const int hasEnded = process_.poll();
        if (hasEnded) {
            notifiers_ = {};
            killer_.stop();
        }
        for (int stream = 0; stream < 2; ++stream) {
            const auto kind = stream ? ProcessNews::errorLine : ProcessNews::line;
            LineSplitter& splitter = splitters_[static_cast<std::size_t>(stream)];
            for (const std::string& line : splitter.take(process_.takeText(stream)))
                news_.push_back({kind, validUtf8(line), -1});
            if (hasEnded)
                for (const std::string& line : splitter.rest())
                    news_.push_back({kind, validUtf8(line), -1});
        }
        if (hasEnded)
            news_.push_back({ProcessNews::ended, {}, process_.exitStatus()});
    }
    /// A window that hears of it may delete everything here.
    void tell()
    {
        const std::weak_ptr<int> life = life_;
        const auto end = std::chrono::steady_clock::now() + telling;
        while (!news_.empty()) {
            if (std::chrono::steady_clock::now() > end) {
                // a program that floods does not keep the user from being heard
                watch(false);
                again_.start(0);
                return;
            }
            if (!CWnd::FromHandle(window_)) {
                news_.clear();
                break;
            }
            if (!isHeard(window_)) {
                // behind a box that alone is heard; the program waits when its pipe is full
                watch(false);
                again_.start(pause);
                return;
            }
            const ProcessNews one = std::move(news_.front());
            news_.pop_front();
            isTelling_ = 1;
            sendTo(window_, message_, one.kind, reinterpret_cast<LPARAM>(&one));
            if (life.expired())
                return;
            isTelling_ = 0;
        }
        watch(true);
    }
    static constexpr int pause = 50;  ///< milliseconds
    static constexpr std::chrono::milliseconds telling{10};

    HWND window_;
    unsigned message_;
    ChildProcess process_;
    int id_ = -1;
    std::array<LineSplitter, 2> splitters_;
    std::array<std::unique_ptr<QSocketNotifier, Later>, 3> notifiers_;
    std::deque<ProcessNews> news_;  ///< not told yet
    QTimer killer_, again_;
    int isTelling_ = 0;
    std::shared_ptr<int> life_ = std::make_shared<int>(0);
};

CProcess::CProcess() = default;
CProcess::CProcess(CProcess&& other) noexcept = default;

CProcess& CProcess::operator=(CProcess&& other) noexcept
{
    if (this != &other) {
        Kill();
        run_ = std::move(other.run_);
    }
    return *this;
}

CProcess::~CProcess() { Kill(); }

int CProcess::Start(const ProcessCommand& command, HWND window, unsigned message, CString& error)
{
    Kill();
    auto run = std::make_unique<Run>(window, message);
    if (!run->start(command, error))
        return 0;
    run_ = std::move(run);
    return 1;
}

int CProcess::IsRunning() const { return run_ && run_->isRunning(); }
int CProcess::GetId() const { return run_ ? run_->id() : -1; }

void CProcess::Terminate(int milliseconds)
{
    if (IsRunning())
        run_->terminate(milliseconds);
}

void CProcess::Kill()
{
    if (!run_)
        return;
    run_->end();
    run_.reset();
}

long long ProcessStartTime(int process)
{
    char path[64];
    (void)std::snprintf(path, sizeof path, "/proc/%d/stat", process);
    std::FILE* const file = std::fopen(path, "r");
    if (!file)
        return 0;
    char text[1024] = "";
    const std::size_t count = std::fread(text, 1, sizeof text - 1, file);
    (void)std::fclose(file);
    // the second field is a name in brackets, in which anything may stand; the time is field 22
    const std::string all(text, count);
    std::size_t at = all.rfind(')');
    for (int field = 2; field < 22 && at != std::string::npos; ++field)
        at = all.find(' ', at + 1);
    return at == std::string::npos ? 0 : std::strtoll(all.c_str() + at, nullptr, 10);
}

}  // namespace pavane
