#include "pavane/calibration/gains/gain_intervals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using namespace pavane;

constexpr double second = 1 / 86400.0;

TEST(GainIntervals, BeginWithEachScan)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        const char* what;
        std::vector<std::array<double, 2>> scans;  ///< seconds: times of first and last point
        double seconds;
        std::vector<std::array<double, 2>> intervals;  ///< points are of 2 s
    };
    const Case cases[] = {
        {"one interval a scan", {{0, 58}, {100, 118}}, 0, {{-1, 59}, {99, 119}}},
        {"pieces, the rest joins", {{1, 64}}, 20, {{0, 20}, {20, 40}, {40, 65}}},
        {"pieces, the rest is long enough", {{1, 71}}, 20, {{0, 20}, {20, 40}, {40, 60}, {60, 72}}},
        {"shorter than a point", {{1, 5}}, 0.1, {{0, 2}, {2, 4}, {4, 6}}},
        {"longer than the scan", {{1, 5}}, 1e9, {{0, 6}}},
        {"scans that meet", {{1, 9}, {10, 19}}, 0, {{0, 9.5}, {9.5, 20}}},
        {"not a time", {{nan, 5}, {9, 1}, {1, 5}}, 0, {{0, 6}}},
        {"not a length", {{1, 5}}, nan, {{0, 6}}},
        {"one point", {{1, 1}}, 20, {{0, 2}}},
    };
    for (const Case& c : cases) {
        std::vector<UvScan> scans;
        for (const auto& [start, end] : c.scans)
            scans.push_back({1, 1, 1, start * second, end * second, 0, 0});
        const auto intervals = gainIntervals(scans, c.seconds, 2 * second);
        ASSERT_EQ(intervals.size(), c.intervals.size()) << c.what;
        for (std::size_t i = 0; i < intervals.size(); ++i) {
            EXPECT_NEAR(intervals[i].start / second, c.intervals[i][0], 1e-6) << c.what << i;
            EXPECT_NEAR(intervals[i].end / second, c.intervals[i][1], 1e-6) << c.what << i;
        }
    }
}

TEST(GainIntervals, AreOfOneSubarrayEach)
{
    const std::vector<UvScan> scans{
        {1, 2, 1, 0, 1, 0, 0}, {1, 1, 1, 0.5, 2, 0, 0}, {1, 2, 1, 3, 4, 0, 0}};
    const auto whole = wholeInterval(scans, 0);
    ASSERT_EQ(whole.size(), 2U);
    EXPECT_EQ(whole[1].subarray, 2);
    EXPECT_EQ(whole[1].end, 4);
    EXPECT_EQ(gainIntervals(scans, 0, 0).size(), 3U);
}

}  // namespace
