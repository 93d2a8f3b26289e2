#include "platform/CMenu.h"
#include "platform/flat_scroll_bars.h"
#include "platform/system_metrics.h"
#include "platform/test_window.h"

#include <gtest/gtest.h>
#include <memory>

using namespace pavane;

namespace
{

constexpr COLORREF red = RGB(255, 0, 0);
constexpr COLORREF white = RGB(255, 255, 255);

struct Refusing : TestWindow {
    Refusing() : TestWindow(nullptr, 0) { DestroyWindow(); }
    int OnCreate(CREATESTRUCT&) override { return -1; }
};

}  // namespace

TEST(WindowLife, TellsOfItsSizeOnceAndOfTheEndFromTheTopDown)
{
    TestWindow top;
    TestWindow child(&top, WS_VISIBLE, {10, 20, 40, 50}, 7);
    EXPECT_EQ(child.count(WM_CREATE), 1);
    EXPECT_EQ(child.count(WM_SIZE), 1);
    EXPECT_EQ(top.GetDlgItem(7), &child);
    EXPECT_EQ(top.GetDlgItem(8), nullptr);
    EXPECT_EQ(child.GetParent(), &top);
    EXPECT_EQ(child.GetTopLevelParent(), &top);
    CRect rect;
    child.GetClientRect(rect);
    EXPECT_EQ(rect, CRect(0, 0, 30, 30));
    const HWND handle = child.GetSafeHwnd();
    std::vector<int> order;
    top.on[WM_DESTROY] = [&] { order.push_back(1); };
    child.on[WM_DESTROY] = [&] { order.push_back(2); };
    EXPECT_EQ(top.DestroyWindow(), 1);
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    EXPECT_EQ(CWnd::FromHandle(handle), nullptr);
    EXPECT_EQ(child.GetSafeHwnd(), HWND{0});
    EXPECT_EQ(top.DestroyWindow(), 0);
    EXPECT_EQ(SendMessage(handle, WM_LBUTTONDOWN), 0);
    EXPECT_EQ(PostMessage(handle, WM_LBUTTONDOWN), 0);
    TestWindow later;
    EXPECT_GT(later.GetSafeHwnd(), handle);
}

/// Sets a menu and scroll bars while it is made.
class FramedWindow : public CWnd
{
public:
    CRect atCreation;
    std::vector<CSize> sizes;

protected:
    int OnCreate(CREATESTRUCT&) override
    {
        CMenu menu;
        menu.AppendPopup("&File").AppendMenu("E&xit", 7);
        SetMenu(menu);
        GetClientRect(atCreation);
        return 0;
    }
    void OnSize(unsigned, int cx, int cy) override { sizes.push_back({cx, cy}); }
};

TEST(WindowLife, KnowsItsClientAreaWhileItIsMade)
{
    FramedWindow window;
    ASSERT_TRUE(window.Create("f", "", WS_OVERLAPPEDWINDOW, {10, 20, 310, 220}, nullptr, 0));
    CRect now;
    window.GetClientRect(now);
    EXPECT_GT(now.Height(), 0);
    EXPECT_EQ(window.atCreation, now);
    EXPECT_EQ(window.sizes, std::vector<CSize>({now.Size()}));
}

TEST(WindowLife, GivesUpWhenItIsRefused)
{
    Refusing window;
    EXPECT_EQ(window.CreateEx(0, "", "", WS_POPUP, {0, 0, 9, 9}, nullptr, 0), 0);
    EXPECT_EQ(window.GetSafeHwnd(), HWND{0});
    CWnd orphan;
    EXPECT_EQ(orphan.CreateEx(0, "", "", WS_CHILD, {0, 0, 9, 9}, nullptr, 0), 0);
}

TEST(WindowLife, MayEndInEveryHandler)
{
    for (const unsigned message :
         {WM_LBUTTONDOWN, WM_MOUSEMOVE, WM_KEYDOWN, WM_CHAR, WM_TIMER, WM_PAINT, WM_SIZE,
          WM_CAPTURECHANGED, WM_CANCELMODE, WM_MOUSEWHEEL, WM_CONTEXTMENU, WM_SETCURSOR,
          WM_RBUTTONUP, WM_DESTROY, WM_SHOWWINDOW, WM_ENABLE, WM_COMMAND}) {
        SCOPED_TRACE(message);
        TestWindow top;
        auto* const child = new TestWindow(&top);
        const HWND handle = child->GetSafeHwnd();
        child->SetCapture();
        child->on[message] = [child] { delete child; };
        EXPECT_EQ(PostMessage(handle, message), 1);
        settle();
        EXPECT_EQ(CWnd::FromHandle(handle), nullptr);
        EXPECT_EQ(CWnd::GetCapture(), nullptr);
    }
}

