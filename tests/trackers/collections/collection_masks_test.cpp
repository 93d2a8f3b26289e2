#include "pavane/axes/ABAxis.h"
#include "pavane/axes/ranges/AMnMxMCTransform.h"
#include "pavane/axes/ranges/RectMinMaxTransform.h"
#include "pavane/axes/ranges/zoom_step.h"
#include "pavane/trackers/ARectTracker.h"
#include "tessel/ABitMatrix.h"

#include <gtest/gtest.h>

#include "trackers/collections/stored_collection.h"
#include "trackers/masks/plain_fill.h"

#include <cmath>
#include <random>
#include <utility>

using namespace pavane;
using namespace pavane::test;

namespace
{

const TMinMax unit{0, 100, 0, 50};

int cellsOfMask(ATrackerArray& array, const TMinMax& mapRange)
{
    ABitMatrix mask(51, 101);
    mask.setAll(1);
    array.FillMatrix(mask, 101, 51, mapRange);
    return static_cast<int>(mask.count());
}

}  // namespace

TEST(CollectionMask, OfNoAreaIsTheWholeMapAndOfAnEmptyAreaNothing)
{
    ATrackerArray array;
    EXPECT_EQ(cellsOfMask(array, unit), 51 * 101);
    EXPECT_EQ(cellsOfMask(array, {}), 51 * 101);
    array.Add(shaped(array, toolArea, {}), 0);
    array.CheckMinMax({0, 0, 100, 50}, unit, 1, 1);
    EXPECT_EQ(cellsOfMask(array, unit), 0);
    array.Add(new ARectTracker({10, 10, 20, 30}, trackerNew), 0);
    EXPECT_EQ(cellsOfMask(array, unit), 11 * 21);
    for (const TMinMax& unusable : {TMinMax(), TMinMax{5, 5, 0, 50}, TMinMax{0, 100, 1, 1},
                                    TMinMax{0, HUGE_VAL, 0, 50}, TMinMax{0, 100, std::nan(""), 50}})
        EXPECT_EQ(cellsOfMask(array, unusable), 0);
}

TEST(CollectionMask, KeepsWhatIsSetWhenOneAreaIsAdded)
{
    ATrackerArray array;
    array.CheckMinMax({0, 0, 100, 50}, unit, 1, 1);
    array.Add(new ARectTracker({0, 0, 4, 4}, trackerNew), 0);
    ABitMatrix mask(51, 101);
    mask.set(0, 100);
    array.FillMatrixForItem(0, mask, 101, 51, unit);
    EXPECT_EQ(mask.count(), 26);
    EXPECT_TRUE(mask.get(50, 0));  // rows grow upwards
    array.FillMatrixForItem(1, mask, 101, 51, unit);
    array.FillMatrixForItem(-1, mask, 101, 51, unit);
    EXPECT_EQ(mask.count(), 26);
}

TEST(CollectionMask, IsThatOfThePlainWayForRandomShapesAndDirections)
{
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        const int modeX = random() % 2 ? 1 : -1;
        const int modeY = random() % 2 ? 1 : -1;
        const CRect device(7, 11, 507, 361);
        const TMinMax range{-3, 8, 2, 4};
        const TMinMax mapRange =
            random() % 2 ? TMinMax{9, -4, 1, 5} : TMinMax{-4, 9, 5, 1};  // wider, reversed
        ATrackerArray array;
        array.CheckMinMax(device, range, modeX, modeY);
        for (int k = 0; k < 6; ++k)
            addAny(array, random);
        ABitMatrix expected(130, 170);
        const RectMinMaxTransform toValues(device, range, modeX, modeY);
        const AMnMxMCTransform toCells(mapRange, 130, 170);
        for (int i = 0; i < array.count(); ++i) {
            AArray<CPoint> outline;
            array(i)->GetAreaPoints(outline);
            std::vector<CPoint> cells;
            for (int p = 0; p < outline.count(); ++p)
                cells.emplace_back(toCells.RPXtoMPX(toValues.GPXtoRPX(outline(p).x)),
                                   toCells.RPYtoMPY(toValues.GPYtoRPY(outline(p).y)));
            plainFill(expected, cells);
        }
        ABitMatrix mask(130, 170);
        array.FillMatrix(mask, 170, 130, mapRange);
        EXPECT_TRUE(mask == expected) << round;
    }
}

