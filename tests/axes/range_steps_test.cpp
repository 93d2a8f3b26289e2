#include "pavane/axes/ranges/range_steps.h"
#include "pavane/axes/square_plot.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

using namespace pavane;

namespace
{

void expectSpan(const TMnMx& span, double min, double max)
{
    const double slack = 1e-12 * (1 + std::max(std::fabs(min), std::fabs(max)));
    EXPECT_NEAR(span.min, min, slack);
    EXPECT_NEAR(span.max, max, slack);
}

}  // namespace

TEST(RangeSteps, KeepTheValueUnderThePointer)
{
    expectSpan(zoomedSpan({0, 100}, 25, 0.5, 0), -25, 175);
    expectSpan(zoomedSpan({-300, -100}, -150, 0.5, 0), -450, -50);
    expectSpan(zoomedSpan({10, 1e5}, 1000, 2, 1), 100, 10000);
}

TEST(RangeSteps, StayInsideTheWholeAtTheirOwnLength)
{
    expectSpan(spanInside({-5, 115}, {0, 100}, 0), 0, 100);
    expectSpan(spanInside({5, 25}, {10, 100}, 0), 10, 30);
    expectSpan(spanInside({1, 100}, {10, 1e4}, 1), 10, 1000);
    EXPECT_DOUBLE_EQ(spanPart({1, 10}, {1, 1000}, 1), 1.0 / 3);
}

TEST(RangeSteps, LeaveWhatIsNoSpanAlone)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const TMnMx unset;
    EXPECT_EQ(zoomedSpan(unset, 0, 2, 0), unset);
    EXPECT_EQ(zoomedSpan({-1, 10}, 1, 2, 1), (TMnMx{-1, 10}));
    for (const double factor : {0.0, -1.0, nan, 1e308})
        EXPECT_EQ(zoomedSpan({1, 2}, 1.5, factor, 0), (TMnMx{1, 2})) << factor;
    EXPECT_EQ(shiftedSpan({1, 2}, 1e308 * 10, 0), (TMnMx{1, 2}));
    EXPECT_EQ(spanPart({1, 2}, {5, 5}, 0), 1);
}

TEST(SquarePlot, FillsTheMiddleUnlessItWouldBeASliver)
{
    const CRect room(10, 20, 210, 120);
    EXPECT_EQ(squarePlot(room, 100, 100), CRect(60, 20, 160, 120));
    EXPECT_EQ(squarePlot(room, 400, 100), CRect(10, 45, 210, 95));
    EXPECT_EQ(squarePlot(room, 1, 1000), room);
    EXPECT_EQ(squarePlot(CRect(), 3, 3), CRect());
}
