// What drags of turned shapes promise, in pixels and in data values.
#include "pavane/axes/ABAxis.h"
#include "pavane/trackers/shapes/data_drags.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace pavane;

namespace
{

const CRect valid(0, 0, 800, 600);

struct InPixels {
    using Point = CPoint;
    static constexpr double slack = 2;  // what whole coordinates cost
    explicit InPixels(int) {}
    TurnedRect start(CPoint a, CPoint b, double angle) { return {{a.x, a.y, b.x, b.y}, angle}; }
    TurnedRectDrag drag(const TurnedRect& start, int hit, CPoint press)
    {
        return {start, hit, press, valid, start.rect, true};
    }
};

struct InValues {
    using Point = APoint<double>;
    static constexpr double slack = 1e-12;
    explicit InValues(int round) : axis(round % 3 - 1, round / 3 % 3 - 1, nullptr, 0)
    {
        axis.setGraphRect(valid);
        axis.setMinMax({1, 7, 1, 3});
    }
    TurnedDataRect start(CPoint from, CPoint to, double angle)
    {
        const Point a = AxisPixels(&axis).value(from);
        const Point b = AxisPixels(&axis).value(to);  // between the pixels, left below right
        return {{std::min(a.x, b.x) + 1e-4, a.y + 1e-4, std::max(a.x, b.x), b.y}, angle};
    }
    TurnedDataDrag drag(const TurnedDataRect& start, int hit, CPoint press)
    {
        return {start, hit, press, valid, {0.2, 0.2}, true, AxisPixels(&axis)};
    }
    ABAxis axis;
};

template <typename Plane>
void leaveTheOppositeSide()
{
    std::mt19937 random(7);
    const auto in = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    for (int round = 0; round < 5000; ++round) {
        Plane plane(round);
        const auto start = plane.start({in(0, 300), in(0, 200)}, {in(330, 800), in(230, 600)},
                                       round % 4 ? in(-3141, 3141) / 1000.0 : 0);
        const int hit = in(1, hitTurning);
        const CPoint press(in(0, 800), in(0, 600));
        const auto drag = plane.drag(start, hit, press);
        ASSERT_EQ(drag.at(press), start);
        typename Plane::Point before[turnedHandleCount], after[turnedHandleCount];
        turnedHandles(start, before);
        const HandleEdges edges = isSizing(hit) ? handleEdges(hit - hitFirstHandle) : HandleEdges();
        for (int event = 0; event < 15; ++event) {
            const auto next = drag.at({in(-50, 850), in(-50, 650)});
            const auto &r = next.rect, &s = start.rect;
            ASSERT_TRUE(r.left <= r.right && std::isfinite(next.angle));
            if (!isSizing(hit)) {
                ASSERT_NEAR(r.right - r.left, s.right - s.left, 1e-12);
                ASSERT_NEAR(r.bottom - r.top, s.bottom - s.top, 1e-12);
                continue;
            }
            ASSERT_EQ(next.angle, start.angle);
            turnedHandles(next, after);
            for (int corner = 0; corner < 4; ++corner) {
                const HandleEdges at = handleEdges(corner);
                if (at.x == edges.x || at.y == edges.y)
                    continue;
                double off = 800;
                for (int k = 0; k < 4; ++k)  // numbers change when sides pass
                    off = std::min<double>(off, std::max(std::abs(after[k].x - before[corner].x),
                                                         std::abs(after[k].y - before[corner].y)));
                ASSERT_LE(off, start.angle == 0 ? 0 : Plane::slack) << hit << ' ' << start.angle;
            }
        }
    }
}

}  // namespace

TEST(TurnedDrags, LeaveTheOppositeSideInPixels) { leaveTheOppositeSide<InPixels>(); }
TEST(TurnedDrags, LeaveTheOppositeSideInValues) { leaveTheOppositeSide<InValues>(); }
