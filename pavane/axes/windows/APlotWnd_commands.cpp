// Keys and commands of an axis window, and the pictures that they copy.
#include "pavane/axes/windows/APlotWnd.h"
#include "pavane/resources/plot_commands.h"
#include "pavane/resources/window_messages.h"
#include "pavane/windows/picture_export.h"
#include "platform/CDialog.h"
#include "platform/CMenu.h"
#include "platform/message.h"

namespace pavane
{

namespace
{

/// Magnification of one press of plus or minus.
constexpr double zoomOfKey = 1.5;

/// The base leaves a window that stands in a dialog itself; this one may stand deeper.
void leaveForDialog(const CWnd& window)
{
    CWnd* above = window.GetParent();
    if (!above || above->IsDialog())
        return;
    while (above && !above->IsDialog())
        above = above->GetParent();
    if (!above)
        return;
    auto* const dialog = static_cast<CDialog*>(above);
    if (GetKeyState(VK_SHIFT) < 0)
        dialog->PrevDlgCtrl();
    else
        dialog->NextDlgCtrl();
}

/// A picture of the window's size and fineness; 0 without a size or memory.
int drawNow(APlotWnd& window, CBitmap& picture)
{
    CRect client;
    window.GetClientRect(client);
    CClientDC screen(&window);
    if (client.IsRectEmpty() ||
        !picture.CreateCompatibleBitmap(screen, client.Width(), client.Height()))
        return 0;
    CMemoryDC memory(picture);
    window.DrawPicture(memory, client);
    return 1;
}

}  // namespace

int APlotWnd::GetMenuID() { return IDR_PLOT_MENU; }

void APlotWnd::amMenuParse(CMenu* popup)
{
    for (CMenu::Line& line : popup->lines())
        if (line.id != 0)
            line.enabled = IsCommandEnabled(line.id);
}

int APlotWnd::IsCommandEnabled(unsigned id) const
{
    const PlotCommand* const command = commandOf(id);
    return command && isTime(command->when);
}

int APlotWnd::isTime(CommandWhen when) const
{
    switch (when) {
    case CommandWhen::always:
        return 1;
    case CommandWhen::hasHistory:
        return canGoBack();
    case CommandWhen::isZoomed:
        return IsRangeZoomed();
    case CommandWhen::canViewBack:
        return CanViewBack();
    case CommandWhen::canViewForward:
        return CanViewForward();
    default:
        return 0;
    }
}

int APlotWnd::RunCommand(unsigned id)
{
    switch (id) {
    case ID_ZOOM_MINUS:
        return ZoomBack(), 1;
    case ID_WHOLE_MAP:
        return ShowWholeRange(), 1;
    case ID_VIEW_BACK:
        return ViewBack(), 1;
    case ID_VIEW_FORWARD:
        return ViewForward(), 1;
    case ID_COPY_TO_CLIPBOARD:
        return OnCopyToClipboard(), 1;
    case ID_COPY_TO_BMP:
        return OnCopyToBMP(), 1;
    default:
        return 0;
    }
}

int APlotWnd::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == 0 && RunCommand(id))
        return 1;
    return ABWindow::OnCommand(id, code, control);
}

int APlotWnd::takeKey(int key, bool shift, bool control)
{
    if (key == VK_ESCAPE)
        return giveUpDrag();
    if (const PlotCommand* const command = commandOfKey(key, shift, control))
        return RunCommand(command->id);
    if (control)
        return 0;
    switch (key) {
    case VK_SPACE:
        return spaceHeld_ = 1;
    case VK_ADD:
    case VK_OEM_PLUS:
        return ZoomAbout(plotRect().CenterPoint(), zoomOfKey), 1;
    case VK_SUBTRACT:
    case VK_OEM_MINUS:
        return ZoomAbout(plotRect().CenterPoint(), 1 / zoomOfKey), 1;
    default:
        return 0;
    }
}

void APlotWnd::OnKeyDown(unsigned key, unsigned repeat, unsigned flags)
{
    menuPoint_ = CPoint(-1, -1);
    const HWND self = GetSafeHwnd();
    const auto code = static_cast<int>(key);
    const bool shift = GetKeyState(VK_SHIFT) < 0, control = GetKeyState(VK_CONTROL) < 0;
    const PlotCommand* const withAltKey =
        GetKeyState(VK_MENU) < 0 ? commandOfKey(code, shift, control, true) : nullptr;
    const int used = withAltKey ? RunCommand(withAltKey->id) : takeKey(code, shift, control);
    if (used || CWnd::FromHandle(self) != this)
        return;
    ABWindow::OnKeyDown(key, repeat, flags);
    if (static_cast<int>(key) == VK_TAB && CWnd::FromHandle(self) == this)
        leaveForDialog(*this);
}

void APlotWnd::OnKeyUp(unsigned key, unsigned repeat, unsigned flags)
{
    if (key == VK_SPACE)
        spaceHeld_ = 0;
    ABWindow::OnKeyUp(key, repeat, flags);
}

void APlotWnd::OnKillFocus(CWnd* next)
{
    spaceHeld_ = 0;
    ABWindow::OnKillFocus(next);
}

void APlotWnd::OnCopyToClipboard()
{
    CBitmap picture;
    int done = drawNow(*this, picture);
    if (done) {
        CMemoryDC memory(picture);
        done = CopyToClipboard(this, memory, CRect(0, 0, picture.size().cx, picture.size().cy));
    }
    if (!done)
        AfxMessageBox(clipboardRefuses, MB_OK | MB_ICONERROR);
}

void APlotWnd::OnCopyToBMP()
{
    CString name;
    if (!AskPictureName(name))
        return;
    CBitmap picture;
    int done = drawNow(*this, picture);
    if (done) {
        CMemoryDC memory(picture);
        done = CopyToBMP(memory, CRect(0, 0, picture.size().cx, picture.size().cy), name);
    }
    if (!done)
        AfxMessageBox(cannotCreateFile + name, MB_OK | MB_ICONERROR);
}

}  // namespace pavane
