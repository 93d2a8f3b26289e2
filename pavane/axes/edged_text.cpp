#include "pavane/axes/edged_text.h"

#include "platform/CDC.h"

namespace pavane
{

void drawEdgedText(CDC& dc, CPoint at, const CString& text, int edge, COLORREF color,
                   COLORREF edgeColor)
{
    const int oldMode = dc.SetBkMode(TRANSPARENT);
    const COLORREF old = dc.SetTextColor(edgeColor);
    for (const int dx : {-edge, 0, edge})
        for (const int dy : {-edge, 0, edge})
            if (dx || dy)
                (void)dc.TextOut(at.x + dx, at.y + dy, text);
    (void)dc.SetTextColor(color);
    (void)dc.TextOut(at.x, at.y, text);
    (void)dc.SetTextColor(old);
    (void)dc.SetBkMode(oldMode);
}

}  // namespace pavane
