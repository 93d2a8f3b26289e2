#include "platform/splitter.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr int barThickness = 6;
constexpr int keyStep = 8;

}  // namespace

int CSplitterWnd::Create(Split split, unsigned style, const CRect& rect, CWnd* parent, unsigned id)
{
    split_ = split;
    return CreateEx(0, "Splitter", CString(), style | WS_CHILD, rect, parent, id);
}

void CSplitterWnd::SetPanes(CWnd* first, CWnd* second)
{
    panes_[0] = first ? first->GetSafeHwnd() : 0;
    panes_[1] = second ? second->GetSafeHwnd() : 0;
    placePanes();
}

CWnd* CSplitterWnd::GetPane(int index) const
{
    return index == 0 || index == 1 ? FromHandle(panes_[index]) : nullptr;
}

void CSplitterWnd::ShowOnly(int pane)
{
    only_ = pane == 0 || pane == 1 ? pane : -1;
    placePanes();
}

int CSplitterWnd::room() const
{
    CRect client;
    GetClientRect(client);
    const int whole = split_ == Split::columns ? client.Width() : client.Height();
    return std::max(0, whole - barThickness);
}

int CSplitterWnd::GetSplit() const
{
    const int least = std::min(least_, room() / 2);
    return std::clamp(static_cast<int>(std::lround(share_ * room())), least, room() - least);
}

void CSplitterWnd::SetSplit(int pixels)
{
    if (room() > 0)
        SetShare(static_cast<double>(pixels) / room());
}

void CSplitterWnd::SetShare(double share)
{
    share_ = share >= 0 ? std::min(share, 1.0) : 0;  // no number is 0, too
    // what can be seen is what is kept
    if (const int pixels = GetSplit(); room() > 0 && std::lround(share_ * room()) != pixels)
        share_ = static_cast<double>(pixels) / room();
    placePanes();
}

void CSplitterWnd::SetLeastSize(int pixels)
{
    least_ = std::max(0, pixels);
    placePanes();
}

/// What lies between two places along the split.
CRect CSplitterWnd::part(int from, int to) const
{
    CRect client;
    GetClientRect(client);
    return split_ == Split::columns ? CRect(from, 0, to, client.bottom)
                                    : CRect(0, from, client.right, to);
}

CRect CSplitterWnd::GetBarRect() const
{
    const int at = GetSplit();
    return only_ < 0 && GetSafeHwnd() ? part(at, at + barThickness) : CRect();
}

void CSplitterWnd::placePanes()
{
    const HWND self = GetSafeHwnd();
    if (!self)
        return;
    const int at = GetSplit();
    const int end = room() + barThickness;
    const CRect places[2] = {part(0, at), part(at + barThickness, end)};
    for (int i = 0; i < 2; ++i) {
        CWnd* const pane = GetPane(i);
        if (!pane)
            continue;
        if (only_ >= 0 && only_ != i) {
            pane->ShowWindow(SW_HIDE);
        } else {
            const HWND handle = pane->GetSafeHwnd();
            pane->MoveWindow(only_ == i ? part(0, end) : places[i]);
            if (FromHandle(handle) == pane && !(pane->GetStyle() & WS_VISIBLE))
                pane->ShowWindow(SW_SHOW);
        }
        if (FromHandle(self) != this)
            return;
    }
    Invalidate();
}

void CSplitterWnd::OnPaint()
{
    CPaintDC dc(this);
    CRect client;
    GetClientRect(client);
    dc.FillSolidRect(client, GetSysColor(COLOR_BTNFACE));
    CRect bar = GetBarRect();
    if (bar.IsRectEmpty())
        return;
    // a short grip in the middle
    constexpr int gripLength = 24;
    const CPoint middle = bar.CenterPoint();
    const bool stands = split_ == Split::columns;
    CRect grip(middle.x, middle.y, middle.x, middle.y);
    grip.InflateRect(stands ? 1 : gripLength / 2, stands ? gripLength / 2 : 1);
    dc.FillSolidRect(grip, GetSysColor(COLOR_BTNSHADOW));
    if (GetFocus() == this)
        dc.DrawFocusRect(bar);
}

void CSplitterWnd::OnSize(unsigned, int, int) { placePanes(); }
void CSplitterWnd::OnSetFocus(CWnd*) { InvalidateRect(GetBarRect()); }
void CSplitterWnd::OnKillFocus(CWnd*) { InvalidateRect(GetBarRect()); }

void CSplitterWnd::tellOfMove()
{
    if (CWnd* const parent = GetParent())
        parent->SendMessage(WM_COMMAND, (GetDlgCtrlID() & 0xFFFF) | WPARAM{SPN_MOVED} << 16,
                            static_cast<LPARAM>(GetSafeHwnd()));
}

void CSplitterWnd::OnLButtonDown(unsigned, CPoint point)
{
    if (!GetBarRect().PtInRect(point))
        return;
    const HWND self = GetSafeHwnd();
    const double before = share_;
    const int offset = along(point) - GetSplit();
    const auto hasDrag = [&] { return FromHandle(self) == this && GetCapture() == this; };
    SetCapture();
    MSG m;
    while (GetMessage(m) && hasDrag()) {
        if (m.message == WM_LBUTTONUP) {
            ReleaseCapture();
            return tellOfMove();
        }
        if (m.message == WM_RBUTTONDOWN || m.message == WM_CANCELMODE ||
            (m.message == WM_KEYDOWN && m.wParam == WPARAM{VK_ESCAPE})) {
            ReleaseCapture();
            break;
        }
        if (m.message == WM_MOUSEMOVE) {
            SetSplit(along({GET_X_LPARAM(m.lParam), GET_Y_LPARAM(m.lParam)}) - offset);
            if (hasDrag())
                UpdateWindow();
        } else {
            DispatchMessage(m);
        }
        if (!hasDrag())
            break;
    }
    if (FromHandle(self) == this)
        SetShare(before);
}

void CSplitterWnd::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const auto is = [&](int one, int other) {
        return key == static_cast<unsigned>(split_ == Split::columns ? one : other);
    };
    const int at = GetSplit();
    const int wanted = is(VK_LEFT, VK_UP)      ? at - keyStep
                       : is(VK_RIGHT, VK_DOWN) ? at + keyStep
                       : is(VK_HOME, VK_HOME)  ? 0
                       : is(VK_END, VK_END)    ? room()
                                               : -1;
    if (only_ >= 0 || (wanted < 0 && !is(VK_LEFT, VK_UP)))
        return CWnd::OnKeyDown(key, repeat, flags);
    const HWND self = GetSafeHwnd();
    SetSplit(wanted);
    if (FromHandle(self) == this && GetSplit() != at)
        tellOfMove();
}

int CSplitterWnd::OnSetCursor(CWnd* window, unsigned hitArea, unsigned message)
{
    CPoint point = GetCursorPos();
    ScreenToClient(point);
    if (!GetBarRect().PtInRect(point))
        return CWnd::OnSetCursor(window, hitArea, message);
    SetCursor(split_ == Split::columns ? IDC_SIZEWE : IDC_SIZENS);
    return 1;
}

}  // namespace pavane
