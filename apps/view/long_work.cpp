#include "apps/view/long_work.h"

#include "pavane/progress/AProgress.h"
#include "pavane/windows/controls/AProgressDlg.h"
#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

int doLongWork(CWnd* owner, const CString& name,
               const std::function<int(const ProgressFunction&)>& work)
{
    constexpr int pieces = 1000;
    const AProgress progress;
    AProgressWriter writer(progress);
    writer.SetTotal(pieces);
    AProgressDlg dialog(owner);
    dialog.Follow(progress, name);
    int told = 0;
    const ProgressFunction tell = [&](double fraction) {
        const int now = fraction >= 0 && fraction <= 1 ? truncated(fraction * pieces) : told;
        writer.Advance(now - told);
        told = std::max(told, now);
        return dialog.Look() && !writer.IsCancelled();
    };
    if (work(tell) || !writer.IsCancelled())
        (void)writer.Finish();
    return progress.GetReport().state == ProgressState::finished;
}

}  // namespace pavane
