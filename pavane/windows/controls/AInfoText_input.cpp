#include "pavane/resources/control_messages.h"
#include "pavane/windows/controls/AInfoText.h"
#include "pavane/windows/controls/control_drawing.h"
#include "pavane/windows/controls/focus_chain.h"
#include "platform/clipboard.h"
#include "platform/CMenu.h"
#include "platform/message.h"
#include "platform/window_dc.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr int margin = 3;
constexpr int findWidth = 160;
constexpr int findHeight = 24;
constexpr unsigned findId = 1;
enum Command : unsigned { commandCopy = 1, commandSelectAll, commandFind, commandFindNext };

}  // namespace

TextPlace AInfoText::atPoint(CPoint point)
{
    CClientDC dc(this);
    const ControlFont font(dc, *this);
    const int height = lineHeight();
    const int below = point.y - margin;
    const int line = GetScrollPos(SB_VERT) + (below < 0 ? -1 : below / height);
    if (line < 0)
        return {};
    return {line, byteAt(dc, lines_.line(line), point.x - margin + GetScrollPos(SB_HORZ), column_)};
}

void AInfoText::place(TextPlace place, int keeps)
{
    lines_.setCaret(place, keeps);
    showCaret();
}

void AInfoText::showCaret()
{
    if (!GetSafeHwnd())
        return;
    const TextPlace caret = lines_.caret();
    const int lines = linesInView();
    const int first = GetScrollPos(SB_VERT);
    if (caret.line < first)
        scrollTo(SB_VERT, caret.line);
    else if (caret.line >= first + lines)
        scrollTo(SB_VERT, caret.line - lines + 1);
    CClientDC dc(this);
    const ControlFont font(dc, *this);
    CRect client;
    GetClientRect(client);
    const int x = placeInLine(dc, lines_.line(caret.line), caret.at, column_);
    const int room = client.Width() - 2 * margin;
    const int left = GetScrollPos(SB_HORZ);
    if (x < left)
        scrollTo(SB_HORZ, x);
    else if (x > left + room)
        scrollTo(SB_HORZ, x - room);
    Invalidate();
}

void AInfoText::OnLButtonDown(unsigned flags, CPoint point)
{
    const HWND self = GetSafeHwnd();
    ABWindow::OnLButtonDown(flags, point);
    if (FromHandle(self) == this)
        place(atPoint(point), flags & MK_SHIFT ? 1 : 0);
}

void AInfoText::OnMouseMove(unsigned flags, CPoint point)
{
    if (IsFlagSet(windowHoldsCapture))
        place(atPoint(point), 1);
    ABWindow::OnMouseMove(flags, point);
}

/// The whole line.
void AInfoText::OnLButtonDblClk(unsigned, CPoint point)
{
    const int line = atPoint(point).line;
    lines_.setCaret({line, 0}, 0);
    lines_.setCaret({line, static_cast<int>(lines_.line(line).size())}, 1);
    Invalidate();
}

/// Return, Escape and Tab are those of a dialog that shows the text.
unsigned AInfoText::OnGetDlgCode() { return DLGC_WANTARROWS | DLGC_WANTCHARS; }

void AInfoText::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const int isControl = GetKeyState(VK_CONTROL) < 0;
    const int keeps = GetKeyState(VK_SHIFT) < 0;
    const TextPlace caret = lines_.caret();
    const int endOfLine = static_cast<int>(lines_.line(caret.line).size());
    switch (key) {
    case VK_LEFT:
        return place(lines_.byCharacters(caret, -1), keeps);
    case VK_RIGHT:
        return place(lines_.byCharacters(caret, 1), keeps);
    case VK_UP:
        return place(lines_.byLines(caret, -1), keeps);
    case VK_DOWN:
        return place(lines_.byLines(caret, 1), keeps);
    case VK_PRIOR:
        return place(lines_.byLines(caret, -linesInView()), keeps);
    case VK_NEXT:
        return place(lines_.byLines(caret, linesInView()), keeps);
    case VK_HOME:
        return place({isControl ? 0 : caret.line, 0}, keeps);
    case VK_END:
        return place(isControl ? TextPlace{lines_.count(), 0} : TextPlace{caret.line, endOfLine},
                     keeps);
    case VK_TAB:
        if (passFocus(*this, keeps))
            return;  // whoever gets it may do anything
        break;
    case VK_F3:
        return (void)Find(find_.GetWindowText(), keeps ? -1 : 1);
    case VK_INSERT:
        if (isControl)
            return (void)Copy();
        break;
    case 'A':
    case 'C':
    case 'F':
        if (!isControl)
            break;
        if (key == 'A')
            lines_.selectAll(), Invalidate();
        else if (key == 'C')
            (void)Copy();
        else
            AskFind();
        return;
    default:
        break;
    }
    ABWindow::OnKeyDown(key, repeat, flags);
}

