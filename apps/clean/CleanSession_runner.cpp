#include "apps/clean/CleanSession_parts.h"
#include "apps/clean/job_text.h"
#include "pavane/imaging/StudyJob.h"

#include <utility>

namespace pavane
{

namespace
{

constexpr unsigned newsMessage = WM_USER + 17;

}  // namespace

void CleanSession::Runner::OnTimer(unsigned id)
{
    if (id == advanceTimer) {
        KillTimer(advanceTimer);
        isAdvancing_ = 0;
        if (!process_.IsRunning())
            next();
        return;
    }
    if (id != lookTimer)
        return CWnd::OnTimer(id);
    if (!process_.IsRunning())
        KillTimer(lookTimer);
    else if (!heard_.empty() ||
             std::chrono::steady_clock::now() - lastReport_ > std::chrono::seconds(1))
        report();
}

LRESULT CleanSession::Runner::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (message != newsMessage)
        return CWnd::WindowProc(message, wParam, lParam);
    hear(*reinterpret_cast<const ProcessNews*>(lParam));  // NOLINT: a pointer in it
    return 0;
}

void CleanSession::Runner::next()
{
    if (session_.calibration_) {
        std::string error;
        if (session_.solve(error))
            return Advance();
        return session_.calibrated(error);
    }
    if (session_.loading_) {
        if (session_.load())
            Advance();
        return;
    }
    if (session_.files_) {
        std::string error;
        if (session_.writeFiles(error))
            return Advance();
        return session_.filesWritten(error);
    }
    if (session_.export_) {
        std::string error;
        if (session_.writeData(error))
            return Advance();
        return session_.exported(error);
    }
    while (session_.job_) {
        JobCommand command;
        const JobTurn turn = session_.job_->next(command);
        if (turn == JobTurn::more)
            return Advance();
        if (turn != JobTurn::start) {
            const std::string fault =
                turn == JobTurn::failed ? faultText(*session_.job_) : std::string();
            return session_.jobEnded(turn == JobTurn::done, fault);
        }
        if (session_.said)
            session_.said("$ " + commandText(command.words));
        CString error;
        if (process_.Start({command.words, command.settings}, GetSafeHwnd(), newsMessage, error)) {
            session_.job_->started(process_.GetId(), ProcessStartTime(process_.GetId()));
            lastWord_ = std::chrono::steady_clock::now();
            heard_.clear();
            SetTimer(lookTimer, lookPause);
            return session_.tell();
        }
        session_.job_->ended(-1, command.words.front() + ": " + error);
    }
}

void CleanSession::Runner::hear(const ProcessNews& news)
{
    if (!session_.job_)
        return;
    lastWord_ = std::chrono::steady_clock::now();
    if (news.kind == ProcessNews::ended) {
        KillTimer(lookTimer);
        report();
        if (!session_.job_)
            return;
        session_.job_->ended(news.status);
        return Advance();
    }
    session_.job_->line(news.text, news.kind == ProcessNews::errorLine);
    heard_.append(heard_.empty() ? "" : "\n").append(news.text, 0, longestSaid);
    if (lastWord_ - lastReport_ > reportPause)
        report();
}

/// A program may write faster than anybody reads: not each line is told by itself.
void CleanSession::Runner::report()
{
    lastReport_ = std::chrono::steady_clock::now();
    std::string lines = std::exchange(heard_, {});
    if (!lines.empty() && session_.said)
        session_.said(lines);
    session_.tell();
}

}  // namespace pavane
