#include "pavane/windows/controls/AInfoText.h"

#include "pavane/windows/controls/control_drawing.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int margin = 3;
constexpr int wheelLines = 3;
constexpr int sideStep = 24;

/// Where a bar goes for what it asks.
int wanted(unsigned code, int asked, int now, int line, int page, int end)
{
    switch (code) {
    case SB_LINEUP:
        return now - line;
    case SB_LINEDOWN:
        return now + line;
    case SB_PAGEUP:
        return now - page;
    case SB_PAGEDOWN:
        return now + page;
    case SB_TOP:
        return 0;
    case SB_BOTTOM:
        return end;
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK:
        return asked;
    default:
        return now;
    }
}

}  // namespace

int AInfoText::Create(unsigned style, const CRect& rect, CWnd* parent, unsigned id,
                      const CString& name)
{
    name_ = name;
    return CWnd::Create(GetWndClassName(), "", style | WS_CHILD | WS_VSCROLL | WS_HSCROLL, rect,
                        parent, id);
}

const char* AInfoText::GetWndClassName() { return "AInfoText"; }

int AInfoText::GetClassParms(WNDCLASSA& wc)
{
    if (!ABWindow::GetClassParms(wc))
        return 0;
    wc.cursor = IDC_IBEAM;
    return 1;
}

int AInfoText::OnCreate(CREATESTRUCT& cs)
{
    SetFlag(windowBuffered | windowNoWaitCursor, 1);
    SetScrollRange(SB_VERT, 0, 0);
    SetScrollRange(SB_HORZ, 0, 0);
    return ABWindow::OnCreate(cs);
}

void AInfoText::SetText(const CString& text)
{
    lines_.clear();
    widest_ = 0;
    if (!text.empty())
        lines_.append(text);
    layOut();
    scrollTo(SB_VERT, 0);
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, GetSafeHwnd(), 0);
}

void AInfoText::Append(const CString& text)
{
    const int wasAtEnd = GetScrollPos(SB_VERT) + linesInView() >= lines_.count();
    const int before = lines_.count();
    lines_.append(text);
    layOut();
    if (wasAtEnd && before > 0)
        scrollTo(SB_VERT, lines_.count());
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, GetSafeHwnd(), 0);
}

void AInfoText::Clear() { SetText({}); }

void AInfoText::SetMostLines(int lines)
{
    lines_.setMost(lines);
    layOut();
}

void AInfoText::SetColumn(int units)
{
    column_ = units;
    widest_ = 0;
    layOut();
}

int AInfoText::lineHeight() const
{
    CClientDC dc(const_cast<AInfoText*>(this));
    const ControlFont font(dc, *this);
    TEXTMETRIC metrics;
    dc.GetTextMetrics(metrics);
    return std::max(1, metrics.tmHeight + 1);
}

int AInfoText::linesInView() const
{
    CRect client;
    GetClientRect(client);
    return GetSafeHwnd() ? std::max(1, (client.Height() - 2 * margin) / lineHeight()) : 1;
}

/// Measuring every line of a long log would take longer than reading it.
int AInfoText::widestInView() const
{
    CClientDC dc(const_cast<AInfoText*>(this));
    const ControlFont font(dc, *this);
    int width = 0;
    const int first = GetScrollPos(SB_VERT);
    for (int i = first; i <= first + linesInView() && i < lines_.count(); ++i)
        width = std::max(width, placeInLine(dc, lines_.line(i),
                                            static_cast<int>(lines_.line(i).size()), column_));
    return width;
}

void AInfoText::layOut()
{
    if (!GetSafeHwnd())
        return;
    const HWND self = GetSafeHwnd();
    widest_ = std::max(widest_, widestInView());
    CRect client;
    GetClientRect(client);
    const int room = std::max(1, client.Width() - 2 * margin);
    const int lines = linesInView();
    SetScrollRange(SB_HORZ, 0, std::max(0, widest_ - room), room);
    if (FromHandle(self) == this)
        SetScrollRange(SB_VERT, 0, std::max(0, lines_.count() - lines), lines);
    if (FromHandle(self) == this)
        Invalidate();
}

void AInfoText::scrollTo(int bar, int position)
{
    int min = 0, max = 0;
    if (!GetSafeHwnd() || !GetScrollRange(bar, min, max))
        return;
    SetScrollPos(bar, std::clamp(position, min, max));
    // lines that come into view may be wider
    if (bar == SB_VERT && widestInView() > widest_)
        layOut();
    Invalidate();
}

void AInfoText::OnSize(unsigned type, int cx, int cy)
{
    const HWND self = GetSafeHwnd();
    ABWindow::OnSize(type, cx, cy);
    if (FromHandle(self) != this)
        return;
    layOut();
    if (FromHandle(self) == this)
        placeFind();
}

void AInfoText::OnVScroll(unsigned code, unsigned position)
{
    scrollTo(SB_VERT, wanted(code, static_cast<int>(position), GetScrollPos(SB_VERT), 1,
                             linesInView(), lines_.count()));
}

void AInfoText::OnHScroll(unsigned code, unsigned position)
{
    CRect client;
    GetClientRect(client);
    scrollTo(SB_HORZ, wanted(code, static_cast<int>(position), GetScrollPos(SB_HORZ), sideStep,
                             client.Width(), widest_));
}

int AInfoText::OnMouseWheel(unsigned, int delta, CPoint)
{
    int min = 0, max = 0;
    if (!GetScrollRange(SB_VERT, min, max) || max == 0)
        return 0;
    scrollTo(SB_VERT, GetScrollPos(SB_VERT) - delta * wheelLines / WHEEL_DELTA);
    return 1;
}

void AInfoText::DrawWindow(CDC& dc, CRect& client, CRect&)
{
    dc.FillSolidRect(client, GetSysColor(COLOR_WINDOW));
    const ControlFont font(dc, *this);
    const int height = lineHeight();
    const COLORREF color = GetSysColor(IsWindowEnabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
    const int first = GetScrollPos(SB_VERT);
    const int left = client.left + margin - GetScrollPos(SB_HORZ);
    for (int i = first, top = client.top + margin; i < lines_.count() && top < client.bottom;
         ++i, top += height) {
        int from = 0, to = 0;
        (void)lines_.selectedPart(i, from, to);
        drawSelectedText(dc, {left, top}, height, lines_.line(i), from, to, color, column_);
    }
}

void AInfoText::ServiceDraw(CDC& dc, CRect& client, CRect&)
{
    if (GetFocus() != this)
        return;
    dc.SetTextColor(GetSysColor(COLOR_WINDOWTEXT));
    dc.DrawFocusRect(client);
}

int AInfoText::GetAccessPart(AccessId id, AccessPart& part) const
{
    if (id != 0)
        return 0;
    part = {};
    part.role = ROLE_SYSTEM_TEXT;
    part.name = name_;
    part.value = lines_.hasSelection() ? lines_.selectedText() : lines_.text();
    part.state = STATE_SYSTEM_READONLY | (GetStyle() & WS_TABSTOP ? STATE_SYSTEM_FOCUSABLE : 0);
    GetClientRect(part.rect);
    return 1;
}

int AInfoText::AccessSetFocus(AccessId id)
{
    if (id == 0)
        SetFocus();
    return id == 0;
}

}  // namespace pavane
