#include "pavane/axes/ranges/ticks.h"

#include "pavane/axes/ranges/decimal_power.h"
#include "tessel/value_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>

using namespace pavane;

namespace
{

struct Ticks {
    double min, max;
    int n = 5, plus = 1, minus = 2, power = 0;
    double first = 0, step = 0, divisor = 0;

    std::string labels() const
    {
        std::string text;
        for (int i = 0; i <= n; ++i)
            text += (i ? " " : "") + nValToStr(tickValue(first, step, i) / divisor, minus);
        return text;
    }
};

Ticks choose(double min, double max, int n = 5, int plus = 1, int minus = 2, int engineering = 0)
{
    Ticks t{min, max, n, plus, minus};
    t.divisor =
        chooseTicks(t.min, t.max, t.n, t.plus, t.minus, t.first, t.step, t.power, engineering);
    return t;
}

}  // namespace

TEST(DecimalPower, IsThatOfTheRoundedDigits)
{
    EXPECT_EQ(decimalPower(0, 1, 2), 0);
    EXPECT_EQ(decimalPower(9.99, 1, 1), 1);  // "10" has its point behind two digits
    EXPECT_EQ(decimalPower(-1234, 1, 2), 3);
    EXPECT_EQ(decimalPower(0.05, 1, 2), -2);
    EXPECT_EQ(decimalPower(5e-324, 1, 2), -307);
    EXPECT_EQ(decimalPower(std::numeric_limits<double>::infinity(), 1, 2), 0);
    EXPECT_EQ(greaterPower(0, 300, 1, 2), 2);
    EXPECT_EQ(greaterPower(0.003, 0, 1, 2), -3);
}

TEST(DecimalPower, MovesDigitsAcrossThePointWhereTheySuffice)
{
    const struct {
        double value;
        int plus, minus, power, newPlus, newMinus, engineering, engPlus, engMinus;
    } cases[] = {
        {50, 1, 2, 0, 2, 1, 0, 2, 1},   // one digit moves before the point
        {5e4, 1, 2, 4, 1, 2, 3, 2, 1},  // too large: 10^4, or 10^3 with one digit more
        {0.5, 1, 2, 0, 0, 3, 0, 0, 3},  // one moves behind it
        {0.005, 1, 2, -3, 1, 2, -3, 1, 2},
        {5e-5, 1, 2, -5, 1, 2, -6, 2, 1},  // floored: -5 is in the thousands of -6
        {5e8, 1, 0, 8, 1, 0, 6, 5, 0},     // digits after the point never fall below none
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        int plus = c.plus, minus = c.minus;
        EXPECT_EQ(labelPower(0, c.value, plus, minus), c.power);
        EXPECT_EQ(plus, c.newPlus);
        EXPECT_EQ(minus, c.newMinus);
        plus = c.plus;
        minus = c.minus;
        EXPECT_EQ(engineeringPower(0, c.value, plus, minus), c.engineering);
        EXPECT_EQ(plus, c.engPlus);
        EXPECT_EQ(minus, c.engMinus);
    }
}

TEST(EqualEnds, ArePartedByATenthAndStayReversedBelowZero)
{
    const struct {
        double value, min, max;
    } cases[] = {{0, -1, 1}, {10, 9, 11}, {-5, -4.5, -5.5}};
    for (const auto& c : cases) {
        double min = c.value, max = c.value;
        EXPECT_EQ(repairEqualEnds(min, max), 1);
        EXPECT_DOUBLE_EQ(min, c.min);
        EXPECT_DOUBLE_EQ(max, c.max);
        EXPECT_EQ(repairEqualEnds(min, max), 0);
    }
}

TEST(Ticks, FallOnRoundNumbersWithTheDigitsThatTheyNeed)
{
    const struct {
        double min, max;
        int engineering, power;
        const char* labels;
    } cases[] = {
        {0, 1, 0, 0, "0.0 0.2 0.4 0.6 0.8 1.0"},
        {-5, -5, 0, 0, "-5.4 -5.2 -5.0 -4.8 -4.6"},
        {0, 0, 0, 0, "-0.8 -0.4 0.0 0.4 0.8"},
        {0, 0.3, 0, 0, "0.00 0.05 0.10 0.15 0.20 0.25 0.30"},
        {1.1, 2.5, 0, 0, "1.2 1.5 1.8 2.1 2.4"},
        {0, 12345, 0, 4, "0.0 0.3 0.6 0.9 1.2"},
        {0, 12345, 1, 3, "0 3 6 9 12"},
        {-3e-9, 7e-9, 1, -9, "-2 0 2 4 6"},
        {1e6, 1e6 + 1, 0, 0, "1000000.0 1000000.2 1000000.4 1000000.6 1000000.8 1000001.0"},
        {-0.05, 100, 0, 0, "0 20 40 60 80 100"},
        {2, 2.000001, 0, 0, "2.0000000 2.0000002 2.0000004 2.0000006 2.0000008 2.0000010"},
        {0.2001, 0.9999, 0, 0, "0.2 0.4 0.6 0.8 1.0"},  // half a thousandth of a step off
        {0.2003, 0.9997, 0, 0, "0.4 0.6 0.8"},
    };
    for (const auto& c : cases) {
        const Ticks t = choose(c.min, c.max, 5, 1, 2, c.engineering);
        EXPECT_EQ(t.labels(), c.labels);
        EXPECT_EQ(t.power, c.power) << c.labels;
        EXPECT_EQ(t.n + 1, std::count(c.labels, c.labels + std::string(c.labels).size(), ' ') + 1);
    }
}