TEST(CollectionMask, OfDataValuesNeedsNoAxisAndDoesNotChangeWithTheZoom)
{
    const TMinMax mapRange{200, -200, -50, 50};
    const std::pair<ARect<double>, int> ellipses[] = {// points: 8 a cell of 2 by 1
                                                      {{-90, -10, 90, 30}, 360},
                                                      {{-2, -1, 2, 1}, 16},
                                                      {{0, -49, 40, 49}, 392}};
    for (const auto& [rect, points] : ellipses) {
        ARPTrackerArray array;
        array.Add(shaped(array, toolEllipse, {{}, rect, 0, {}}), 0);
        AArray<CPoint> cells;
        ASSERT_TRUE(array.GetAreaCells(0, cells, 201, 101, mapRange));
        EXPECT_EQ(cells.count(), points);
        ABitMatrix mask(101, 201);
        array.FillMatrix(mask, 201, 101, mapRange);
        ABAxis axis(-1, 1, nullptr, 0);
        axis.setGraphRect({0, 0, 30, 20});
        axis.setMinMax({-1, 1, -1, 1});
        array.SetAxis(&axis);
        ABitMatrix zoomed(101, 201);
        array.FillMatrix(zoomed, 201, 101, mapRange);
        EXPECT_TRUE(mask == zoomed);
        EXPECT_GT(mask.count(), 3);
    }
}

TEST(CollectionMapping, MovesPixelShapesWithTheirValuesUnlessItIsUnusable)
{
    ATrackerArray array;
    array.Add(new ARectTracker({10, 10, 30, 40}, trackerNew), 0);
    const auto rect = [&] { return static_cast<ARectTracker*>(array(0))->rect(); };
    array.CheckMinMax({0, 0, 100, 50}, unit, 1, 1);  // from an unset mapping nothing moves
    EXPECT_EQ(rect(), CRect(10, 10, 30, 40));
    for (const TMinMax& unusable :
         {TMinMax(), TMinMax{3, 3, 0, 50}, TMinMax{0, std::nan(""), 0, 5}})
        array.CheckMinMax({0, 0, 200, 100}, unusable, 1, 1);
    array.CheckMinMax({10, 10, 10, 60}, unit, 1, 1);
    EXPECT_EQ(array.deviceRect(), CRect(0, 0, 100, 50));
    EXPECT_EQ(rect(), CRect(10, 10, 30, 40));
    array.CheckMinMax({0, 0, 200, 100}, unit, 1, 1);
    EXPECT_EQ(rect(), CRect(20, 20, 60, 80));
    array.CheckMinMax({0, 0, 200, 100}, {0, 50, 0, 50}, -1, 1);  // half the width, from the right
    EXPECT_EQ(rect(), CRect(160, 20, 80, 80));
}

TEST(CollectionMapping, UndoesAnEditOfAnotherWindowSizeInTheNewOne)
{
    ATrackerArray array;
    array.CheckMinMax({0, 0, 100, 50}, unit, 1, 1);
    array.Add(new ARectTracker({10, 10, 30, 40}, trackerNew), 1);
    ASSERT_TRUE(array.MoveBy(nullptr, 5, 0));
    array.CheckMinMax({0, 0, 200, 100}, unit, 1, 1);
    const auto rect = [&] { return static_cast<ARectTracker*>(array(0))->rect(); };
    EXPECT_EQ(rect(), CRect(30, 20, 70, 80));
    ASSERT_TRUE(array.Undo(nullptr));
    EXPECT_EQ(rect(), CRect(20, 20, 60, 80));
}

TEST(ZoomStep, StaysInsideTheRangeThatIsShown)
{
    const struct {
        TMnMx span;
        double at, factor;
        int logarithmic;
        TMnMx expected;
    } cases[] = {
        {{0, 100}, 90, 2, 0, {50, 100}},
        {{0, 100}, 50, 4, 0, {37.5, 62.5}},
        {{0, 100}, -5, 8, 0, {0, 12.5}},
        {{1, 10000}, 100, 2, 1, {10, 1000}},
        {{0, 100}, 90, 2, 1, {0, 100}},
        {{5, 5}, 5, 2, 0, {5, 5}},
        {{1, 1 + 1e-15}, 1, 2, 0, {1, 1 + 1e-15}},
        {{0, 1}, std::nan(""), 2, 0, {0, 1}},
        {{}, 0, 2, 0, {}},
    };
    for (const auto& c : cases) {
        TMnMx span = c.span;
        EXPECT_EQ(zoomSpan(span, c.at, c.factor, c.logarithmic), !(c.expected == c.span));
        EXPECT_NEAR(span.min, c.expected.min, 1e-9 * std::abs(c.expected.min));
        EXPECT_NEAR(span.max, c.expected.max, 1e-9 * std::abs(c.expected.max));
    }
}

TEST(CollectionMask, ClearsNeverCleanAreasBehindAllOthers)
{
    ATrackerArray array;
    array.CheckMinMax({0, 0, 100, 50}, unit, 1, 1);
    auto* const never = new ARectTracker({10, 10, 20, 20}, trackerNew | trackerNeverClean);
    array.Add(never, 0);
    EXPECT_EQ(cellsOfMask(array, unit), 51 * 101 - 121);
    array.Add(new ARectTracker({5, 5, 15, 30}, trackerNew), 0);
    EXPECT_EQ(cellsOfMask(array, unit), 11 * 26 - 6 * 11);
    ABitMatrix own(51, 101);
    array.FillMatrixForItem(0, own, 101, 51, unit);
    EXPECT_EQ(own.count(), 121);
}
