#include "pavane/axes/dialogs/stand_beside.h"

#include "platform/CDialog.h"
#include "platform/screens.h"

#include <algorithm>

namespace pavane
{

void standBeside(CDialog& dialog, const CWnd* window)
{
    const CWnd* frame = window;
    while (frame && frame->GetParent())
        frame = frame->GetParent();
    CRect shown, own;
    if (!frame)
        return;
    (void)frame->GetWindowRect(shown);
    (void)dialog.GetWindowRect(own);
    constexpr int gap = 12, caption = 32;
    for (const CRect& screen : GetScreenRects()) {
        if (!screen.PtInRect(shown.CenterPoint()))
            continue;
        const int width = own.Width(), lowest = screen.bottom - own.Height() - gap;
        const int right = shown.right + gap, left = shown.left - gap - width;
        const int fitsRight = right + width <= screen.right, fitsLeft = left >= screen.left;
        const int x = fitsRight ? right : fitsLeft ? left : screen.right - width - gap;
        const int y = fitsRight || fitsLeft ? std::min(shown.top, lowest) : lowest;
        const CPoint at(std::max(x, screen.left), std::max(y, screen.top + caption));
        (void)dialog.MoveWindow(CRect(at.x, at.y, at.x + width, at.y + own.Height()));
        return;
    }
}

}  // namespace pavane