TEST(Ticks, StandAtTheEndsOfRangesThatAreTooFarOrTooNarrow)
{
    constexpr double big = std::numeric_limits<double>::max();
    const struct {
        double min, max, first, step;
    } cases[] = {
        {-big, big, -big, big},  // half of the span, which no double holds
        {1e307, 2e307, 1e307, 1e307},
        {1, 1 + 1e-12, 1, (1 + 1e-12) - 1},
        {2e-300, 4e-300, 2e-300, 2e-300},
    };
    for (const auto& c : cases) {
        const Ticks t = choose(c.min, c.max);
        EXPECT_EQ(t.n, 1);
        EXPECT_EQ(t.first, c.first);
        EXPECT_EQ(t.step, c.step);
        EXPECT_NE(nValToStr(t.first / t.divisor, t.minus),
                  nValToStr(tickValue(t.first, t.step, 1) / t.divisor, t.minus));
    }
    const Ticks reversed = choose(1, 0);
    EXPECT_EQ(reversed.min, 1);
    EXPECT_EQ(reversed.step, 0.2);
    const Ticks endless = choose(0, std::nan(""));
    EXPECT_EQ(endless.min, -1);
    EXPECT_EQ(endless.max, 1);
}

TEST(Ticks, BoundAnyCountOfIntervals)
{
    EXPECT_EQ(choose(0, 1, 0).n, choose(0, 1, 1).n);
    EXPECT_EQ(choose(0, 1, -7).n, choose(0, 1, 1).n);
    EXPECT_EQ(choose(0, 1, std::numeric_limits<int>::max()).n, mostIntervals);
    EXPECT_LE(choose(1, 1 + 2e-11, mostIntervals).n, 100);  // rounding would show
    // the only multiple of the step about is below the range
    EXPECT_EQ(choose(2.1, 3.5, 1).n, -1);
}

TEST(TicksForPower, AddDigitsUntilTheStepShows)
{
    double min = 0, max = 0.012, first = 0, step = 0;
    int n = 5, plus = 2, minus = 0;
    EXPECT_EQ(chooseTicksForPower(min, max, n, plus, minus, first, step, 0), 1.0);
    EXPECT_EQ(n, 4);
    EXPECT_DOUBLE_EQ(step, 0.003);
    EXPECT_EQ(minus, 3);
    EXPECT_EQ(plus, 0);
}

TEST(Ticks, HoldTheirPromisesOnRandomRanges)
{
    std::mt19937_64 random(1);
    const auto unit = [&random] { return std::uniform_real_distribution<double>(0, 1)(random); };
    for (int trial = 0; trial < 20000; ++trial) {
        const double centre = (unit() - 0.5) * std::pow(10, 40 * unit() - 20);
        const double span = std::fabs(centre) * std::pow(10, 2 - 14 * unit());
        const int wanted = 2 + static_cast<int>(random() % 12);
        const Ticks t = choose(centre, centre + span, wanted, 1 + static_cast<int>(random() % 3),
                               static_cast<int>(random() % 4), static_cast<int>(random() % 2));
        SCOPED_TRACE(valToStr(t.min) + " " + valToStr(t.max));
        ASSERT_GE(t.n, 0);
        ASSERT_LE(t.n, 2 * wanted + 1);
        ASSERT_GE(t.first, t.min - 1e-3 * t.step);
        ASSERT_LE(t.first + t.n * t.step, t.max + 1e-3 * t.step);
        std::string last;
        for (int i = 0; i <= t.n; ++i) {
            const double tick = tickValue(t.first, t.step, i);
            const std::string label = nValToStr(tick / t.divisor, t.minus);
            double read = 0;
            ASSERT_TRUE(stoval(label, read));
            ASSERT_NEAR(read * t.divisor, tick, 2e-3 * t.step) << label;
            ASSERT_NE(label, last);
            last = label;
        }
    }
}

TEST(Ticks, EndForAnyPairOfDoubles)
{
    std::mt19937_64 random(2);
    for (int trial = 0; trial < 20000; ++trial) {
        Ticks t = choose(std::bit_cast<double>(random()), std::bit_cast<double>(random()),
                         static_cast<int>(random()), static_cast<int>(random() % 40) - 10,
                         static_cast<int>(random() % 40) - 10, static_cast<int>(random() % 2));
        ASSERT_TRUE(std::isfinite(t.first) && std::isfinite(t.step));
        ASSERT_LE(t.n, 2 * mostIntervals);
        ASSERT_TRUE(t.power >= leastPower && t.power <= greatestPower);
        chooseTicksForPower(t.min, t.max, t.n, t.plus, t.minus, t.first, t.step,
                            static_cast<int>(random()));
        ASSERT_LE(t.n, 2 * mostIntervals);
    }
}
