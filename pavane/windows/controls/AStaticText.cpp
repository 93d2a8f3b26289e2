#include "pavane/windows/controls/AStaticText.h"

#include "pavane/resources/control_messages.h"
#include "pavane/windows/controls/control_drawing.h"
#include "pavane/windows/controls/control_texts.h"
#include "pavane/windows/controls/focus_chain.h"
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
constexpr const char* cutDots = "...";
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

/// What is longer than the window ends, and begins, with dots, and stands so that the caret is seen
/// between them.
AStaticText::Piece AStaticText::seenPiece(const CDC& dc) const
{
    CRect client;
    GetClientRect(client);
    const CString text = GetText();
    const int room = client.Width() - 2 * margin;
    const int over = widthOfText(dc, text, 0, sizeOf(text)) - room;
    if (over <= 0)
        return {margin, 0, sizeOf(text)};
    const int dots = dc.GetTextExtent(cutDots).cx;
    const int caret = GetFocus() == this ? widthOfText(dc, text, 0, lines_.caret().at) : 0;
    const int shift = std::clamp(caret - (room - dots), 0, over);
    Piece piece{margin - shift, 0, sizeOf(text)};
    while (shift > 0 && piece.from < piece.to &&
           widthOfText(dc, text, 0, piece.from) < shift + dots)
        piece.from = nextCharacter(text, piece.from);
    while (shift < over && piece.to > piece.from &&
           widthOfText(dc, text, 0, piece.to) > shift + room - dots)
        piece.to = previousCharacter(text, piece.to);
    return piece;
}

void AStaticText::DrawWindow(CDC& dc, CRect& client, CRect&)
{
    dc.FillSolidRect(client, onDialog_ ? GetDialogGround() : controlGround(*this));
    const ControlFont font(dc, *this);
    TEXTMETRIC metrics;
    dc.GetTextMetrics(metrics);
    const COLORREF color = GetSysColor(IsWindowEnabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
    const CString text = GetText();
    int from = 0, to = 0;
    const int isChosen = lines_.selectedPart(0, from, to);
    const Piece piece = seenPiece(dc);
    const int top = client.top + (client.Height() - metrics.tmHeight) / 2;
    const int begin = piece.left + widthOfText(dc, text, 0, piece.from);
    const int end = piece.left + widthOfText(dc, text, 0, piece.to);
    dc.SetTextColor(color);
    if (piece.from > 0)
        dc.TextOut(begin - dc.GetTextExtent(cutDots).cx, top, cutDots);
    if (piece.to < sizeOf(text))
        dc.TextOut(end, top, cutDots);
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(CRect(begin, client.top, end, client.bottom));
    drawSelectedText(dc, {piece.left, top}, metrics.tmHeight, text, from, isChosen ? to : 0, color);
    dc.RestoreDC(saved);
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
    return byteAt(dc, GetText(), point.x - seenPiece(dc).left);
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

/// Return, Escape and Tab are those of a dialog that shows the text.
unsigned AStaticText::OnGetDlgCode() { return DLGC_WANTARROWS | DLGC_WANTCHARS; }

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
    case VK_TAB:
        if (passFocus(*this, keeps))
            return;  // whoever gets it may do anything
        break;
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
