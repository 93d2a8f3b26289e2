#include "pavane/axes/AB2DAxis.h"
#include "pavane/axes/axis_titles.h"

#include <gtest/gtest.h>

using namespace pavane;

TEST(Titles, TakeUpThePrefixOrTheMultiplier)
{
    const struct {
        const char* name;
        double max;
        const char* title;
        double divisor;
    } cases[] = {
        {"Flux [%sJy]", 3e6, "Flux [MJy]", 1e6},
        {"Flux [%sJy]", 3e-6, "Flux [\u00b5Jy]", 1e-6},
        {"Flux [%sJy]", 3e34, "Flux [1e33Jy]", 1e33},
        {"Flux", 3e6, "Flux \u20221e+06", 1e6},
        {"Flux", 3, "Flux", 1},
        {"Flux~ [Jy]", 3e4, "Flux \u202210000 [Jy]", 1e4},
        {"Time ~[s]", 3, "Time [s]", 1},
        {"50%% of %sJy and %s, %n", 3e3, "50% of KJy and %s, %n", 1e3},
        {"100%% %1000d ~~", 3, "100%% %1000d ~", 1},  // no prefix marker: per cent signs are text
    };
    for (const auto& c : cases) {
        CString title;
        int n = 5;
        int plus = 1;
        int minus = 2;
        int power = 0;
        double min = 0;
        double max = c.max;
        double first = 0;
        double step = 0;
        EXPECT_EQ(
            AB2DAxis::getAxisParam(c.name, title, n, plus, minus, min, max, first, step, power),
            c.divisor);
        EXPECT_EQ(title, c.title);
    }
}

TEST(FixedDivisor, IsThePowerAboutTheMiddleDecade)
{
    const struct {
        const char* name;
        double a, b;
        const char* title;
        double divisor;
    } cases[] = {
        {"T~", 1e-4, 1e-2, "T \u20220.0001", 1e-4},  // 10^-3, lowered by one
        {"T~", 1e2, 1e4, "T \u20221000", 1e3},      {"T", 1e2, 1e4, "before", 1},
        {"[%sJy]", 1e-4, 1e-2, "[Jy]", 1},          {"[%sJy]", 1e4, 1e6, "[MJy]", 1e6},
        {"T~", -1, 0, "T \u20221e-307", 1e-307},  // no logarithm: saturates
    };
    for (const auto& c : cases) {
        CString title = "before";
        double a = c.a;
        double b = c.b;
        EXPECT_DOUBLE_EQ(AB2DAxis::getAxisPower(c.name, title, a, b), c.divisor) << c.name << a;
        EXPECT_EQ(title, c.title);
    }
}