TEST(WindowLife, LeavesAnObjectThatIsDestroyedWithItsParentWhole)
{
    auto top = std::make_unique<TestWindow>();
    TestWindow child(top.get());
    TestWindow grandchild(&child);
    top.reset();
    CRect rect;
    EXPECT_EQ(grandchild.GetSafeHwnd(), HWND{0});
    EXPECT_EQ(child.GetClientRect(rect) + child.IsWindowVisible() + child.EnableWindow(0), 0);
    EXPECT_EQ(child.SendMessage(WM_PAINT), 0);
    child.Invalidate();
    child.UpdateWindow();
}

TEST(WindowLife, MayOutliveThePlatform)
{
    static const TestWindow outliving(nullptr, 0);  // the sanitizer looks at the end
    EXPECT_NE(outliving.GetSafeHwnd(), HWND{0});
}

TEST(ClientDC, StaysOnTheWindowThroughAResizeAndDrawsNothingOnADeadOne)
{
    TestWindow window;
    settle();
    CClientDC dc(&window);
    dc.FillSolidRect({10, 10, 20, 20}, red);
    settle();
    EXPECT_EQ(window.count(WM_PAINT), 1);  // drawing does not ask for a repaint
    window.MoveWindow({0, 0, 200, 150}, 0);
    EXPECT_EQ(dc.GetPixel(15, 15), red);
    dc.FillSolidRect({150, 100, 160, 110}, red);
    dc.SetSmooth(1);
    dc.MoveTo(0, 0);
    dc.LineTo(199, 149);  // through the toolkit, on the new pixels
    EXPECT_EQ(CClientDC(&window).GetPixel(155, 105), red);
    EXPECT_EQ(dc.GetPixel(5, 100), white);
    window.DestroyWindow();
    dc.FillSolidRect({0, 0, 9, 9}, red);
    dc.TextOut(0, 0, "gone");
    EXPECT_EQ(dc.GetPixel(5, 5), CLR_INVALID);
    EXPECT_EQ(CClientDC(&window).GetPixel(5, 5), CLR_INVALID);
}

TEST(PaintDC, TouchesOnlyWhatIsInvalid)
{
    TestWindow window;
    settle();
    const auto painted = [&](auto invalidate) {
        CClientDC(&window).FillSolidRect({0, 0, 100, 80}, white);
        CRect box;
        window.draw = [&](CPaintDC& dc) {
            box = dc.paintRect();
            dc.SelectClipRgn(nullptr);  // cannot widen it
            CBitmap picture;
            picture.CreateCompatibleBitmap(dc, 100, 80);
            CMemoryDC(picture).FillSolidRect({0, 0, 100, 80}, red);
            CMemoryDC source(picture);
            dc.BitBlt(0, 0, 100, 80, &source, 0, 0, SRCCOPY);
            dc.FillSolidRect({0, 0, 50, 40}, red);
            dc.TextOut(0, 0, "WWWWWWWWWWWWWWWWWWW");
        };
        invalidate();
        window.UpdateWindow();
        CClientDC dc(&window);
        int changed = 0;
        for (int y = 0; y < 80; ++y)
            for (int x = 0; x < 100; ++x)
                changed += dc.GetPixel(x, y) != white;
        EXPECT_EQ(window.GetUpdateRect(box), 0);
        return changed;
    };
    EXPECT_EQ(painted([&] { window.InvalidateRect({10, 10, 60, 11}); }), 50);
    EXPECT_EQ(painted([&] {
                  CRgn outer, inner, ring;
                  outer.CreateRectRgn(10, 10, 60, 60);
                  inner.CreateRectRgn(11, 11, 59, 59);
                  ring.CombineRgn(outer, inner, RGN_DIFF);
                  window.InvalidateRgn(ring);
              }),
              196);
    EXPECT_EQ(painted([&] {
                  window.InvalidateRect({0, 0, 10, 10});
                  window.ValidateRect({0, 0, 10, 5});
              }),
              50);
    EXPECT_EQ(painted([&] { window.InvalidateRect({200, 0, 300, 10}); }), 0);
}

