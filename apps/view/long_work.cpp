#include "apps/view/long_work.h"

#include "pavane/windows/AProgressDlg.h"

#include <system_error>
#include <thread>

namespace pavane
{

int doLongWork(CWnd* owner, const CString& name, const std::function<void(AProgressWriter&)>& work)
{
    AProgress progress;
    const auto run = [&work](AProgressWriter writer) {
        work(writer);
        if (!writer.IsCancelled())
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

}  // namespace pavane
