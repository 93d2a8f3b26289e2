#include "pavane/windows/controls/AStaticText.h"

#include "pavane/resources/control_messages.h"
#include "pavane/windows/controls/control_drawing.h"
#include "pavane/windows/controls/control_texts.h"
#include "platform/clipboard.h"
#include "platform/CMenu.h"
#include "platform/dialog_ground.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int margin = 2;
enum Command : unsigned { commandCopy = 1, commandCopyAll, commandSelectAll };

int sizeOf(const CString& text) { return static_cast<int>(text.size()); }

}  // namespace

int AStaticText::Create(const CString& text, unsigned style, const CRect& rect, CWnd* parent,
                        unsigned id)
{
    if (!CWnd::Create(GetWndClassName(), "", style | WS_CHILD, rect, parent, id))
        return 0;
    SetText(text);
    return 1;
}

const char* AStaticText::GetWndClassName() { return "AStaticText"; }

int AStaticText::GetClassParms(WNDCLASSA& wc)
{
    if (!ABWindow::GetClassParms(wc))
        return 0;
    wc.cursor = IDC_IBEAM;
    return 1;
}

int AStaticText::OnCreate(CREATESTRUCT& cs)
{
    SetFlag(windowBuffered | windowNoWaitCursor, 1);
    return ABWindow::OnCreate(cs);
}

void AStaticText::SetText(const CString& text)
{
    CString line = text;
    std::replace(line.begin(), line.end(), '\n', ' ');
    if (lines_.count() == 1 && line == GetText())
        return;
    lines_.clear();
    lines_.append(line);
    if (!GetSafeHwnd())
        return;
    Invalidate();
    NotifyWinEvent(name_.empty() ? EVENT_OBJECT_NAMECHANGE : EVENT_OBJECT_VALUECHANGE,
                   GetSafeHwnd(), 0);
}

void AStaticText::SetValue(double value, const CString& unit, int digits)
{
    SetText(valueWithUnit(value, unit, digits));
}

int AStaticText::IsCut() const
{
    if (!GetSafeHwnd())
        return 0;
    CRect client;
    GetClientRect(client);
    CClientDC dc(const_cast<AStaticText*>(this));
    const ControlFont font(dc, *this);
    return widthOfText(dc, GetText(), 0, sizeOf(GetText())) > client.Width() - 2 * margin;
}

CString AStaticText::OnToolTip(CPoint) { return IsCut() ? GetText() : CString(); }

/// Where the text begins: to the left of the window when its caret would not be seen else.
int AStaticText::left(const CDC& dc) const
{
    CRect client;
    GetClientRect(client);
    const int room = client.Width() - 2 * margin;
    if (GetFocus() != this || widthOfText(dc, GetText(), 0, sizeOf(GetText())) <= room)
        return margin;
    return margin - std::max(0, widthOfText(dc, GetText(), 0, lines_.caret().at) - room);
}

