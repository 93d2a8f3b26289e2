#include "axes/windows/axis_window_fixture.h"
#include "pavane/axes/windows/AreaOverlay.h"

#include <gtest/gtest.h>
#include <random>

using namespace pavane;

namespace
{

/// What the user sees, cells and areas included.
std::vector<COLORREF> screen(CWnd& window, const CRect& rect)
{
    window.UpdateWindow();
    CClientDC dc(&window);
    std::vector<COLORREF> pixels;
    for (int y = rect.top; y < rect.bottom; ++y)
        for (int x = rect.left; x < rect.right; ++x)
            pixels.push_back(dc.GetPixel(x, y));
    return pixels;
}

}  // namespace

TEST(AreaOverlay, EqualsTheMaskThroughRandomEdits)
{
    AxisWindow window;
    AreaOverlay overlay;
    overlay.setMap(window.GetMap());
    ATrackerArrayInAxis& areas = *window.GetTrackers();
    std::mt19937 random(7);
    const auto any = [&random](int n) {
        return static_cast<int>(random() % static_cast<unsigned>(n));
    };
    const auto place = [&] { return window.at(any(60), any(80)); };
    for (int i = 0; i < 150; ++i) {
        const int what = any(8);
        if (what < 3) {
            window.key('2' + what);
            window.drag({place(), place(), place()});
        } else if (what == 3) {
            window.drag({place(), place()});
        } else if (what == 4) {
            window.key(any(2) ? VK_TAB : VK_DELETE);
        } else if (what == 5) {
            window.key('Z', any(3) ? MK_CONTROL : MK_CONTROL | MK_SHIFT);
        } else {
            window.key(what == 6 ? 'D' : VK_LEFT + any(4), what == 6 ? MK_CONTROL : MK_SHIFT);
        }
        overlay.follow(areas);
        ASSERT_TRUE(overlay.mask() == window.mask()) << "after edit " << i;
    }
}

TEST(AreaOverlay, KeepsNothingOfACancelledDrag)
{
    AxisWindow window;
    window.SetCellOverlay(1);
    window.key('2');
    window.drag({window.at(10, 10), window.at(14, 14)});
    window.key('2');
    window.post(WM_MOUSEMOVE, window.at(50, 70));
    window.PostMessage(WM_KEYDOWN, VK_ESCAPE);
    const CPoint p = window.at(30, 30);
    window.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(p.x, p.y));
    EXPECT_EQ(window.StatusAt(p).cells, window.mask().count());
}

TEST(AreaOverlay, LooksTheSameFromStripsAndFromNothing)
{
    AxisWindow window;
    window.SetCellOverlay(1);
    CRect client;
    window.GetClientRect(client);
    for (const int tool : {'2', '3', '4'}) {
        window.key(tool);
        window.drag({window.at(10, 10), window.at(40, 60), window.at(25, 35)});
        window.drag({window.at(17, 22), window.at(30, 40), window.at(33, 44)});
    }
    const std::vector<COLORREF> strips = screen(window, client);
    window.Invalidate();
    EXPECT_EQ(screen(window, client), strips);
    window.ContentChanged();
    EXPECT_EQ(screen(window, client), strips);
    window.SetCellOverlay(0);
    EXPECT_NE(screen(window, client), strips);
}
