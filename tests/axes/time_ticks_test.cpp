#include "pavane/axes/ranges/time_ticks.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>
#include <string>

using namespace pavane;

TEST(TimeTicks, StandAtWholeUnitsWithClockLabels)
{
    constexpr double hour = 3600;
    constexpr double day = 24 * hour;
    const struct {
        double min, max;
        const char* header;
        const char* labels;
    } cases[] = {
        {0, day, "[h:m]", "00:00 04:00 08:00 12:00 16:00 20:00 24:00"},
        {20 * hour, 28 * hour, "[d h:m]", "0d 20:00 0d 22:00 1d 00:00 1d 02:00 1d 04:00"},
        {-hour, hour, "[h:m]", "-01:00 -00:40 -00:20 00:00 00:20 00:40 01:00"},
        {12 * hour, 12 * hour + 60, "[h:m:s]",
         "12:00:00 12:00:10 12:00:20 12:00:30 12:00:40 12:00:50 12:01:00"},
        {12 * hour, 12 * hour + 0.5, "[h:m:s]",
         "12:00:00 12:00:00.1 12:00:00.2 12:00:00.3 12:00:00.4 12:00:00.5"},
        {0, 0.001, "[s]", "0 0.0002 0.0004 0.0006 0.0008 0.001"},
        {0, 10 * day, "[days]", "0 2 4 6 8 10"},
        {day, 0, "[h:m]", "00:00 04:00 08:00 12:00 16:00 20:00 24:00"},
    };
    for (const auto& c : cases) {
        AArray<double> ticks;
        AObjArray<CString> labels;
        CString header;
        const int count = chooseTimeTicks({c.min, c.max}, 5, ticks, labels, &header);
        EXPECT_EQ(count, labels.count());
        std::string text;
        for (int i = 0; i < labels.count(); ++i)
            text += (i ? " " : "") + labels(i);
        EXPECT_EQ(text, c.labels);
        EXPECT_EQ(header, c.header);
    }
}

TEST(TimeTicks, RiseEvenlyInsideAnyRange)
{
    std::mt19937_64 random(4);
    for (int trial = 0; trial < 5000; ++trial) {
        TMnMx range{std::bit_cast<double>(random()), std::bit_cast<double>(random())};
        if (trial % 2) {
            range.min = std::ldexp(static_cast<double>(random() >> 40), -10);
            range.max = range.min + std::pow(10, static_cast<double>(random() % 1400) / 100 - 6);
        }
        const int n = static_cast<int>(random() % 20);
        AArray<double> ticks;
        AObjArray<CString> labels;
        const int count = chooseTimeTicks(range, n, ticks, labels, nullptr);
        ASSERT_LE(count, 3 * n + 4);
        if (trial % 2 == 0)
            continue;
        for (int i = 1; i < count; ++i) {
            ASSERT_GE(ticks(0), range.min - 1e-3 * (ticks(1) - ticks(0)));
            ASSERT_LE(ticks(i), range.max + 1e-3 * (ticks(1) - ticks(0)));
            ASSERT_NEAR(ticks(i) - ticks(i - 1), ticks(1) - ticks(0), 1e-9);
            ASSERT_NE(labels(i), labels(i - 1)) << range.min << " " << range.max;
        }
    }
}
