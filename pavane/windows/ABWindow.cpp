#include "pavane/windows/ABWindow.h"

#include "pavane/resources/window_messages.h"
#include "pavane/windows/library_resources.h"
#include "pavane/windows/picture_export.h"
#include "pavane/windows/selection_edges.h"
#include "platform/CDialog.h"
#include "platform/CMenu.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/window_dc.h"

#include <algorithm>
#include <cstdlib>

namespace pavane
{

int ABWindow::GetPages(CDC&) { return 1; }
CString ABWindow::GetSubscript() { return "Figure 1 ~C."; }
int ABWindow::GetMenuID() { return 0; }
void ABWindow::amMenuParse(CMenu*) {}
int ABWindow::GetAWindowType() { return 0; }
void ABWindow::DrawWindow(CDC&, CRect&, CRect&) {}
void ABWindow::PrintWindow(CDC& dc, CRect& rect, int) { DrawWindow(dc, rect, rect); }
void ABWindow::ServiceDraw(CDC&, CRect&, CRect&) {}
const char* ABWindow::GetWndClassName() { return "ABWindow"; }
void ABWindow::SetUpWindow() {}
int ABWindow::GetPrintPercent(CDC&) { return 100; }

int ABWindow::IsFlagSet(int mask) const { return (flags_ & mask) == mask; }
void ABWindow::SetFlag(int mask, int on) { flags_ = on ? flags_ | mask : flags_ & ~mask; }

int ABWindow::GetClassParms(WNDCLASSA& wc)
{
    wc.style = CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS;
    wc.cursor = IDC_ARROW;
    wc.className = GetWndClassName();
    return 1;
}

int ABWindow::PreCreateWindow(CREATESTRUCT& cs)
{
    AddLibraryResources();
    cs.className = GetWndClassName();
    WNDCLASSA wc;
    if (!GetClassInfo(cs.className, wc) && (!GetClassParms(wc) || !AfxRegisterClass(wc)))
        return 0;
    return CWnd::PreCreateWindow(cs);
}

int ABWindow::OnCreate(CREATESTRUCT& cs)
{
    if (CWnd::OnCreate(cs) == -1)
        return -1;
    SetUpWindow();
    return 0;
}

void ABWindow::OnPaint()
{
    const HWND self = GetSafeHwnd();
    const bool waits = !IsFlagSet(windowNoWaitCursor);
    if (waits)
        BeginWaitCursor();
    {
        CPaintDC dc(this);
        CRect client;
        GetClientRect(client);
        CRect update = dc.paintRect();
        if (IsFlagSet(windowBuffered))
            paintBuffered(dc, client, update);
        else
            DrawWindow(dc, client, update);
        // a message box while drawing lets anything happen
        if (CWnd::FromHandle(self) == this)
            ServiceDraw(dc, client, update);
    }
    if (waits)
        EndWaitCursor();
}

void ABWindow::paintBuffered(CDC& screen, CRect& client, CRect& update)
{
    CBitmap picture;
    if (!picture.CreateCompatibleBitmap(screen, client.Width(), client.Height()))
        return DrawWindow(screen, client, update);
    CMemoryDC memory(picture);
    DrawWindow(memory, client, update);
    screen.BitBlt(update.left, update.top, update.Width(), update.Height(), &memory, update.left,
                  update.top, SRCCOPY);
}

void ABWindow::ScrollWnd(ABWindow* window, int dx, int dy, CRect& rect)
{
    if (!window || rect.IsRectEmpty())
        return;
    // what is out of date would move along, and its new place would never be painted
    CRect stale;
    const HWND handle = window->GetSafeHwnd();
    if (window->GetUpdateRect(stale)) {
        window->UpdateWindow();
        if (FromHandle(handle) != window)
            return;
        if (window->GetUpdateRect(stale))
            window->InvalidateRect(rect);  // hidden windows paint later
    }
    CClientDC dc(window);
    // a shift by the whole rectangle or more leaves nothing to copy
    if (std::abs(static_cast<long long>(dx)) < rect.Width() &&
        std::abs(static_cast<long long>(dy)) < rect.Height())
        dc.ScrollDC(dx, dy, &rect, &rect, nullptr, nullptr);
    CRect strip = uncoveredStrip(rect, dx, dy);
    strip.IntersectRect(strip, rect);
    dc.IntersectClipRect(strip);
    CRect client;
    window->GetClientRect(client);
    window->DrawWindow(dc, client, strip);
}

int ABWindow::UpDateControl(const CString&, CWnd* dialog, unsigned controlId, unsigned style)
{
    if (!dialog || !dialog->IsDialog())
        return 0;
    SetFlag(windowReplaced, 1);
    const int made = static_cast<CDialog*>(dialog)->ReplaceControl(
        controlId, *this, GetWndClassName(), " ", style | WS_CHILD | WS_VISIBLE);
    if (!made)
        SetFlag(windowReplaced, 0);
    return made;
}

void ABWindow::OnLButtonDown(unsigned flags, CPoint point)
{
    if (!IsFlagSet(windowHoldsCapture))
        SetCapture();
    SetFlag(windowHoldsCapture, 1);
    SetFocus();
    CWnd::OnLButtonDown(flags, point);
}

void ABWindow::OnLButtonUp(unsigned flags, CPoint point)
{
    const int held = IsFlagSet(windowHoldsCapture);
    SetFlag(windowHoldsCapture, 0);
    if (held)
        ReleaseCapture();
    CWnd::OnLButtonUp(flags, point);
}

/// A capture that was taken away; the release of the button will not come here.
void ABWindow::OnCaptureChanged(CWnd* next)
{
    if (next != this)
        SetFlag(windowHoldsCapture, 0);
    CWnd::OnCaptureChanged(next);
}

unsigned ABWindow::OnGetDlgCode() { return DLGC_WANTALLKEYS; }

void ABWindow::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    const HWND self = GetSafeHwnd();
    CWnd::OnKeyDown(key, repeat, flags);
    if (key != VK_TAB || CWnd::FromHandle(self) != this)
        return;
    CWnd* const parent = GetParent();
    if (!parent || !parent->IsDialog())
        return;
    auto* const dialog = static_cast<CDialog*>(parent);
    if (GetKeyState(VK_SHIFT) < 0)
        dialog->PrevDlgCtrl();
    else
        dialog->NextDlgCtrl();
}