TEST(PaintDC, IsAskedForOnceEvenWhenNothingIsPaintedOrAMessageBoxOpens)
{
    TestWindow window;
    settle();
    EXPECT_EQ(window.count(WM_PAINT), 1);
    window.draw = [&](CPaintDC&) {
        window.Invalidate();  // for later
        settle();             // a loop inside the handler
    };
    window.Invalidate();
    window.UpdateWindow();
    EXPECT_EQ(window.count(WM_PAINT), 2);
    window.draw = nullptr;
    settle();
    EXPECT_EQ(window.count(WM_PAINT), 3);
    window.ShowWindow(SW_HIDE);
    window.Invalidate();
    window.UpdateWindow();
    EXPECT_EQ(window.count(WM_PAINT), 3);
    window.ShowWindow(SW_SHOW);
    settle();
    EXPECT_EQ(window.count(WM_PAINT), 4);
}

TEST(WindowPixels, AreAsFineAsTheScreenAndCopiedBitByBit)
{
    TestWindow window;
    CBitmap bitmap;
    CClientDC dc(&window);
    ASSERT_EQ(bitmap.CreateCompatibleBitmap(dc, 40, 30), 1);
    EXPECT_EQ(bitmap.ratio(), window.GetPixelRatio());
    EXPECT_EQ(dc.GetPixelRatio(), window.GetPixelRatio());
    CMemoryDC source(bitmap);
    source.TextOut(2, 2, "Jy/beam");
    source.Rectangle(5, 20, 15, 28);
    dc.BitBlt(0, 0, 40, 30, &source, 0, 0, SRCCOPY);
    CBitmap back;
    back.CreateCompatibleBitmap(dc, 40, 30);
    CMemoryDC(back).BitBlt(0, 0, 40, 30, &dc, 0, 0, SRCCOPY);
    const std::size_t side = static_cast<std::size_t>(bitmap.ratio());
    const std::size_t count = 40 * 30 * side * side;
    EXPECT_TRUE(std::equal(bitmap.bits(), bitmap.bits() + count, back.bits()));
}

TEST(WindowPixels, OfTwoRatiosShowTheSameLinesInBlocks)
{
    const auto drawn = [](int ratio) {
        CBitmap bitmap;
        bitmap.CreateBitmap(20, 12, ratio);
        CMemoryDC dc(bitmap);
        CBrush hatched(HS_DIAGCROSS, red);
        dc.SelectObject(&hatched);
        dc.Ellipse(0, 0, 20, 12);
        dc.MoveTo(1, 11);
        dc.LineTo(19, 3);
        dc.SetPixelV(0, 11, red);
        dc.ScrollDC(3, 1, nullptr, nullptr, nullptr, nullptr);
        return bitmap;
    };
    const CBitmap plain = drawn(1);
    const CBitmap fine = drawn(3);
    for (int y = 0; y < 36; ++y) {
        for (int x = 0; x < 60; ++x)
            ASSERT_EQ(fine.bits()[y * 60 + x], plain.bits()[y / 3 * 20 + x / 3]) << x << " " << y;
    }
    // and one is the other reduced
    CBitmap reduced;
    reduced.CreateBitmap(20, 12, 1);
    CBitmap copy = drawn(3);
    CMemoryDC source(copy);
    CMemoryDC(reduced).BitBlt(0, 0, 20, 12, &source, 0, 0, SRCCOPY);
    EXPECT_TRUE(std::equal(plain.bits(), plain.bits() + 240, reduced.bits()));
}

TEST(WindowScrolling, MovesThePictureAndWhatIsStale)
{
    TestWindow window;
    settle();
    CClientDC dc(&window);
    dc.FillSolidRect({0, 0, 100, 80}, white);
    dc.FillSolidRect({20, 20, 30, 30}, red);
    window.InvalidateRect({40, 40, 41, 41});
    window.ScrollWindow(0, -10, {0, 0, 100, 80});
    EXPECT_EQ(dc.GetPixel(25, 15), red);
    EXPECT_EQ(dc.GetPixel(25, 25), white);
    CRect box;
    window.GetUpdateRect(box);
    EXPECT_EQ(box, CRect(0, 30, 100, 80));
}

