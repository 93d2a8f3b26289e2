#include "pavane/windows/ABWindow.h"
#include "pavane/windows/picture_export.h"
#include "pavane/windows/window_placement.h"
#include "platform/CDialog.h"
#include "platform/clipboard.h"
#include "platform/CMenu.h"
#include "platform/controls.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/profile.h"
#include "platform/window_dc.h"
#include "tessel/AFile.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace pavane;

namespace
{

constexpr COLORREF content = RGB(10, 200, 30);
constexpr COLORREF overlay = RGB(200, 0, 0);

/// Fills what it is told to and notes the calls.
struct Painted : ABWindow {
    std::vector<std::string> calls;
    CRect update;
    int menu = 0;
    explicit Painted(int flags = 0, CWnd* parent = nullptr)
    {
        SetFlag(flags, 1);
        if (!parent)
            Create("", "", WS_POPUP | WS_VISIBLE, CRect(0, 0, 60, 40), nullptr, 0);
    }
    void DrawWindow(CDC& dc, CRect&, CRect& rect) override
    {
        calls.push_back("draw");
        update = rect;
        dc.FillSolidRect(rect, content);
    }
    void ServiceDraw(CDC& dc, CRect&, CRect&) override
    {
        calls.push_back("service");
        dc.FillSolidRect(CRect(0, 0, 5, 5), overlay);
    }
    void SetUpWindow() override { calls.push_back("set up"); }
    const char* GetWndClassName() override { return "Painted"; }
    int GetMenuID() override { return menu; }
    void amMenuParse(CMenu* popup) override { popup->EnableMenuItem(ID_COPY_TO_BMP, MF_GRAYED); }
};

std::string lastMessage;
int noteMessage(const CString& text, unsigned)
{
    lastMessage = text;
    return IDOK;
}

int menusShown = 0;
unsigned chooseCopy(const CMenu& menu, CPoint)
{
    ++menusShown;
    EXPECT_EQ(menu.lines().size(), 2u);
    EXPECT_EQ(menu.lines()[0].text, "into Clipboard");
    EXPECT_FALSE(menu.lines()[1].enabled);
    return ID_COPY_TO_CLIPBOARD;
}

CString fileAnswer;
int chooseFile(CString& name, const CString& filter, int open)
{
    EXPECT_EQ(name, ".png");
    EXPECT_EQ(filter, "PNG files (*.PNG)|*.png");
    EXPECT_FALSE(open);
    name = fileAnswer;
    return !fileAnswer.empty();
}

CString fileIn(const char* name) { return CString(std::getenv("TEST_TMPDIR")) + "/" + name; }

}  // namespace

TEST(BaseWindow, DrawsContentThenOverlayWithAndWithoutAPicture)
{
    for (const int flags : {0, int{windowBuffered}, int{windowBuffered | windowNoWaitCursor}}) {
        Painted window(flags);
        EXPECT_EQ(window.calls, std::vector<std::string>{"set up"});
        window.UpdateWindow();
        EXPECT_EQ(window.calls, (std::vector<std::string>{"set up", "draw", "service"}));
        window.InvalidateRect(CRect(20, 10, 30, 20));
        window.UpdateWindow();
        EXPECT_EQ(window.update, CRect(20, 10, 30, 20));
        CClientDC dc(&window);
        EXPECT_EQ(dc.GetPixel(2, 2), overlay);
    }
}

TEST(BaseWindow, KnowsItsFlagsAndItsClass)
{
    Painted window;
    window.SetFlag(0x4 | 0x20, 1);
    EXPECT_EQ(window.IsFlagSet(0x4 | 0x20), 1);
    EXPECT_EQ(window.IsFlagSet(0x4 | 0x8), 0);
    WNDCLASSA wc;
    EXPECT_TRUE(GetClassInfo("Painted", wc));
    EXPECT_EQ(wc.style, 11u);
}

TEST(BaseWindow, HoldsTheCaptureFromPressToRelease)
{
    Painted window;
    window.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
    EXPECT_TRUE(window.IsFlagSet(windowHoldsCapture));
    EXPECT_EQ(CWnd::GetCapture(), &window);
    window.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
    // a capture that is taken away does not keep the next press from having it
    window.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
    CWnd::ReleaseCapture();
    EXPECT_FALSE(window.IsFlagSet(windowHoldsCapture));
}

TEST(BaseWindow, ScrollsItsPictureAndDrawsTheStrip)
{
    Painted window;
    window.UpdateWindow();
    CRect rect(10, 10, 40, 30);
    {
        CClientDC dc(&window);
        dc.FillSolidRect(rect, RGB(0, 0, 255));
        dc.SetPixel(20, 20, RGB(1, 2, 3));
    }
    window.calls.clear();
    Painted other;
    other.ScrollWnd(&window, 0, -5, rect);
    CClientDC dc(&window);
    EXPECT_EQ(dc.GetPixel(20, 15), RGB(1, 2, 3));
    EXPECT_EQ(dc.GetPixel(20, 25), content);
    EXPECT_EQ(window.update, CRect(10, 25, 40, 30));
    EXPECT_EQ(window.calls, std::vector<std::string>{"draw"});
    other.ScrollWnd(&window, 0, 1000, rect);
    EXPECT_EQ(dc.GetPixel(39, 29), content);
}

