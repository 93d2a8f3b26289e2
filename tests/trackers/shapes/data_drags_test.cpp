#include "pavane/trackers/shapes/data_drags.h"

#include "pavane/axes/ABAxis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace pavane;

namespace
{

const CRect graph(100, 50, 700, 450);

/// An axis of 600 x 400 pixels over x 1..7 and y 1..3.
struct Axis : ABAxis {
    Axis(int x, int y, TMinMax range = {1, 7, 1, 3, 0, 1}) : ABAxis(x, y, &range, 0)
    {
        setGraphRect(graph);
    }
};

}  // namespace

TEST(AxisPixels, NeedSomethingToConvertBy)
{
    EXPECT_EQ(AxisPixels(nullptr).pixel({2.9, -2.9}), CPoint(2, -2));
    Axis axis(1, 1);
    EXPECT_TRUE(AxisPixels(&axis).usable());
    axis.setGraphRect({100, 50, 100, 450});
    EXPECT_FALSE(AxisPixels(&axis).usable());
    for (const TMinMax& range : {TMinMax{}, TMinMax{2, 2, 1, 3, 0, 1}, TMinMax{1, 7, 3, 3, 0, 1},
                                 TMinMax{-1.7e308, 1.7e308, 1, 3, 0, 1}}) {
        const Axis empty(1, 1, range);
        EXPECT_FALSE(AxisPixels(&empty).usable()) << range.xMin;
    }
    const Axis negative(0, 1, {-1, 7, 1, 3, 0, 1});
    EXPECT_FALSE(AxisPixels(&negative).usable());
}

TEST(DataDrag, ChangesOnlyTheEdgesThatItDrags)
{
    const Axis axis(1, 1);
    const AxisPixels pixels(&axis);
    const ARect<double> rect{2.0001, 2.5003, 4.0002, 1.5004};  // between the pixels
    const CRect before = pixels.pixels(rect);
    EXPECT_EQ(before, CRect(200, 150, 400, 350));
    const ARect<double> next = withDraggedEdges(rect, before, {200, 150, 450, 350}, pixels);
    EXPECT_EQ(next, (ARect<double>{2.0001, 2.5003, 4.5, 1.5004}));
    EXPECT_EQ(withDraggedEdges(rect, before, before, pixels), rect);
    // a move adds one offset, and stops where the shape meets the edge of the plot
    const ARect<double> box{2.0001, 1.5004, 4.0002, 2.5003};
    const APoint<double> step = dataStep(box, {300, 250}, {400, 240}, graph, pixels);
    EXPECT_DOUBLE_EQ(step.x, 1);
    EXPECT_NEAR(step.y, 0.05, 1e-12);
    EXPECT_DOUBLE_EQ(dataStep(box, {300, 250}, {9000, 250}, graph, pixels).x, 7 - 4.0002);
    EXPECT_EQ(dataStep({-5, 1.5, 9, 2}, {300, 250}, {310, 250}, graph, pixels).x, 0);
}

TEST(DataDrag, TurnsTheHandleUnderThePointerForBothDirections)
{
    for (const int xDirect : {1, -1})
        for (const int yDirect : {1, -1}) {
            const Axis axis(xDirect, yDirect);
            const AxisPixels pixels(&axis);
            const TurnedDataRect start{{3, 2.2, 5, 1.8}, 0};
            APoint<double> handles[turnedHandleCount];
            turnedHandles(start, handles);
            const CPoint press = pixels.pixel(handles[turningHandle]);
            const TurnedDataDrag drag(start, hitTurning, press, graph, {1, 1}, true, pixels);
            EXPECT_EQ(drag.at(press), start);
            const CPoint to(press.x - 20, press.y - 60);
            const TurnedDataRect next = drag.at(to);
            const APoint<double> p = pixels.value(to);
            EXPECT_DOUBLE_EQ(next.angle, std::atan2(p.y - 2, p.x - 4));
            turnedHandles(next, handles);
            const APoint<double> h = handles[turningHandle];
            EXPECT_NEAR((h.x - 4) * (p.y - 2), (h.y - 2) * (p.x - 4), 1e-12);
            EXPECT_GT((h.x - 4) * (p.x - 4) + (h.y - 2) * (p.y - 2), 0);
        }
}

TEST(DataDrag, WidensToTheLeastSizeInPixels)
{
    const Axis axis(-1, 1);  // 0.01 a pixel in x, 0.005 in y
    const AxisPixels pixels(&axis);
    ARect<double> rect{4, 2, 4.02, 2.5};
    widenToLeast(rect, 0, {8, 8}, pixels);
    EXPECT_NEAR(rect.right - rect.left, 0.08, 1e-12);
    EXPECT_DOUBLE_EQ((rect.right + rect.left) / 2, 4.01);
    EXPECT_EQ(rect.bottom, 2.5);
    rect = {4.02, 2, 4, 2.5};
    widenToLeast(rect, pi / 2, {8, 8}, pixels);
    EXPECT_NEAR(rect.left - rect.right, 0.04, 1e-12);  // along y there are twice the pixels
}

TEST(DataDrag, NeverStoresWhatIsNotFinite)
{
    const double far[] = {-1e308, 1e308, 1.7e308, -0.0, 5e-324, 3};
    std::mt19937 random(12);
    const auto any = [&] { return far[random() % 6]; };
    const auto pixel = [&] { return static_cast<int>(random()); };
    for (int i = 0; i < 20000; ++i) {
        const Axis axis(i % 3 - 1, i / 3 % 3 - 1, {any(), any(), any(), any(), 0, 1});
        const AxisPixels pixels(i % 5 ? &axis : nullptr);
        const TurnedDataRect start{{any(), any(), any(), any()}, i % 7 - 3.0};
        TurnedDataRect next =
            TurnedDataDrag(start, static_cast<int>(random() % 11), {pixel(), pixel()}, graph,
                           {any(), any()}, true, pixels)
                .at({pixel(), pixel()});
        widenToLeast(next.rect, next.angle, {8, 8}, pixels);
        ASSERT_TRUE(isFinite(next.rect) && std::isfinite(next.angle));
        ASSERT_TRUE(isFinite(withDraggedEdges(start.rect, {0, 0, 0, 0}, {1, 1, 1, 1}, pixels)));
    }
}