TEST(ScrollBars, AreNotShownWithoutARangeAndTheFlatCallsAreTheSame)
{
    TestWindow top;
    TestWindow window(&top, WS_VISIBLE | WS_VSCROLL | WS_BORDER, {0, 0, 60, 50});
    const HWND handle = window.GetSafeHwnd();
    const int thick = GetSystemMetrics(SM_CXVSCROLL);
    const auto width = [&] {
        CRect client;
        window.GetClientRect(client);
        return client.Width();
    };
    int min = -1, max = -1;
    EXPECT_EQ(width(), 58 - thick);
    window.SetScrollRange(SB_VERT, 1, 1);
    EXPECT_EQ(window.last, MAKELPARAM(58, 48));  // of WM_SIZE
    EXPECT_FALSE(window.IsScrollBarShown(SB_VERT));
    SCROLLINFO info;
    info.fMask = SIF_ALL;
    info.nMin = 1;
    info.nMax = 40000;
    info.nPage = 9;
    info.nPos = 39999;
    EXPECT_EQ(FlatSB_SetScrollInfo(handle, SB_VERT, info, 1), 39999);
    EXPECT_EQ(width(), 58 - thick);
    EXPECT_EQ(window.SetScrollPos(SB_VERT, 36000), 39999);
    EXPECT_EQ(window.GetScrollPos(SB_VERT), 36000);
    EXPECT_TRUE(window.GetScrollRange(SB_VERT, min, max) && min == 1 && max == 40000);
    window.ShowScrollBar(SB_VERT, 0);
    window.SetScrollRange(SB_VERT, 1, 7);
    EXPECT_EQ(width(), 58);
    EXPECT_TRUE(FlatSB_ShowScrollBar(handle, SB_VERT, 1));
    EXPECT_EQ(width(), 58 - thick);
    EXPECT_TRUE(FlatSB_GetScrollInfo(handle, SB_VERT, info) && info.nMax == 7 && info.nPos == 7);
    EXPECT_FALSE(FlatSB_GetScrollRange(handle, SB_HORZ, min, max) || min || max);
    EXPECT_FALSE(FlatSB_SetScrollProp(handle, WSB_PROP_HSTYLE, FSB_FLAT_MODE, 1));
    EXPECT_TRUE(FlatSB_SetScrollProp(handle, WSB_PROP_VSTYLE, FSB_FLAT_MODE, 1));
}

TEST(Messages, ComeInTheOrderInWhichTheyWerePosted)
{
    TestWindow window;
    settle();
    window.seen.clear();
    TestWindow dead(nullptr, 0);
    dead.PostMessage(WM_USER);
    dead.DestroyWindow();
    for (unsigned i = 1; i < 4; ++i)
        window.PostMessage(WM_USER + i);
    MSG m;
    ASSERT_EQ(GetMessage(m), 1);
    EXPECT_EQ(m.message, WM_USER + 1);
    settle();  // what the loop left
    EXPECT_EQ(window.seen, (std::vector<unsigned>{WM_USER + 2, WM_USER + 3}));
    PostQuitMessage(5);
    EXPECT_EQ(GetMessage(m), 0);
    window.SetTimer(1, 1);
    window.on[WM_TIMER] = [] { PostQuitMessage(7); };
    EXPECT_EQ(RunMessages(), 7);
    EXPECT_EQ(window.KillTimer(1), 1);
    EXPECT_EQ(window.KillTimer(1), 0);
}

TEST(Capture, TellsOfItsLoss)
{
    TestWindow first;
    TestWindow second;
    first.SetCapture();
    EXPECT_EQ(second.SetCapture(), &first);
    EXPECT_EQ(first.count(WM_CAPTURECHANGED), 1);
    EXPECT_EQ(first.last, static_cast<LPARAM>(second.GetSafeHwnd()));
    CWnd::ReleaseCapture();
    EXPECT_EQ(second.count(WM_CAPTURECHANGED), 1);
    EXPECT_EQ(second.count(WM_CANCELMODE), 0);
    for (const int way : {0, 1, 2}) {
        TestWindow parent;
        TestWindow child(&parent);
        child.SetCapture();
        way == 0   ? parent.ShowWindow(SW_HIDE)
        : way == 1 ? parent.EnableWindow(0)
                   : parent.DestroyWindow();
        EXPECT_EQ(child.count(WM_CANCELMODE), 1) << way;
        EXPECT_EQ(child.count(WM_CAPTURECHANGED), 1) << way;
        EXPECT_EQ(CWnd::GetCapture(), nullptr) << way;
    }
}

