#include "pavane/axes/range_steps.h"
#include "pavane/axes/square_plot.h"

#include <gtest/gtest.h>
#include <limits>

using namespace pavane;

namespace
{

void expectSpan(const TMnMx& span, double min, double max)
{
    EXPECT_NEAR(span.min, min, 1e-12 * (1 + max));
    EXPECT_NEAR(span.max, max, 1e-12 * (1 + max));
}

}  // namespace

TEST(RangeSteps, KeepTheValueUnderThePointer)
{
    expectSpan(zoomedSpan({0, 100}, 25, 2, 0), 12.5, 62.5);
    expectSpan(zoomedSpan({0, 100}, 25, 0.5, 0), -25, 175);
    expectSpan(zoomedSpan({1, 10000}, 100, 2, 1), 10, 1000);
    expectSpan(shiftedSpan({10, 30}, -0.5, 0), 0, 20);
    expectSpan(shiftedSpan({1, 100}, 0.5, 1), 10, 1000);
}

TEST(RangeSteps, StayInsideTheWholeAtTheirOwnLength)
{
    expectSpan(spanInside({-5, 15}, {0, 100}, 0), 0, 20);
    expectSpan(spanInside({95, 115}, {0, 100}, 0), 80, 100);
    expectSpan(spanInside({-5, 115}, {0, 100}, 0), 0, 100);
    expectSpan(spanInside({0.1, 10}, {1, 1000}, 1), 1, 100);
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
