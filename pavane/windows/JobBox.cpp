#include "pavane/windows/JobBox.h"

#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int pieces = 1 << 20;

}  // namespace

JobBox::JobBox(CWnd* window, const CString& what) : dialog_(window)
{
    writer_.SetTotal(pieces);
    dialog_.Follow(progress_, what);
}

JobBox::~JobBox() = default;

int JobBox::show(double fraction)
{
    const std::int64_t now = fraction >= 0 && fraction <= 1 ? truncated(fraction * pieces) : 0;
    writer_.Advance(now - shown_);
    shown_ = std::max(shown_, now);
    // without windows, or for the moments in which none is shown, nobody can give up
    return dialog_.Look();
}

}  // namespace pavane
