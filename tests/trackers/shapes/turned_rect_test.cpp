#include "pavane/trackers/shapes/turned_rect.h"

#include "pavane/trackers/shapes/outline_strips.h"
#include "pavane/trackers/shapes/TurnedRectDrag.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <random>

using namespace pavane;

namespace
{

const CRect valid(0, 0, 800, 600);
double radians(double degrees) { return degrees * pi / 180; }

}  // namespace

TEST(TurnedRect, TurnsItsPointsAboutTheCentreAndCutsThem)
{
    EXPECT_EQ(PointTransform({50, 0}, {0, 0}, pi / 2), CPoint(0, 50));
    EXPECT_EQ(PointTransform({10, 0}, {0, 0}, radians(60)), CPoint(5, 8));  // 8.66
    EXPECT_EQ(PointTransform({-10, 0}, {0, 0}, radians(60)), CPoint(-5, -8));
    EXPECT_EQ(PointTransform({INT_MAX, 0}, {INT_MIN, 0}, 0), CPoint(INT_MIN + (1 << 30), 0));
    CPoint points[turnedHandleCount];
    turnedHandles({-50, -25, 50, 25}, pi / 2, points);
    EXPECT_EQ(points[5], CPoint(0, 50));
    EXPECT_EQ(points[turningHandle], CPoint(0, 25));
    turnedHandles({10, 20, 51, 60}, 0, points);
    const CPoint plain[] = {{10, 20}, {51, 20}, {51, 60}, {10, 60}, {30, 20},
                            {51, 40}, {30, 60}, {10, 40}, {40, 40}};
    for (int i = 0; i < turnedHandleCount; ++i)
        EXPECT_EQ(points[i], plain[i]) << i;
}

TEST(TurnedRect, SnapsOneStepOnInTheDirectionOfMotion)
{
    const struct {
        double degrees, direction;
        int step;
        double result;
    } cases[] = {{20, 1, 15, 30},     {20, -1, 15, 15},   {30, 1, 15, 45},   {30, -1, 15, 30},
                 {-179, -1, 15, 180}, {-20, -1, 15, -30}, {-20, 1, 15, -15}, {170, 1, 15, 180},
                 {180, 1, 15, -165},  {0, -1, 15, 0},     {20, 1, 0, 20},    {20, 1, -3, 20},
                 {-170, -1, 20, 180}};
    for (const auto& c : cases)
        EXPECT_NEAR(snappedAngle(radians(c.degrees), c.direction, c.step), radians(c.result), 1e-12)
            << c.degrees << ' ' << c.direction;
    EXPECT_EQ(pointerAngle({5, 7}, {9, 7}), pi);  // level to the left, not -pi
    EXPECT_EQ(pointerAngle({9, 3}, {9, 7}), pi / 2);
    EXPECT_NO_FATAL_FAILURE((void)pointerAngle({INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}));
}

TEST(TurnedRect, IsWidenedAboutItsCentre)
{
    CRect rect(100, 50, 104, 150);
    widenToLeast(rect, {8, 8});
    EXPECT_EQ(rect, CRect(98, 50, 106, 150));
    CRect empty(7, 7, 7, 7);
    widenToLeast(empty, {8, 9});
    EXPECT_EQ(empty, CRect(3, 3, 11, 12));
}

TEST(EllipseOutline, HasAsManyPointsAsItsLargerSemiAxisHasPixels)
{
    AArray<CPoint> points;
    ellipseOutline(points, {100, 100, 300, 180}, 0);
    ASSERT_EQ(points.count(), 100);
    EXPECT_EQ(points(0), CPoint(300, 140));
    EXPECT_EQ(points(25), CPoint(200, 180));
    ellipseOutline(points, {100, 100, 300, 180}, pi / 2);  // turned as PointTransform turns
    EXPECT_EQ(points(0), CPoint(200, 240));
    for (const CRect& box : {CRect(0, 0, 1, 50), CRect(0, 0, 50, 1), CRect()}) {
        ellipseOutline(points, box, 1);
        EXPECT_EQ(points.count(), 0);
    }
    ellipseOutline(points, {INT_MIN, INT_MIN, INT_MAX, INT_MAX}, 1000);
    EXPECT_EQ(points.count(), 65536);
}