void ABWindow::OnContextMenu(CWnd*, CPoint screen)
{
    SetCursor(IDC_ARROW);
    amContextMenu(screen, static_cast<unsigned>(GetMenuID()));
}

void ABWindow::amContextMenu(CPoint screen, unsigned menuId)
{
    CMenu menu;
    CMenu* const popup = menu.LoadMenu(menuId) ? menu.GetSubMenu(0) : nullptr;
    if (!popup)
        return;
    amMenuParse(popup);
    popup->TrackPopupMenu(TPM_RIGHTBUTTON, screen, this);
}

int ABWindow::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == 0 && id == ID_COPY_TO_CLIPBOARD)
        return OnCopyToClipboard(), 1;
    if (code == 0 && id == ID_COPY_TO_BMP)
        return OnCopyToBMP(), 1;
    return CWnd::OnCommand(id, code, control);
}

void ABWindow::OnCopyToClipboard()
{
    UpdateWindow();
    CRect client;
    GetClientRect(client);
    CWindowDC dc(this);
    if (!CopyToClipboard(this, dc, client))
        AfxMessageBox(clipboardRefuses, MB_OK | MB_ICONERROR);
}

int ABWindow::AskPictureName(CString& name)
{
    const HWND self = GetSafeHwnd();
    name = ".png";
    // Deliberate: a name to save under with the bit of files that exist; hosts and their users know
    // the dialog so.
    const int chosen = fnFileDialog1(name, "PNG files (*.PNG)|*.png", "Save as", 0, "png",
                                     OFN_HIDEREADONLY | OFN_FILEMUSTEXIST, this);
    return chosen && CWnd::FromHandle(self) == this;
}

void ABWindow::OnCopyToBMP()
{
    CString name;
    if (!AskPictureName(name))
        return;
    UpdateWindow();
    CRect client;
    GetClientRect(client);
    CWindowDC dc(this);
    if (!CopyToBMP(dc, client, name))
        AfxMessageBox(cannotCreateFile + name, MB_OK | MB_ICONERROR);
}

}  // namespace pavane