TEST(DragLoop, EndsByEveryWayOut)
{
    struct Case {
        const char* name;
        std::function<void(TestWindow&)> act;
        DragEnd end;
        int watchdog = 5000;
    };
    const Case cases[] = {
        {"nothing comes", [](TestWindow&) {}, DragEnd::cancelled, 20},
        {"destroyed", [](TestWindow& w) { w.DestroyWindow(); }, DragEnd::lost},
        {"hidden", [](TestWindow& w) { w.ShowWindow(SW_HIDE); }, DragEnd::lost},
        {"capture taken", [](TestWindow& w) { w.GetParent()->SetCapture(); }, DragEnd::lost},
        {"the program ends", [](TestWindow&) { PostQuitMessage(0); }, DragEnd::lost}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TestWindow top;
        TestWindow window(&top);
        settle();
        std::vector<CPoint> moves;
        SetMessageWatchdog(c.watchdog);
        // from a timer, while the loop waits
        window.on[WM_TIMER] = [&] {
            window.KillTimer(1);
            c.act(window);
        };
        window.SetTimer(1, 1);
        window.PostMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(-5, 300));
        EXPECT_EQ(dragLoop(&window, [&](CPoint p) { moves.push_back(p); }), c.end);
        EXPECT_EQ(moves, (std::vector<CPoint>{{-5, 300}}));
        CWnd::ReleaseCapture();
        SetMessageWatchdog(5000);
        settle();
    }
}

TEST(Wheel, GoesUpToTheWindowThatUsesIt)
{
    struct Using : TestWindow {
        using TestWindow::TestWindow;
        int turned = 0;
        int OnMouseWheel(unsigned, int delta, CPoint) override { return turned += delta, 1; }
    } top;
    TestWindow middle(&top);
    TestWindow inner(&middle);
    EXPECT_EQ(inner.SendMessage(WM_MOUSEWHEEL, WPARAM{static_cast<std::uint16_t>(-120)} << 16, 0),
              1);
    EXPECT_EQ(top.turned, -120);
    EXPECT_EQ(inner.SendMessage(WM_MOUSEHWHEEL, WPARAM{120} << 16, 0), 0);
    EXPECT_EQ(top.count(WM_MOUSEHWHEEL), 1);
}

TEST(Wheel, AddsUpToWholeNotchesWhereTheyAreWanted)
{
    struct Turned : TestWindow {
        std::vector<int> turns;
        int OnMouseWheel(unsigned, int delta, CPoint) override { return turns.push_back(delta), 1; }
    } window;
    const auto turn = [&](int delta) {
        return window.SendMessage(WM_MOUSEWHEEL, WPARAM{static_cast<std::uint16_t>(delta)} << 16,
                                  0);
    };
    turn(-40);
    window.SetWheelUnit(WHEEL_DELTA);
    for (const int delta : {-40, -40, -39, -1, 100, -100, -30, 260, 30, 70})
        EXPECT_EQ(turn(delta), 1);
    EXPECT_EQ(window.turns, (std::vector<int>{-40, -120, -120, 240, 120}));
}

TEST(Placement, KeepsTheNormalRectangleOfAMaximisedWindow)
{
    TestWindow window(nullptr, 0, {30, 40, 330, 240});
    WINDOWPLACEMENT placement;
    ASSERT_EQ(window.GetWindowPlacement(placement), 1);
    EXPECT_EQ(placement.rcNormalPosition, CRect(30, 40, 330, 240));
    window.ShowWindow(SW_SHOWMAXIMIZED);
    settle();
    EXPECT_EQ(window.IsZoomed(), 1);
    window.GetWindowPlacement(placement);
    EXPECT_EQ(placement.showCmd, static_cast<unsigned>(SW_SHOWMAXIMIZED));
    EXPECT_EQ(placement.rcNormalPosition, CRect(30, 40, 330, 240));
    window.ShowWindow(SW_MINIMIZE);
    settle();
    window.GetWindowPlacement(placement);
    EXPECT_EQ(window.IsIconic(), 1);
    EXPECT_EQ(placement.showCmd, static_cast<unsigned>(SW_SHOWMINIMIZED));
    EXPECT_EQ(placement.flags, WPF_RESTORETOMAXIMIZED);
    EXPECT_EQ(placement.rcNormalPosition, CRect(30, 40, 330, 240));
    placement.showCmd = SW_SHOWNORMAL;
    window.SetWindowPlacement(placement);
    settle();
    CRect rect;
    window.GetWindowRect(rect);
    EXPECT_EQ(rect, CRect(30, 40, 330, 240));
    EXPECT_EQ(window.IsZoomed(), 0);
}