TEST(TurnedRectDrag, FollowsThePointerInItsOwnFrame)
{
    const CRect rect(300, 200, 400, 260);
    const struct {
        const char* what;
        double degrees;
        int hit;
        CPoint press, to;
        bool mayInvert;
        CRect result;
    } cases[] = {
        {"upright, right side", 0, 7, {400, 230}, {450, 500}, true, {300, 200, 450, 260}},
        {"upright, inside out", 0, 9, {300, 230}, {450, 230}, true, {400, 200, 450, 260}},
        {"upright, kept", 0, 9, {300, 230}, {450, 230}, false, {400, 200, 400, 260}},
        {"a quarter turn", 90, 7, {350, 280}, {350, 300}, true, {290, 210, 410, 270}},
        {"half a turn", 180, 2, {400, 260}, {420, 270}, true, {300, 200, 420, 270}},
        {"move", 30, 1, {350, 230}, {370, 220}, true, {320, 190, 420, 250}},
    };
    for (const auto& c : cases) {
        const TurnedRectDrag drag({rect, radians(c.degrees)}, c.hit, c.press, valid, rect,
                                  c.mayInvert);
        EXPECT_EQ(drag.at(c.to).rect, c.result) << c.what;
        EXPECT_EQ(drag.at(c.press), drag.start()) << c.what;
    }
    const TurnedRectDrag turn({rect, 0}, hitTurning, {375, 230}, valid, rect, true);
    EXPECT_DOUBLE_EQ(turn.at({350, -5000}).angle, pi / 2);  // not clamped
    EXPECT_EQ(turn.at({350, 230}).angle, 0);
}

TEST(TurnedRectDrag, TakesAnyNumbers)
{
    const int extremes[] = {INT_MIN, INT_MIN + 1, -1, 0, 7, INT_MAX - 1, INT_MAX};
    std::mt19937 random(8);
    const auto any = [&] { return extremes[random() % 7]; };
    const auto rect = [&] { return CRect(any(), any(), any(), any()); };
    for (int i = 0; i < 10000; ++i) {
        const TurnedRect start{rect(), i % 3 * 1.1};
        TurnedRect next = TurnedRectDrag(start, static_cast<int>(random() % 11), {any(), any()},
                                         rect(), rect(), i % 2)
                              .at({any(), any()});
        widenToLeast(next.rect, {8, 8});
        ASSERT_TRUE(std::isfinite(next.angle));
        const CPoint line[] = {{any(), any()}, {any(), any()}, {any(), any()}};
        std::vector<CRect> strips;
        addOutlineStrips(strips, line, 3, true, 5);
        ASSERT_LE(strips.size(), 1000U);
    }
}

TEST(OutlineStrips, CoverTheLineAndLittleElse)
{
    const CPoint square[] = {{100, 100}, {500, 100}, {500, 400}, {100, 400}};
    std::vector<CRect> strips;
    addOutlineStrips(strips, square, 4, true, 5);
    ASSERT_EQ(strips.size(), 4U);
    EXPECT_EQ(strips[0], CRect(94, 94, 506, 106));
    strips.clear();
    const CPoint slanted[] = {{0, 0}, {400, 300}};
    addOutlineStrips(strips, slanted, 2, false, 3);
    int area = 0;
    for (const CRect& r : strips)
        area += r.Width() * r.Height();
    EXPECT_LT(area, 400 * 300 / 5);
    for (int i = 0; i <= 400; ++i) {
        bool covered = false;
        for (const CRect& r : strips)
            covered = covered ||
                      (r.PtInRect({i - 3, i * 3 / 4 - 3}) && r.PtInRect({i + 3, i * 3 / 4 + 3}));
        ASSERT_TRUE(covered) << i;
    }
}