TEST(BaseWindow, ShowsItsMenuAndNoneWithoutAnIdentifier)
{
    Painted window;
    SetMenuAnswer(chooseCopy);
    menusShown = 0;
    for (const int menu : {0, 424242, int{IDR_COPY_MENU}}) {
        window.menu = menu;
        window.SendMessage(WM_CONTEXTMENU, 0, MAKELPARAM(5, 5));
        EXPECT_EQ(menusShown, menu == int{IDR_COPY_MENU});
    }
    EXPECT_EQ(GetClipboardBitmapSize().cx, 60);
    SetMenuAnswer(nullptr);
}

TEST(BaseWindow, CopiesItsPictureAndTellsOfRefusals)
{
    Painted window;
    const auto before = SetMessageFunction(noteMessage);
    lastMessage.clear();
    SetClipboardRefusal(1);
    window.SendMessage(WM_COMMAND, ID_COPY_TO_CLIPBOARD);
    EXPECT_NE(lastMessage, "");
    SetClipboardRefusal(0);
    lastMessage.clear();
    SetFileDialogAnswer(chooseFile);
    fileAnswer = fileIn("window.PNG");
    window.SendMessage(WM_COMMAND, ID_COPY_TO_BMP);
    EXPECT_EQ(lastMessage, "");
    AFile file;
    EXPECT_TRUE(file.open(fileAnswer, AFile::readOnly));
    fileAnswer = "/nowhere/at/all/window.png";
    window.SendMessage(WM_COMMAND, ID_COPY_TO_BMP);
    EXPECT_EQ(lastMessage, "Can`t create file: /nowhere/at/all/window.png");
    CClientDC dc(&window);
    EXPECT_FALSE(CopyToBMP(dc, CRect(0, 0, 9, 9), fileIn("window.tga")));
    EXPECT_FALSE(CopyToBMP(dc, CRect(9, 9, 9, 9), fileIn("empty.png")));
    SetFileDialogAnswer(nullptr);
    SetMessageFunction(before);
}

TEST(BaseWindow, TakesThePlaceOfAControlAndLeavesItByTab)
{
    static constexpr DlgItem items[] = {
        {ControlKind::edit, 11, "", 4, 4, 40, 12, WS_TABSTOP},
        {ControlKind::placeholder, 12, "", 50, 4, 40, 30, WS_TABSTOP},
        {ControlKind::edit, 13, "", 4, 20, 40, 12, WS_TABSTOP},
    };
    static constexpr DlgTemplate form{900, "Form", 100, 60, items, 3};
    CDialog dialog(form);
    ASSERT_TRUE(dialog.CreateModeless());
    dialog.ShowWindow(SW_SHOW);
    MSG message;
    while (PeekMessage(message))
        DispatchMessage(message);
    CRect place;
    dialog.GetDlgItem(12)->GetWindowRect(place);
    Painted window(0, &dialog);
    EXPECT_FALSE(window.UpDateControl("", &dialog, 999, WS_TABSTOP));
    ASSERT_TRUE(window.UpDateControl("", &dialog, 12, WS_TABSTOP));
    EXPECT_TRUE(window.IsFlagSet(windowReplaced));
    EXPECT_EQ(dialog.GetDlgItem(12), &window);
    CRect now;
    window.GetWindowRect(now);
    EXPECT_EQ(now, place);
    EXPECT_EQ(window.SendMessage(WM_GETDLGCODE), LRESULT{DLGC_WANTALLKEYS});
    window.SetFocus();
    window.SendMessage(WM_KEYDOWN, VK_TAB);
    EXPECT_EQ(CWnd::GetFocus(), dialog.GetDlgItem(13));
    window.SetFocus();
    SetKeyStateOverride(MK_SHIFT);
    window.SendMessage(WM_KEYDOWN, VK_TAB);
    SetKeyStateOverride(-1);
    EXPECT_EQ(CWnd::GetFocus(), dialog.GetDlgItem(11));
}

TEST(WindowPlacement, ComesBackFromTheProfileAndIgnoresGarbage)
{
    SetProfileFile(fileIn("placement.ini"));
    Painted window;
    WINDOWPLACEMENT placement;
    window.GetWindowPlacement(placement);
    const CRect before = placement.rcNormalPosition;
    EXPECT_FALSE(LoadWndPos(&window, "None"));
    WriteProfileString("Main", "WindowPos", "8,1,-1,-1,-1,-1,10,20,610");
    EXPECT_FALSE(LoadWndPos(&window, "Main"));
    window.GetWindowPlacement(placement);
    EXPECT_EQ(placement.rcNormalPosition, before);
    WriteProfileString("Main", "WindowPos", "0,1,-1,-1,-1,-1,10,20,310,220");
    EXPECT_TRUE(LoadWndPos(&window, "Main"));
    window.GetWindowPlacement(placement);
    EXPECT_EQ(placement.rcNormalPosition, CRect(10, 20, 310, 220));
    window.ShowWindow(SW_SHOWMAXIMIZED);
    window.ShowWindow(SW_SHOWMINIMIZED);
    window.GetWindowPlacement(placement);
    SaveWndPos(&window, "Main");
    EXPECT_EQ(GetProfileString("Main", "WindowPos").substr(0, 4), "2,3,");
    SetProfileFile("");
}
