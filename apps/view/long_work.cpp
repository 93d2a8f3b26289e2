#include "apps/view/long_work.h"

#include "pavane/windows/controls/AProgressDlg.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <system_error>
#include <thread>

namespace pavane
{

int doLongWork(CWnd* owner, const CString& name, const std::function<int(AProgressWriter&)>& work)
{
    AProgress progress;
    const auto run = [&work](AProgressWriter writer) {
        if (work(writer) || !writer.IsCancelled())
            (void)writer.Finish();
    };
    std::thread thread;
    try {
        thread = std::thread(run, AProgressWriter(progress));
    } catch (const std::system_error&) {
        run(AProgressWriter(progress));  // no room for another thread
    }
    AProgressDlg dialog(owner);
    (void)dialog.Watch(progress, name);
    // what it works on is the caller's, so it is waited for in any case
    if (thread.joinable())
        thread.join();
    return progress.GetReport().state == ProgressState::finished;
}

ProgressFunction tellTo(AProgressWriter& writer)
{
    constexpr int pieces = 1000;
    writer.SetTotal(pieces);
    return [&writer, told = 0](double fraction) mutable {
        const int now = fraction >= 0 && fraction <= 1 ? truncated(fraction * pieces) : told;
        writer.Advance(now - told);
        told = std::max(told, now);
        return !writer.IsCancelled();
    };
}

}  // namespace pavane