int AInfoText::Copy() const
{
    return SetClipboardText(lines_.hasSelection() ? lines_.selectedText() : lines_.text());
}

int AInfoText::Find(const CString& piece, int step)
{
    if (!lines_.find(piece, step))
        return 0;
    showCaret();
    NotifyWinEvent(EVENT_OBJECT_VALUECHANGE, GetSafeHwnd(), 0);
    return 1;
}

void AInfoText::AskFind()
{
    if (!find_.GetSafeHwnd()) {
        if (!find_.Create(WS_CHILD | WS_BORDER | WS_TABSTOP, CRect(), this, findId))
            return;
        SetAccessName(find_.GetSafeHwnd(), findName);
    }
    placeFind();
    find_.ShowWindow(SW_SHOW);
    find_.SetSel(0, -1);
    find_.SetFocus();
}

/// In the upper right corner, where the fewest lines reach to.
void AInfoText::placeFind()
{
    if (!find_.GetSafeHwnd())
        return;
    CRect client;
    GetClientRect(client);
    const int width = std::min(findWidth, client.Width());
    find_.MoveWindow({client.right - width, client.top, client.right, client.top + findHeight});
}

void AInfoText::closeFind()
{
    find_.ShowWindow(SW_HIDE);
    SetFocus();
}

int AInfoText::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (control != &find_ || id != findId)
        return ABWindow::OnCommand(id, code, control);
    if (code == EN_CHANGE)
        (void)Find(find_.GetWindowText(), 0);
    return 1;
}

unsigned AInfoText::FindEdit::OnGetDlgCode() { return DLGC_WANTALLKEYS | DLGC_WANTCHARS; }

void AInfoText::FindEdit::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    auto* const text = static_cast<AInfoText*>(GetParent());
    if (key == VK_ESCAPE)
        return text->closeFind();
    if (key == VK_TAB)
        return (void)text->SetFocus();
    if (key == VK_RETURN || key == VK_F3)
        return (void)text->Find(GetWindowText(), GetKeyState(VK_SHIFT) < 0 ? -1 : 1);
    CEdit::OnKeyDown(key, repeat, flags);
}

void AInfoText::OnContextMenu(CWnd*, CPoint screen)
{
    if (screen.x == -1 && screen.y == -1) {
        screen = {margin, margin};
        ClientToScreen(screen);
    }
    CMenu menu;
    menu.AppendMenu(copyText, commandCopy);
    menu.AppendMenu(selectAllText, commandSelectAll);
    menu.AppendSeparator();
    menu.AppendMenu(findTextItem, commandFind);
    menu.AppendMenu(findNextItem, commandFindNext);
    const HWND self = GetSafeHwnd();
    const int chosen = menu.TrackPopupMenu(TPM_RIGHTBUTTON | TPM_RETURNCMD, screen, this);
    if (FromHandle(self) != this)
        return;
    switch (static_cast<unsigned>(chosen)) {
    case commandCopy:
        return (void)Copy();
    case commandSelectAll:
        return lines_.selectAll(), Invalidate();
    case commandFind:
        return AskFind();
    case commandFindNext:
        return (void)Find(find_.GetWindowText(), 1);
    default:
        return;
    }
}

void AInfoText::OnSetFocus(CWnd* old)
{
    Invalidate();
    ABWindow::OnSetFocus(old);
}

void AInfoText::OnKillFocus(CWnd* next)
{
    Invalidate();
    ABWindow::OnKillFocus(next);
}

}  // namespace pavane
