#include "pavane/axes/maps/straight_runs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace pavane;

namespace
{

double distanceTo(const CPointF& p, const CPointF& a, const CPointF& b)
{
    const double x = b.x - a.x, y = b.y - a.y, length = x * x + y * y;
    const double t =
        length > 0 ? std::clamp(((p.x - a.x) * x + (p.y - a.y) * y) / length, 0.0, 1.0) : 0;
    return std::hypot(p.x - a.x - t * x, p.y - a.y - t * y);
}

}  // namespace

TEST(StraightRuns, StayWithinTheTolerance)
{
    constexpr double tolerance = 0.03;
    struct Case {
        const char* name;
        double (*x)(double);
        double (*y)(double);
        std::size_t most;
    };
    const Case cases[] = {
        {"straight", [](double t) { return 3 * t; }, [](double t) { return t + 0.5; }, 2},
        {"circle", [](double t) { return 90 * std::cos(t / 57); },
         [](double t) { return 90 * std::sin(t / 57); }, 200},
        {"there and back", [](double t) { return std::fabs(t - 150); }, [](double) { return 2.0; },
         3},
        {"steps", [](double t) { return std::floor(t / 10); }, [](double t) { return t; }, 120},
        {"one point", [](double) { return 1.0; }, [](double) { return 1.0; }, 2},
    };
    for (const Case& line : cases) {
        std::vector<CPointF> all;
        for (int i = 0; i < 1000; ++i)
            all.push_back({line.x(0.4 * i), line.y(0.4 * i)});
        std::vector<CPointF> kept = all;
        keepStraightRuns(kept, tolerance);
        EXPECT_LE(kept.size(), line.most) << line.name;
        EXPECT_EQ(kept.front().x, all.front().x) << line.name;
        EXPECT_EQ(kept.back().y, all.back().y) << line.name;
        std::size_t run = 0;  // points come in the order of the runs
        for (const CPointF& point : all) {
            while (run + 2 < kept.size() &&
                   distanceTo(point, kept[run], kept[run + 1]) > tolerance * 1.0001)
                ++run;
            ASSERT_LE(distanceTo(point, kept[run], kept[run + 1]), tolerance * 1.0001)
                << line.name << ' ' << point.x << ' ' << point.y;
        }
    }
}
