#include "pavane/windows/window_centre.h"

#include <algorithm>

namespace pavane
{

CRect centredRect(CSize size, const CRect& about, const std::vector<CRect>& screens)
{
    const CRect first = screens.empty() ? CRect(0, 0, size.cx, size.cy) : screens.front();
    const CRect around = about.IsRectEmpty() ? first : about;
    const CPoint middle((around.left + around.right) / 2, (around.top + around.bottom) / 2);
    const auto holds = std::find_if(screens.begin(), screens.end(),
                                    [&](const CRect& screen) { return screen.PtInRect(middle); });
    const CRect screen = holds == screens.end() ? first : *holds;
    const auto place = [](int at, int length, int low, int high) {
        return std::max(low, std::min(at - length / 2, high - length));
    };
    const int left = place(middle.x, size.cx, screen.left, screen.right);
    const int top = place(middle.y, size.cy, screen.top, screen.bottom);
    return {left, top, left + size.cx, top + size.cy};
}

}  // namespace pavane
