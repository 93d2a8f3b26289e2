#include "pavane/windows/controls/tip_timing.h"

namespace pavane
{

namespace
{

constexpr int grace = 250;      // to cross the gap between a tool and its tip
constexpr int quickDelay = 60;  // from one tip to the next
constexpr int soon = 400;       // a tip that was there just now

}  // namespace

int TipTiming::see(std::int64_t now, const Seen& seen)
{
    last_ = seen;
    if (seen.pointed != leftPointed_ && !seen.overTip)
        leftPointed_ = -1;
    if (seen.focused != leftFocused_)
        leftFocused_ = -1;
    int wanted = -1;
    if (seen.overTip && shown_ >= 0)
        wanted = shown_;
    else if (seen.pointed >= 0)
        wanted = seen.pointed == leftPointed_ ? -1 : seen.pointed;
    else if (seen.focused != leftFocused_)
        wanted = seen.focused;
    if (wanted != candidate_) {
        candidate_ = wanted;
        since_ = now;
    }
    if (wanted == shown_)
        return shown_;
    const bool isQuick = shown_ >= 0 || now - hidden_ < soon;
    const int wait = wanted < 0 ? grace : isQuick ? quickDelay : delay_;
    if (now - since_ >= wait) {
        shown_ = wanted;
        if (wanted < 0)
            hidden_ = now;
    }
    return shown_;
}

void TipTiming::dismiss()
{
    leftPointed_ = last_.pointed;
    leftFocused_ = last_.focused;
    shown_ = candidate_ = -1;
    hidden_ = -1000000;
}

}  // namespace pavane
