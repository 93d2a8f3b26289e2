// Ranges of several scales, what has the keyboard among them, and what is read at a point.
#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/multi/multi_reading.h"
#include "pavane/axes/multi/MultiView.h"
#include "platform/picture.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

using namespace pavane;

namespace
{

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double none = std::numeric_limits<double>::quiet_NaN();

/// Two panels: amplitudes of two curves and a weight above, phases with a gap below.
struct Panels {
    double x[6] = {0, 10, 20, 30, 40, 50};
    double a[6] = {1, 2, 3, 4, 5, 6};
    double b[6] = {9, 8, 7, 6, 5, 4};
    double w[6] = {1, 10, 100, 10, 1, 10};
    double p[6] = {-170, none, 90, 30, inf, 170};
    A2DAxisMulti axis{1, 1, nullptr, 0};
    CPicture picture{500, 400};
    AGraph* curves[4];

    Panels()
    {
        axis.setNameOX("Hours [h]");
        axis.setNameOY("Amplitude [%sJy]");
        axis.addScale({"Weight ~", {}, 0, 0});
        AYScale phase{"Phase [\u00b0]", {-180, 180}, -1, 1};
        phase.period = 360;
        axis.addScale(phase);
        double* const values[] = {a, b, w, p};
        const int scales[] = {0, 0, 1, 2};
        for (int i = 0; i < 4; ++i) {
            curves[i] = new AGraphXYLine(&axis, x, values[i], 6, nullptr, PS_SOLID, 1, 0, 0);
            axis.setScaleOf(curves[i], scales[i]);
        }
        curves[1]->setGraphName("LL");
        axis.setPanelCaption(1, "EF-WB");
        layOut();
    }
    int layOut() { return axis.layOut(*picture.dc(), CRect(0, 0, 500, 400)); }
    /// "p0 s0 c1 ..." of the walk through a panel.
    std::string walk(MultiFocus focus, int step, int times)
    {
        std::string text;
        for (int i = 0; i < times; ++i) {
            walkParts(axis, focus, step);
            const int kind = static_cast<int>(focus.kind);
            text += "-psc"[kind] + std::to_string(kind == 1   ? focus.panel
                                                  : kind == 2 ? focus.scale
                                                              : focus.graph);
        }
        return text;
    }
};

}  // namespace

TEST(MultiView, ChangesOneDirectionInsideTheWhole)
{
    MultiView view;
    const MultiRanges whole{{0, 100}, {{0, 10}, {}, {1, 1000}}};
    view.learn(whole);
    const double huge = 1e30;
    struct Case {
        const char* what;
        std::function<int(MultiRanges&)> change;
        MultiRanges after;
    };
    const auto zoom = [&](int direction, double at, double factor) {
        return [&view, direction, at, factor](MultiRanges& r) {
            return view.zoom(r, direction, at, factor, direction == 2);
        };
    };
    const auto shift = [&](int direction, double fraction) {
        return [&view, direction, fraction](MultiRanges& r) {
            return view.shift(r, direction, fraction, direction == 2);
        };
    };
    const auto choose = [&](int direction, double a, double b) {
        return [&view, direction, a, b](MultiRanges& r) {
            return view.choose(r, direction, a, b, direction == 2);
        };
    };
    const MultiRanges start{{20, 60}, {{2, 6}, {}, {10, 100}}};
    const auto with = [&](int direction, TMnMx span) {
        MultiRanges ranges = start;
        (direction < 0 ? ranges.x : ranges.y[static_cast<std::size_t>(direction)]) = span;
        return ranges;
    };
    const Case cases[] = {
        {"x", zoom(directionX, 20, 2), with(-1, {20, 40})},
        {"scale", zoom(0, 4, 0.5), with(0, {0, 8})},
        {"out to the whole", zoom(0, 4, 1e-9), with(0, {0, 10})},
        {"logarithmic", zoom(2, 10, 0.5), with(2, {10, 1000})},
        {"pan", shift(directionX, 0.5), with(-1, {40, 80})},
        {"pan to the edge", shift(0, -5), with(0, {0, 4})},
        {"band", choose(0, 5, 3), with(0, {3, 5})},
        {"band of logarithms", choose(2, 20, 50), with(2, {20, 50})},
        {"unset", zoom(1, 0, 2), start},
        {"no such scale", zoom(3, 0, 2), start},
        {"no such direction", shift(-2, 1), start},
        {"factor 0", zoom(0, 4, 0), start},
        {"negative", zoom(0, 4, -2), start},
        {"infinite", zoom(0, 4, inf), start},
        {"no number", zoom(0, none, 2), start},
        {"no way", shift(0, none), start},
        {"too close", zoom(0, 4, huge), start},
        {"empty band", choose(0, 4, 4), start},
        {"band of none", choose(0, none, 4), start},
        {"band below 0", choose(2, -1, 4), start},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        MultiRanges ranges = start;
        EXPECT_EQ(c.change(ranges), !(c.after == start));
        EXPECT_NEAR(ranges.x.min, c.after.x.min, 1e-9);
        EXPECT_NEAR(ranges.x.max, c.after.x.max, 1e-9);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(ranges.y[i].min, c.after.y[i].min, 1e-9);
            EXPECT_NEAR(ranges.y[i].max, c.after.y[i].max, 1e-9);
        }
        for (int i = directionX; i < 3; ++i)
            view.showWhole(ranges, i);
        EXPECT_EQ(ranges, whole);
        EXPECT_FALSE(view.isZoomed(ranges, 0, 0));
    }
    EXPECT_TRUE(view.isZoomed(start, directionX, 0));
    view.learn({{-5, 5}, {{1, 2}, {3, 4}, {5, 6}, {7, 8}}});  // what was known stays
    EXPECT_EQ(view.whole().x, whole.x);
    EXPECT_EQ(view.whole().y[1], (TMnMx{3, 4}));
    EXPECT_EQ(view.whole().y[3], (TMnMx{7, 8}));
}