void AStaticText::DrawWindow(CDC& dc, CRect& client, CRect&)
{
    dc.FillSolidRect(client, onDialog_ ? GetDialogGround() : controlGround(*this));
    const ControlFont font(dc, *this);
    TEXTMETRIC metrics;
    dc.GetTextMetrics(metrics);
    const COLORREF color = GetSysColor(IsWindowEnabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
    int from = 0, to = 0;
    const int isChosen = lines_.selectedPart(0, from, to);
    if (!isChosen && GetFocus() != this) {
        CRect place = client;
        place.DeflateRect(margin, 0);
        dc.SetTextColor(color);
        dc.DrawText(GetText(), place,
                    DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
        return;
    }
    const int top = client.top + (client.Height() - metrics.tmHeight) / 2;
    drawSelectedText(dc, {left(dc), top}, metrics.tmHeight, GetText(), from, isChosen ? to : 0,
                     color);
}

void AStaticText::ServiceDraw(CDC& dc, CRect& client, CRect&)
{
    if (GetFocus() != this)
        return;
    dc.SetTextColor(GetSysColor(COLOR_WINDOWTEXT));
    dc.DrawFocusRect(client);
}

int AStaticText::atPoint(CPoint point)
{
    CClientDC dc(this);
    const ControlFont font(dc, *this);
    return byteAt(dc, GetText(), point.x - left(dc));
}

void AStaticText::select(int at, int keeps)
{
    lines_.setCaret({0, at}, keeps);
    Invalidate();
}

void AStaticText::OnLButtonDown(unsigned flags, CPoint point)
{
    const int at = atPoint(point);  // as it stands before the focus may shift it
    const HWND self = GetSafeHwnd();
    ABWindow::OnLButtonDown(flags, point);
    if (FromHandle(self) == this)
        select(at, flags & MK_SHIFT ? 1 : 0);
}

void AStaticText::OnMouseMove(unsigned flags, CPoint point)
{
    if (IsFlagSet(windowHoldsCapture))
        select(atPoint(point), 1);
    ABWindow::OnMouseMove(flags, point);
}

void AStaticText::OnLButtonDblClk(unsigned, CPoint)
{
    lines_.selectAll();
    Invalidate();
}

void AStaticText::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const int isControl = GetKeyState(VK_CONTROL) < 0;
    const int keeps = GetKeyState(VK_SHIFT) < 0;
    const TextPlace caret = lines_.caret();
    switch (key) {
    case VK_LEFT:
        return select(lines_.byCharacters(caret, -1).at, keeps);
    case VK_RIGHT:
        return select(lines_.byCharacters(caret, 1).at, keeps);
    case VK_HOME:
        return select(0, keeps);
    case VK_END:
        return select(sizeOf(GetText()), keeps);
    case 'A':
        if (isControl)
            return lines_.selectAll(), Invalidate();
        break;
    case 'C':
    case VK_INSERT:
        if (isControl)
            return copy(0);
        break;
    default:
        break;
    }
    ABWindow::OnKeyDown(key, repeat, flags);
}

/// Without a selection all of it: nobody wants an empty clipboard.
void AStaticText::copy(int all)
{
    const CString chosen = GetSelectedText();
    (void)SetClipboardText(all || chosen.empty() ? GetText() : chosen);
}

void AStaticText::OnContextMenu(CWnd*, CPoint screen)
{
    if (screen.x == -1 && screen.y == -1) {
        screen = {margin, margin};
        ClientToScreen(screen);
    }
    CMenu menu;
    menu.AppendMenu(copyText, commandCopy);
    menu.AppendMenu(copyAllText, commandCopyAll);
    menu.AppendMenu(selectAllText, commandSelectAll);
    const HWND self = GetSafeHwnd();
    const int chosen = menu.TrackPopupMenu(TPM_RIGHTBUTTON | TPM_RETURNCMD, screen, this);
    if (FromHandle(self) != this || chosen == 0)
        return;
    if (chosen == static_cast<int>(commandSelectAll))
        lines_.selectAll(), Invalidate();
    else
        copy(chosen == static_cast<int>(commandCopyAll));
}

void AStaticText::OnSetFocus(CWnd* old)
{
    Invalidate();
    ABWindow::OnSetFocus(old);
}

void AStaticText::OnKillFocus(CWnd* next)
{
    Invalidate();
    ABWindow::OnKillFocus(next);
}

int AStaticText::GetAccessPart(AccessId id, AccessPart& part) const
{
    if (id != 0)
        return 0;
    part = {};
    part.role = ROLE_SYSTEM_STATICTEXT;
    part.name = name_.empty() ? GetText() : name_;
    part.value = GetText();
    part.state = STATE_SYSTEM_READONLY | (GetStyle() & WS_TABSTOP ? STATE_SYSTEM_FOCUSABLE : 0);
    GetClientRect(part.rect);
    return 1;
}

int AStaticText::AccessSetFocus(AccessId id)
{
    if (id == 0)
        SetFocus();
    return id == 0;
}

}  // namespace pavane
