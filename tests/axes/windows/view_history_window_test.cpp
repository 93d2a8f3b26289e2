// Alt+Left and Alt+Right in windows with and without areas.
#include "pavane/resources/plot_commands.h"
#include "tests/axes/windows/axis_window_fixture.h"

#include <functional>
#include <gtest/gtest.h>

using namespace pavane;

namespace
{

constexpr int alt = 0x20;

struct Case {
    const char* what;
    std::function<void(AxisWindow&)> change;
    int zooms;  ///< steps of the zoom history that it is
};

const CPoint middle(300, 200);

}  // namespace

TEST(AxisWindow, GoesBackAndForwardThroughViews)
{
    double plane = 0;
    const auto turn = [&](AxisWindow& w, double to) {
        w.BeginViewGesture();
        plane = to;
    };
    const Case cases[] = {
        {"notches",
         [](AxisWindow& w) { w.wheel(1, middle, MK_CONTROL), w.wheel(2, middle, MK_CONTROL); }, 1},
        {"zoom tool", [](AxisWindow& w) { w.key('6'), w.click(middle); }, 1},
        {"plane",
         [&](AxisWindow& w) { w.BeginView(), w.BeginView(), plane = 3, w.EndView(), w.EndView(); },
         0},
        {"nothing", [&](AxisWindow& w) { w.BeginView(), w.EndView(); }, 0},
        {"gesture", [&](AxisWindow& w) { turn(w, 4), turn(w, 5); }, 0},
        {"pan",
         [](AxisWindow& w) {
             w.SendMessage(WM_MBUTTONDOWN, MK_MBUTTON, MAKELPARAM(300, 200));
             w.SendMessage(WM_MOUSEMOVE, MK_MBUTTON, MAKELPARAM(280, 190));
             w.SendMessage(WM_MOUSEMOVE, MK_MBUTTON, MAKELPARAM(250, 170));
             w.SendMessage(WM_MBUTTONUP, 0, MAKELPARAM(250, 170));
         },
         1},
        {"zoom in a host's step",
         [](AxisWindow& w) {
             w.BeginView(), w.ZoomAbout(middle, 2), w.ShowWholeRange(), w.ZoomAbout(middle, 3),
                 w.EndView();
         },
         1},
        {"whole", [](AxisWindow& w) { w.key('0'); }, 1},
    };
    AxisWindow window;
    window.SetViewPart(
        ViewPart::plane, [&] { return ViewValues{plane}; },
        [&](const ViewValues& values) {
            window.BeginView();  // a host's own way to show a plane
            plane = values[0];
            window.EndView();
        });
    struct Shown {
        TMinMax range;
        double plane;
        int zooms;
    };
    const auto shown = [&] {
        return Shown{window.GetPlot()->getMinMax(), plane, window.areas().zoomHistory().count()};
    };
    const auto expect = [&](const Shown& view) {
        EXPECT_TRUE(samePairs(window.GetPlot()->getMinMax(), view.range));
        EXPECT_EQ(plane, view.plane);
        EXPECT_EQ(window.areas().zoomHistory().count(), view.zooms);
    };
    std::vector<Shown> views{shown()};
    window.key(VK_LEFT, alt);
    expect(views[0]);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        c.change(window);
        (void)window.IsCommandEnabled(ID_VIEW_BACK);
        AxisWindow::runFor(700);
        if (samePairs(shown().range, views.back().range) && plane == views.back().plane)
            continue;
        views.push_back(shown());
        EXPECT_EQ(views.back().zooms, views[views.size() - 2].zooms + c.zooms);
        EXPECT_TRUE(window.IsCommandEnabled(ID_VIEW_BACK));
        EXPECT_FALSE(window.IsCommandEnabled(ID_VIEW_FORWARD));
    }
    ASSERT_EQ(views.size(), std::size(cases));
    const auto walk = [&] {
        for (std::size_t i = views.size() - 1; i-- > 0;)
            window.key(VK_LEFT, alt), expect(views[i]);
        EXPECT_FALSE(window.IsCommandEnabled(ID_VIEW_BACK));
        for (std::size_t i = 1; i < views.size(); ++i)
            window.key(VK_RIGHT, alt), expect(views[i]);
    };
    walk();
    window.key('7');  // the last step of both
    expect(views[views.size() - 2]);
    window.key(VK_RIGHT, alt);
    walk();
    while (window.areas().zoomHistory().count() > 0)
        window.key('7');
    EXPECT_TRUE(samePairs(shown().range, views[0].range));
    EXPECT_EQ(plane, 5);  // that was no zoom
    for (const double before : {3., 0.}) {
        window.key(VK_LEFT, alt);
        EXPECT_EQ(plane, before);
    }
    EXPECT_FALSE(window.CanViewBack());
    EXPECT_TRUE(samePairs(shown().range, views[0].range));
}