TEST(MultiFocus, WalksWhatIsOnThePage)
{
    Panels plot;
    MultiFocus focus;
    EXPECT_FALSE(walkPanels(plot.axis, focus, 1));
    fitFocus(plot.axis, focus);
    EXPECT_EQ(plot.walk(focus, 1, 7), "s0c0c1s1c2p0s0");
    EXPECT_EQ(plot.walk(focus, -1, 2), "c2s1");
    EXPECT_TRUE(walkPanels(plot.axis, focus, 1));
    EXPECT_FALSE(walkPanels(plot.axis, focus, 1));
    EXPECT_EQ(plot.walk(focus, 1, 3), "s2c3p1");
    // points, over the gaps
    focus = {MultiFocusKind::curve, 1, 2, 3, -1};
    const struct {
        int step;
        int point;
    } steps[] = {{1, 2}, {1, 3}, {1, 5}, {1, 5}, {-1, 3}, {-100, 0}, {-1, 0}, {100, 5}};
    for (const auto& s : steps) {
        const int before = focus.point;
        const int walked = walkPoints(plot.axis, focus, s.step, 21);
        EXPECT_EQ(walked, focus.point != before);
        EXPECT_EQ(focus.point, s.point);
    }
    EXPECT_EQ(pointText(plot.axis, focus), "Point 6 of 6: 50.0 h, 170\u00b0");
    plot.axis.deleteGraph(plot.curves[3]);
    EXPECT_FALSE(walkPoints(plot.axis, focus, 1, 0));
    EXPECT_EQ(pointText(plot.axis, focus), "");
    fitFocus(plot.axis, focus);
    EXPECT_EQ(focus.kind, MultiFocusKind::panel);
    plot.axis.setPanels(1, 1);
    plot.layOut();
    fitFocus(plot.axis, focus);
    EXPECT_EQ(focus.panel, 0);
    plot.axis.layOut(*plot.picture.dc(), CRect(0, 0, 3, 3));  // no room
    fitFocus(plot.axis, focus);
    EXPECT_EQ(focus, MultiFocus());
}

TEST(MultiReading, TellsTheNearestPointOfEachScale)
{
    Panels plot;
    std::mt19937 random(3);
    const std::vector<double> all{0, 10, 20, 30, 40, 50}, some{0, 20, 30, 50};
    for (const MultiLayout::Panel& panel : plot.axis.getLayout().panels)
        for (int n = 0; n < 200; ++n) {
            const CRect& area = panel.plot;
            const CPoint at(area.left + static_cast<int>(random() % 300), area.top + 5);
            const MultiStatus status = statusAt(plot.axis, at);
            ASSERT_TRUE(status.inPlot);
            ASSERT_EQ(status.nearest.size(), 3u);
            for (const NearestPoint& nearest : status.nearest)
                for (const double x : nearest.scale == 2 ? some : all)
                    ASSERT_LE(std::fabs(nearest.x - status.x), std::fabs(x - status.x));
        }
    const struct {
        int panel;
        double x, y;  ///< of the first scale of the panel
        const char* text;
    } cases[] = {
        {0, 10, 2, "10.0 h   Amplitude 2 Jy   Weight 10"},
        {0, 10, 8, "10.0 h   LL 8 Jy   Weight 10"},
        {1, 10, 0, "10.0 h   EF-WB   Phase -170\u00b0 at 0.0 h"},
        {1, 30, 0, "30.0 h   EF-WB   Phase 30\u00b0"},
    };
    for (const auto& c : cases) {
        const int scale = c.panel == 0 ? 0 : 2;
        const CPoint at(xPixelOf(plot.axis, plot.axis.getPanelRect(c.panel), c.x),
                        plot.axis.RPYtoGPY(scale, c.y));
        MultiStatus status = statusAt(plot.axis, at);
        EXPECT_NEAR(status.x, c.x, status.stepX);
        status.x = c.x;
        EXPECT_EQ(statusText(plot.axis, status), c.text);
    }
    EXPECT_EQ(statusText(plot.axis, statusAt(plot.axis, {1, 1})), "");
    EXPECT_EQ(panelName(plot.axis, 1), "Panel 2 of 2, EF-WB");
    EXPECT_EQ(scaleRangeText(plot.axis, 2), "-180 to 180\u00b0, downwards");
    EXPECT_EQ(scaleRangeText(plot.axis, 1), "1 to 100, logarithmic");
    EXPECT_EQ(curveText(plot.axis, 0), "6 points, least 1 Jy, greatest 6 Jy");
    EXPECT_EQ(curveText(plot.axis, 99), "");
}
