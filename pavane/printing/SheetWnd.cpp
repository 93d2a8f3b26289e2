#include "pavane/printing/SheetWnd.h"

#include "platform/CDC.h"
#include "platform/system_colors.h"
#include "tessel/rounding.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int air = 6;
constexpr int shadow = 3;
constexpr COLORREF shadowColor = RGB(64, 64, 64);
constexpr COLORREF marginColor = RGB(128, 128, 128);
constexpr COLORREF lineColor = RGB(208, 208, 208);
constexpr int lineGap = 4;

}  // namespace

void SheetWnd::show(const CSize& sheet, const CRect& margins)
{
    if (sheet == sheet_ && margins == margins_)
        return;
    sheet_ = sheet;
    margins_ = margins;
    Invalidate();
}

void SheetWnd::DrawWindow(CDC& dc, CRect& client, CRect&)
{
    dc.FillSolidRect(client, GetSysColor(COLOR_BTNSHADOW));
    if (sheet_.cx < 1 || sheet_.cy < 1)
        return;
    const double scale = std::min((client.Width() - 2.0 * air) / sheet_.cx,
                                  (client.Height() - 2.0 * air) / sheet_.cy);
    const auto scaled = [&](int length) { return truncated(std::max(length, 0) * scale + 0.5); };
    const CSize size = {std::max(scaled(sheet_.cx), 1), std::max(scaled(sheet_.cy), 1)};
    const CPoint corner((client.Width() - size.cx) / 2, (client.Height() - size.cy) / 2);
    CRect sheet(corner.x, corner.y, corner.x + size.cx, corner.y + size.cy);
    CRect below = sheet;
    below.OffsetRect(shadow, shadow);
    dc.FillSolidRect(below, shadowColor);
    dc.FillSolidRect(sheet, RGB(255, 255, 255));
    const CBrush black(RGB(0, 0, 0));
    dc.FrameRect(sheet, &black);
    const CRect inside(sheet.left + scaled(margins_.left), sheet.top + scaled(margins_.top),
                       sheet.right - scaled(margins_.right),
                       sheet.bottom - scaled(margins_.bottom));
    if (inside.IsRectEmpty())
        return;
    for (int y = inside.top + lineGap; y < inside.bottom - 1; y += lineGap)
        dc.FillSolidRect({inside.left + 2, y, inside.right - 2, y + 1}, lineColor);
    CPen dashed(PS_DOT, 1, marginColor);
    dc.SelectObject(&dashed);
    dc.SetBkMode(TRANSPARENT);
    dc.SelectStockObject(NULL_BRUSH);
    dc.Rectangle(inside);
}

}  // namespace pavane
