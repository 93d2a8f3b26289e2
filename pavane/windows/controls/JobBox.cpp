#include "pavane/windows/controls/JobBox.h"

#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int pieces = 1 << 20;

}  // namespace

JobBox::JobBox(CWnd* window, const CString& what, int alone) : dialog_(window)
{
    dialog_.SetAlone(alone);
    dialog_.Follow(progress_, what);
}

JobBox::~JobBox() = default;

int JobBox::show(double fraction)
{
    const std::int64_t now = fraction >= 0 && fraction <= 1 ? truncated(fraction * pieces) : -1;
    if (shown_ < 0 && now >= 0)
        writer_.SetTotal(pieces);
    writer_.Advance(now - std::max<std::int64_t>(shown_, 0));
    shown_ = std::max(shown_, now);
    return dialog_.Look();
}

}  // namespace pavane
