#include "pavane/trackers/shapes/rect_handles.h"

#include "pavane/trackers/shapes/polygon_shape.h"
#include "pavane/trackers/shapes/RectDrag.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

using namespace pavane;

namespace
{

constexpr int handle = 6;
const CRect valid(0, 0, 800, 600);

}  // namespace

TEST(RectHandles, AreShownWhereThereIsRoomForThem)
{
    struct {
        CRect rect;
        int size, mask;
    } const cases[] = {
        {{0, 0, 20, 40}, 6, 175}, {{0, 0, 20, 20}, 6, 15}, {{0, 0, 40, 40}, 6, 255},
        {{0, 0, 40, 20}, 6, 95},  {{0, 0, 23, 0}, 0, 95},  {{22, 0, 0, 23}, 6, 175},
        {{0, 0, 8, 50}, 4, 175},  {{0, 0, 0, 0}, 0, 15},   {{INT_MIN, 0, INT_MAX, 1}, 0, 95},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(handleMask(c.rect, handle), c.mask) << c.rect.right;
        EXPECT_EQ(handleSizeFor(c.rect, handle), c.size) << c.rect.right;
    }
}

TEST(RectHandles, LieTwoPixelsBeyondTheEdges)
{
    const CRect rect(100, 100, 160, 140);
    const CRect squares[] = {{98, 98, 104, 104},   {156, 98, 162, 104}, {156, 136, 162, 142},
                             {98, 136, 104, 142},  {127, 98, 133, 104}, {156, 117, 162, 123},
                             {127, 136, 133, 142}, {98, 117, 104, 123}};
    for (int code = 0; code < 8; ++code)
        EXPECT_EQ(handleRect(rect, code, handle, handle), squares[code]) << code;
}

TEST(RectHandles, KeepTheirEdgesInARectangleThatIsInsideOut)
{
    const CRect upright(100, 100, 160, 140);
    struct {
        CRect rect;
        int becomes[8];
    } const cases[] = {
        {{160, 100, 100, 140}, {1, 0, 3, 2, 4, 7, 6, 5}},
        {{100, 140, 160, 100}, {3, 2, 1, 0, 6, 5, 4, 7}},
        {{160, 140, 100, 100}, {2, 3, 0, 1, 6, 7, 4, 5}},
    };
    for (const auto& c : cases)
        for (int code = 0; code < 8; ++code) {
            EXPECT_EQ(normalizedHit(c.rect, code), c.becomes[code]);
            EXPECT_EQ(handleRect(c.rect, code, handle, handle),
                      handleRect(upright, c.becomes[code], handle, handle));
        }
    EXPECT_EQ(normalizedHit(cases[2].rect, hitMiddle), hitMiddle);
    EXPECT_EQ(normalizedHit(cases[2].rect, hitNothing), hitNothing);
}

TEST(RectHandles, AreHitInAscendingOrderAndOnlyWhereShown)
{
    const CRect rect(100, 100, 120, 140);  // no top and bottom handles
    const CRect all(98, 98, 122, 142);
    const struct {
        CPoint point;
        int hit;
    } cases[] = {{{98, 98}, 0},    {{121, 98}, 1},  {{121, 141}, 2}, {{98, 141}, 3},
                 {{110, 99}, 8},   {{121, 120}, 5}, {{98, 120}, 7},  {{110, 120}, 8},
                 {{122, 120}, -1}, {{97, 98}, -1}};
    for (const auto& c : cases)
        EXPECT_EQ(hitRectHandles(rect, c.point, handle, handle, all), c.hit)
            << c.point.x << ' ' << c.point.y;
}

TEST(RectDrag, FollowsThePointerAndKeepsTheRest)
{
    const CRect start(100, 100, 200, 180);
    struct {
        const char* what;
        int hit;
        CPoint press, to;
        CRect result;
    } const cases[] = {
        {"corner", 0, {99, 101}, {79, 91}, {80, 90, 200, 180}},
        {"inside out", 0, {100, 100}, {300, 300}, {300, 300, 200, 180}},
        {"beyond the valid edge", 5, {200, 140}, {900, 500}, {100, 100, 800, 180}},
        {"top only", 4, {150, 100}, {10, 60}, {100, 60, 200, 180}},
        {"less than the least", 2, {200, 180}, {105, 103}, {100, 100, 112, 112}},
        {"least on the other side", 7, {100, 140}, {203, 140}, {212, 100, 200, 180}},
        {"move", 8, {150, 140}, {160, 120}, {110, 80, 210, 160}},
        {"move into a corner", 8, {150, 140}, {-900, 2000}, {0, 520, 100, 600}},
        {"no movement", 2, {205, 181}, {205, 181}, {100, 100, 200, 180}},
    };
    for (const auto& c : cases) {
        const RectDrag drag(start, c.hit, c.press, valid);
        CRect rect = drag.at(c.to);
        keepLeastSize(rect, c.hit, {12, 12}, valid, {});
        EXPECT_EQ(rect, c.result) << c.what;
    }
    CRect band = RectDrag({797, 5, 797, 5}, 2, {797, 5}, valid).at({799, 9});
    keepLeastSize(band, 2, {12, 12}, valid, {});
    EXPECT_EQ(band, CRect(797, 5, 785, 17));  // no room on the right: to the left
    CRect kept = RectDrag(start, 7, {100, 140}, valid).at({500, 140});
    keepLeastSize(kept, 7, {12, 12}, valid, sidesOf(start, handleEdges(7)));
    EXPECT_EQ(kept, CRect(188, 100, 200, 180));
}

