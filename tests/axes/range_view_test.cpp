#include "pavane/axes/ranges/RangeView.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace pavane;

namespace
{

void expectRange(const TMinMax& range, const TMinMax& wanted)
{
    const double slack = 1e-9;
    EXPECT_NEAR(range.xMin, wanted.xMin, slack);
    EXPECT_NEAR(range.xMax, wanted.xMax, slack);
    EXPECT_NEAR(range.yMin, wanted.yMin, slack);
    EXPECT_NEAR(range.yMax, wanted.yMax, slack);
}

const TMinMax whole{0, 100, 1, 10000};
const TMinMax part{20, 40, 10, 100};

}  // namespace

TEST(RangeView, MovesAndZoomsInsideTheWholeAsThePlotCounts)
{
    RangeView view;
    TMinMax range;
    EXPECT_FALSE(view.zoomed(part, {30, 50}, 2, {0, 0}, {1, 1}, range));  // nothing is known
    EXPECT_FALSE(view.isZoomed(part, {1, 1}));
    view.setWhole(whole);
    EXPECT_TRUE(view.isZoomed(part, {1, 0}));
    EXPECT_FALSE(view.isZoomed(whole, {1, 0}));
    const struct {
        PlotDirections directions;
        double right, down;
        TMinMax wanted;
    } shifts[] = {
        {{1, 0}, 0.5, 0, {30, 50, 10, 100}},
        {{-1, 0}, 0.5, 0, {10, 30, 10, 100}},
        {{1, 0}, 0, 0.5, {20, 40, 3.16227766016838, 31.6227766016838}},
        {{1, -1}, 0, 1, {20, 40, 100, 190}},
        {{2, 0}, -9, 9, {0, 20, 1, 10}},
    };
    for (const auto& c : shifts)
        expectRange(view.shifted(part, c.right, c.down, c.directions), c.wanted);
    ASSERT_TRUE(view.zoomed(whole, {25, 100}, 2, {0, 0}, {1, 0}, range));
    expectRange(range, TMinMax{12.5, 62.5, 10, 1000});
    EXPECT_FALSE(view.zoomed(whole, {25, 100}, 0.5, {0, 0}, {1, 0}, range));
}

TEST(RangeView, TakesTheRangeOfABandUnlessItCannotBeTold)
{
    RangeView view;
    view.setWhole(whole);
    const struct {
        APoint<double> from, to, cell;
        PlotDirections directions;
        int shown;
    } cases[] = {
        {{40, 100}, {20, 10}, {0, 0}, {-1, 0}, 1},      {{20, 10}, {40, 10}, {0, 0}, {1, 0}, 0},
        {{20, 10}, {22, 12}, {1, 1}, {1, 1}, 1},        {{20, 10}, {21.9, 12}, {1, 1}, {1, 1}, 0},
        {{20, 10}, {21.9, 12}, {1, 1}, {1, 0}, 1},      {{20, 10}, {20 + 1e-8, 12}, {}, {1, 0}, 0},
        {{20, 10}, {INFINITY, 12}, {0, 0}, {1, 0}, 0},  {{0, 1}, {100, 10000}, {}, {1, 0}, 0},
        {{20, 10}, {20 + 1e-6, 12}, {0, 0}, {1, 0}, 1},
    };
    for (const auto& c : cases) {
        TMinMax range;
        EXPECT_EQ(view.between(whole, c.from, c.to, c.cell, c.directions, range), c.shown)
            << &c - cases;
        if (c.shown)
            expectRange(range, TMinMax{std::fmin(c.from.x, c.to.x), std::fmax(c.from.x, c.to.x),
                                       std::fmin(c.from.y, c.to.y), std::fmax(c.from.y, c.to.y)});
    }
}

TEST(RangeView, CountsAGestureAsOneStepAndGoesBack)
{
    RangeView view;
    TMinMax range;
    EXPECT_FALSE(view.goBack(range));
    for (const TMinMax& shown : {whole, part})
        view.save(shown);
    EXPECT_TRUE(view.goBack(range));
    EXPECT_EQ(range, part);
    EXPECT_TRUE(view.canGoBack());
    EXPECT_TRUE(view.beginStep());
    EXPECT_FALSE(view.beginStep());
    EXPECT_EQ(view.wheelPixels(2.75, -0.5), CPoint(2, 0));
    EXPECT_EQ(view.wheelPixels(0.25, -0.5), CPoint(1, -1));
    view.endGesture();
    EXPECT_EQ(view.wheelPixels(0.75, 0), CPoint(0, 0));
    EXPECT_TRUE(view.beginStep());
    view.forget();
    EXPECT_FALSE(view.canGoBack() || view.isKnown() || view.isInGesture());
}
