#include "pavane/axes/ranges/AMnMxMCTransform.h"
#include "pavane/axes/ranges/RectMinMaxTransform.h"

#include <gtest/gtest.h>

#include <limits>

using namespace pavane;

TEST(RectMinMaxTransform, GrowsRightAndUpwardsUnlessAModeIsNegative)
{
    const CRect rect(0, 0, 100, 50);
    const TMinMax values{0, 10, 0, 5};
    for (const int mode : {1, 0}) {
        const RectMinMaxTransform t(rect, values, mode, mode);
        EXPECT_EQ(t.RPXtoGPX(2.5), 25);
        EXPECT_EQ(t.RPYtoGPY(1), 40);
        EXPECT_EQ(t.GPXtoRPX(30), 3);
        EXPECT_EQ(t.GPYtoRPY(50), 0);
        EXPECT_EQ(t.RPXtoGPX(-0.14), 0);  // 1.4 pixels before the start, cut towards it
    }
    const RectMinMaxTransform turned(CRect(10, 20, 110, 70), values, -1, -1);
    EXPECT_EQ(turned.RPXtoGPX(2.5), 85);
    EXPECT_EQ(turned.RPYtoGPY(1), 30);
    EXPECT_EQ(turned.GPXtoRPX(85), 2.5);
    EXPECT_EQ(turned.GPYtoWPY(30), 0.2);
}

TEST(RectMinMaxTransform, SaturatesWithoutARange)
{
    const RectMinMaxTransform t(CRect(5, 5, 105, 55), TMinMax{1, 1, 2, 2}, 0, 0);
    EXPECT_EQ(t.RPXtoGPX(1), 5);
    EXPECT_EQ(t.RPXtoGPX(2), 5 + (1 << 30));
    EXPECT_EQ(t.RPYtoGPY(-1e300), 55 + (1 << 30));
}

TEST(AMnMxMCTransform, PutsTheOuterCellCentresOnTheEndsOfTheRange)
{
    const AMnMxMCTransform t(TMinMax{-1, 1, 30, 10}, 11, 101);
    EXPECT_EQ(t.RPXtoMPX(0), 50);
    EXPECT_EQ(t.MPXtoRPX(100), 1);
    EXPECT_EQ(t.MPYtoRPY(1), 28);  // falls with the row
    EXPECT_EQ(t.RPYtoMPY(10), 10);
    EXPECT_EQ(t.RPXtoMPX(-1.01), 0);  // half a step before: cut towards cell 0
    EXPECT_EQ(t.RPXtoMPX(-1.03), -1);
    EXPECT_EQ(t.RPXtoMPX(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(AMnMxMCTransform, CoversADataRectangleInEitherOrder)
{
    const AMnMxMCTransform t(TMinMax{0, 10, 0, 20}, 21, 11);
    struct {
        TMinMax data;
        CPoint first, last;
    } const cases[] = {
        {{2, 4, 5, 9}, {2, 5}, {4, 9}},
        {{4, 2, 9, 5}, {2, 5}, {4, 9}},
        {{-50, 50, -50, 50}, {0, 0}, {10, 20}},
        {{30, 40, -40, -30}, {30, 0}, {10, -29}},  // wholly outside: no cell
    };
    for (const auto& c : cases) {
        AMatrixRect cells;
        t.GetRect(c.data, cells);
        EXPECT_EQ(CPoint(cells.firstColumn, cells.firstRow), c.first);
        EXPECT_EQ(CPoint(cells.lastColumn, cells.lastRow), c.last);
    }
}
