#include "pavane/windows/controls/ProgressJob.h"

#include "pavane/resources/progress_messages.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <string>

namespace pavane
{

namespace
{

constexpr std::size_t mostSaid = 500;
/// The time left is told anew so often, in seconds: faster cannot be read.
constexpr double leftPause = 1;

/// Texts of hosts in a list of one line each.
CString oneLine(CString text)
{
    for (char& c : text)
        c = (c >= 0 && c < ' ') || c == '\x7f' ? ' ' : c;
    return text;
}

}  // namespace

void ProgressJob::update(Clock::time_point now)
{
    report = progress.GetReport();
    for (ProgressText& one : progress.GetTexts(saidCount))
        said.push_back({one.seconds, oneLine(std::move(one.text))});
    if (said.size() > mostSaid)
        said.erase(said.begin(), said.end() - mostSaid);
    seconds_ = std::chrono::duration<double>(now - begin).count();
    left_.add(seconds_, report.fraction);
    if (leftAt_ >= 0 && seconds_ - leftAt_ < leftPause)
        return;
    leftText_ = timeLeftText(left_.seconds());
    leftAt_ = leftText_.empty() ? -1 : seconds_;
}

CString ProgressJob::text() const
{
    const CString what = oneLine(report.text);
    return what.empty() || what == name ? name : name + ": " + what;
}

CString ProgressJob::stateText() const
{
    switch (report.state) {
    case ProgressState::finished:
        return jobIsDone;
    case ProgressState::stopped:
        return jobHasStopped;
    case ProgressState::failed:
        return jobHasFailed;
    case ProgressState::running:
        break;
    }
    if (progress.IsCancelled())
        return jobIsStopping;
    if (report.fraction < 0)
        return std::to_string(truncated(seconds_)) + secondsSoFar;
    const CString percent = std::to_string(truncated(report.fraction * 100)) + " %";
    return leftText_.empty() ? percent : percent + ", " + leftText_;
}

}  // namespace pavane