TEST(RectDrag, KeepsItsPromisesInRandomDrags)
{
    std::mt19937 random(5);
    const auto in = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    const int far[] = {INT_MIN, INT_MAX, -5, 4000};
    for (int drag = 0; drag < 4000; ++drag) {
        const CRect start(in(0, 380), in(0, 280), in(400, 800), in(300, 600));
        const int hit = in(0, 8);
        const CPoint press(in(0, 800), in(0, 600));
        const HandleEdges edges = handleEdges(hit);
        const DragSides sides = drag % 2 ? sidesOf(start, edges) : DragSides();
        const RectDrag value(start, hit, press, valid);
        ASSERT_EQ(value.at(press), start);
        for (int event = 0; event < 25; ++event) {
            const CPoint to(in(0, 9) ? in(-50, 850) : far[in(0, 3)],
                            in(0, 9) ? in(-50, 650) : far[in(0, 3)]);
            CRect rect = value.at(to);
            if (to == press)
                continue;
            keepLeastSize(rect, hit, {12, 12}, valid, sides);
            const CRect box = normalized(rect);
            ASSERT_TRUE(box.left >= 0 && box.top >= 0 && box.right <= 800 && box.bottom <= 600);
            ASSERT_TRUE(edges.x == EdgeX::left || hit == hitMiddle || rect.left == start.left);
            ASSERT_TRUE(edges.x == EdgeX::right || hit == hitMiddle || rect.right == start.right);
            ASSERT_TRUE(edges.y == EdgeY::top || hit == hitMiddle || rect.top == start.top);
            ASSERT_TRUE(edges.y == EdgeY::bottom || hit == hitMiddle ||
                        rect.bottom == start.bottom);
            ASSERT_TRUE(box.Width() >= 12 && box.Height() >= 12);
            ASSERT_TRUE(!(drag % 2) || rect == box) << "turned inside out";
            ASSERT_TRUE(hit != hitMiddle || rect.Size() == start.Size());
        }
    }
}

TEST(RectDrag, TakesAnyNumbers)
{
    const int extremes[] = {INT_MIN, INT_MIN + 1, -1, 0, 7, INT_MAX - 1, INT_MAX};
    std::mt19937 random(6);
    const auto any = [&] { return extremes[random() % 7]; };
    for (int i = 0; i < 20000; ++i) {
        const CRect start(any(), any(), any(), any());
        const CRect bounds(any(), any(), any(), any());
        const int hit = static_cast<int>(random() % 9);
        CRect rect = RectDrag(start, hit, {any(), any()}, bounds).at({any(), any()});
        keepLeastSize(rect, hit, {12, 12}, bounds, {});
        (void)handleRect(rect, hit, handleSizeFor(rect, handle), handle);
        const CPoint corners[] = {{rect.left, rect.top}, {rect.right, rect.bottom}, {any(), any()}};
        (void)insidePolygon(corners, 3, {any(), any()});
        (void)polygonStep(corners, 3, {any(), any()}, {any(), any()}, bounds);
    }
    SUCCEED();  // the sanitizers speak up otherwise
}

TEST(Polygon, IsBoundedFromMinusOneOn)
{
    const CPoint points[] = {{-30, -5}, {-10, -40}, {-20, -20}};
    EXPECT_EQ(GetAroundRect(points, 3), CRect(-30, -40, -1, -1));
    EXPECT_EQ(GetAroundRect(points, 0), CRect(INT_MAX, INT_MAX, -1, -1));
    EXPECT_EQ(boundingBox(points, 3), CRect(-30, -40, -10, -5));
}

TEST(Polygon, HasInsideWhatItsEdgesEncloseAnOddNumberOfTimes)
{
    const CPoint square[] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
    const CPoint star[] = {{50, 0}, {80, 90}, {5, 35}, {95, 35}, {20, 90}};
    const struct {
        const CPoint* points;
        int n;
        CPoint p;
        int inside;
    } cases[] = {{square, 4, {0, 0}, 1},  {square, 4, {9, 9}, 1}, {square, 4, {10, 5}, 0},
                 {square, 4, {5, 10}, 0}, {star, 5, {50, 50}, 0}, {star, 5, {50, 10}, 1},
                 {star, 5, {30, 40}, 1},  {star, 5, {5, 5}, 0},   {square, 0, {0, 0}, 0},
                 {square, 2, {5, 0}, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(insidePolygon(c.points, c.n, c.p), c.inside) << c.p.x << ' ' << c.p.y;
}

TEST(Polygon, StopsAtTheEdgeThatItMeetsAndSlidesAlongIt)
{
    const CPoint points[] = {{700, 100}, {790, 100}, {700, 300}};
    EXPECT_EQ(polygonStep(points, 3, {750, 150}, {900, 170}, valid), CPoint(10, 20));
    EXPECT_EQ(polygonStep(points, 3, {750, 150}, {0, -500}, valid), CPoint(-700, -100));
    const CPoint outside[] = {{-50, 10}, {900, 20}};  // no step makes it worse
    EXPECT_EQ(polygonStep(outside, 2, {10, 10}, {40, 40}, valid), CPoint(0, 30));
    EXPECT_EQ(hitVertex(points, 3, {702, 302}, handle), 2);
    EXPECT_EQ(hitVertex(points, 3, {703, 303}, handle), -1);
}
