#include "pavane/axes/ranges/log_ticks.h"

#include "pavane/axes/TickSet.h"
#include "tessel/value_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using namespace pavane;

namespace
{

std::string text(double min, double max)
{
    AArray<ALogItem> items;
    ALogItem below;
    ALogItem above;
    TMnMx range{min, max};
    GetLogArray(items, range, &below, &above);
    std::string result = valToStr(below.value, 6) + " <";
    for (int i = 0; i < items.count(); ++i)
        result += " " + valToStr(items(i).value, 6);
    return result + " > " + valToStr(above.value, 6);
}

std::string labels(const TickSet& set)
{
    std::string result;
    for (const TickSet::Tick& tick : set.major)
        result += (result.empty() ? "" : " ") + tick.label;
    return result;
}

}  // namespace

TEST(LogTicks, StandAtOneToNineOfEachDecadeInside)
{
    const struct {
        double min, max;
        const char* text;
    } cases[] = {
        {2.5, 7, "2 < 3 4 5 6 7 > 8"},
        {1, 9.5, "0 < 1 2 3 4 5 6 7 8 9 > 10"},  // nothing below a power of ten in its decade
        {0.75, 20, "0.7 < 0.8 0.9 1 2 3 4 5 6 7 8 9 10 20 > 30"},
        {1000, 1000.5, "0 < 1000 > 2000"},
        {0, 10, "0 < > 0"},
        {-1, 10, "0 < > 0"},
        {5, 5, "0 < > 0"},
        {1, std::numeric_limits<double>::infinity(), "0 < > 0"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(text(c.min, c.max), c.text);
}

TEST(LogTicks, CountWithAThousandthOfAStepToSpare)
{
    const struct {
        double min, max;
        const char* text;
    } cases[] = {
        {0.1f, 9.9995, "0.09 < 0.1 0.2 0.3 0.4 0.5 0.6 0.7 0.8 0.9 1 2 3 4 5 6 7 8 9 10 > 20"},
        {2.0009, 4.9991, "1 < 2 3 4 5 > 6"},
        {2.0011, 4.9989, "2 < 3 4 > 5"},
    };
    for (const auto& c : cases) {
        const TMnMx wide = withTickAllowance({c.min, c.max});
        EXPECT_EQ(text(wide.min, wide.max), c.text);
    }
    for (const TMnMx range :
         {TMnMx{-1, 5}, TMnMx{5, 2}, TMnMx{5e-324, std::numeric_limits<double>::max()}}) {
        const TMnMx wide = withTickAllowance(range);
        EXPECT_TRUE(wide.min == range.min && wide.max == range.max);
    }
}

TEST(LogTicks, LeaveNothingOfAFormerCall)
{
    AArray<ALogItem> items;
    TMnMx range{0.02, 0.03};
    ALogItem below{7, 7, 7};
    ASSERT_EQ(GetLogArray(items, range, &below, nullptr), 2);
    EXPECT_EQ(items(1).exponent, -2);
    EXPECT_EQ(items(1).index, 2);
    range = {3, 2};
    EXPECT_EQ(GetLogArray(items, range, &below, nullptr), 0);
    EXPECT_EQ(below.exponent, -1);
}

TEST(LogTicks, RiseOverTheWholeRangeOfADouble)
{
    AArray<ALogItem> items;
    TMnMx range{5e-324, std::numeric_limits<double>::max()};
    ASSERT_GT(GetLogArray(items, range, nullptr, nullptr), 5000);
    for (int i = 1; i < items.count(); ++i)
        ASSERT_LT(items(i - 1).value, items(i).value);
    EXPECT_EQ(items(items.count() - 1).value, 1e308);
}

TEST(Decade, IsThatOfThePowerItself)
{
    for (int d = -300; d <= 300; ++d) {
        double power = 0;
        ASSERT_TRUE(stoval("1e" + std::to_string(d), power));
        ASSERT_EQ(decadeOf(power), d);
        ASSERT_EQ(decadeOf(std::nextafter(power, 0)), d - 1);
    }
}

TEST(LogLabels, NameDecadesAndInShortRangesTwoAndFive)
{
    const struct {
        double min, max;
        const char* labels;
    } cases[] = {
        {1, 200, "1 10 100"},
        {3, 60, "5 10 20 50"},
        {2e7, 3e8, "2·10⁷ 5·10⁷ 10⁸ 2·10⁸"},
        {1e-6, 1e2, "10⁻⁶ 10⁻⁴ 10⁻² 10⁰ 10²"},
        {2.2, 4.1, "2.4 2.8 3.2 3.6 4.0"},  // linear: no label of the scale would fall inside
    };
    for (const auto& c : cases)
        EXPECT_EQ(labels(logarithmicTicks({"", {c.min, c.max}, 5, 1, 2, true})), c.labels);
}

TEST(MinorTicks, DivideAStepIntoRoundParts)
{
    const TickSet set = linearTicks({"", {0, 1}, 5, 1, 2, true});  // steps of 0.2
    ASSERT_EQ(set.minor.size(), 15U);
    EXPECT_DOUBLE_EQ(set.minor[0], 0.05);
    EXPECT_EQ(timeTicks({"", {0, 86400}, 4, 1, 2, true}).minor.size(), 20U);  // hours
}
