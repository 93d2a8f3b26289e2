#include "apps/view/several/MapPane.h"

#include "platform/system_colors.h"
#include "platform/window_dc.h"

namespace pavane
{

namespace
{

constexpr unsigned idMap = 1, idBar = 2;
constexpr int keyStep = 10;     // pixels
constexpr int farAway = 32000;  // to an end, whatever the width

}  // namespace

void SliderBar::DrawWindow(CDC& dc, CRect& client, CRect& update)
{
    const int hasFocus = GetFocus() == this;
    dc.FillSolidRect(update, GetSysColor(hasFocus ? COLOR_HIGHLIGHT : COLOR_BTNSHADOW));
    dc.FillSolidRect(CRect(1, 0, client.right - 1, client.bottom), GetSysColor(COLOR_BTNFACE));
    // a grip where the eye looks for one
    constexpr int gripHeight = 40;
    const int middle = client.bottom / 2;
    dc.FillSolidRect(CRect(3, middle - gripHeight / 2, 4, middle + gripHeight / 2),
                     GetSysColor(hasFocus ? COLOR_HIGHLIGHT : COLOR_BTNTEXT));
}

void SliderBar::OnLButtonDown(unsigned flags, CPoint point)
{
    ABWindow::OnLButtonDown(flags, point);
    grip_ = point.x;
}

void SliderBar::OnMouseMove(unsigned flags, CPoint point)
{
    ABWindow::OnMouseMove(flags, point);
    if (GetCapture() == this && moved && point.x != grip_)
        moved(point.x - grip_);
}

void SliderBar::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const auto pressed = static_cast<int>(key);
    const int way = pressed == VK_LEFT    ? -keyStep
                    : pressed == VK_RIGHT ? keyStep
                    : pressed == VK_HOME  ? -farAway
                    : pressed == VK_END   ? farAway
                                          : 0;
    if (way && moved)
        return moved(way);
    if (pressed == VK_ESCAPE && left)
        return left();
    ABWindow::OnKeyDown(key, repeat, flags);
}

int SliderBar::OnSetCursor(CWnd* /*window*/, unsigned /*hitArea*/, unsigned /*message*/)
{
    SetCursor(IDC_SIZEWE);
    return 1;
}

void SliderBar::OnSetFocus(CWnd* old)
{
    ABWindow::OnSetFocus(old);
    Invalidate();
}

void SliderBar::OnKillFocus(CWnd* next)
{
    ABWindow::OnKillFocus(next);
    Invalidate();
}

int MapPane::Create(CWnd* parent, ABWindow& map, unsigned id)
{
    for (ABWindow* const each : {static_cast<ABWindow*>(this), static_cast<ABWindow*>(&bar_)})
        each->SetFlag(windowNoWaitCursor, 1);
    map_ = &map;
    return CreateEx(0, GetWndClassName(), CString(), WS_CHILD | WS_VISIBLE, CRect(), parent, id) &&
           map.CWnd::Create(map.GetWndClassName(), CString(), WS_CHILD | WS_VISIBLE | WS_TABSTOP,
                            CRect(), this, idMap) &&
           bar_.CWnd::Create(bar_.GetWndClassName(), CString(), WS_CHILD | WS_TABSTOP, CRect(),
                             this, idBar);
}

void MapPane::Place(const CRect& whole, const CRect& seen, int hasBar)
{
    MoveWindow(seen);
    CRect at = whole;
    at.OffsetRect(-seen.left, -seen.top);
    map_->MoveWindow(at);
    bar_.MoveWindow(CRect(0, 0, SliderBar::width, seen.Height()));
    bar_.ShowWindow(hasBar ? SW_SHOW : SW_HIDE);
}

}  // namespace pavane
