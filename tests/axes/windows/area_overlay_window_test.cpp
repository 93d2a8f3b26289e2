#include "axes/windows/axis_window_fixture.h"
#include "pavane/axes/windows/AreaOverlay.h"

#include <gtest/gtest.h>
#include <random>

using namespace pavane;

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
    for (const int tool : {'2', '3', '4'}) {
        window.key(tool);
        window.drag({window.at(10, 10), window.at(40, 60), window.at(25, 35)});
        window.drag({window.at(17, 22), window.at(30, 40), window.at(33, 44)});
    }
    const std::vector<std::uint32_t> strips = window.pixels();
    window.Invalidate();
    EXPECT_EQ(window.pixels(), strips);
    window.ContentChanged();
    EXPECT_EQ(window.pixels(), strips);
    window.SetCellOverlay(0);
    EXPECT_NE(window.pixels(), strips);
}
