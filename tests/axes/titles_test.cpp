#include "pavane/axes/AB2DAxis.h"
#include "pavane/axes/axis_titles.h"
#include "pavane/axes/fitted_text.h"
#include "platform/picture.h"

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
        int n = 5, plus = 1, minus = 2, power = 0;
        double min = 0, max = c.max, first = 0, step = 0;
        EXPECT_EQ(
            AB2DAxis::getAxisParam(c.name, title, n, plus, minus, min, max, first, step, power),
            c.divisor);
        EXPECT_EQ(title, c.title);
    }
}

TEST(FittedText, KeepsWholeCharactersAndWholeLines)
{
    CPicture picture(1, 1);
    const auto dc = picture.dc();
    const int unit = dc->GetTextExtent("x").cx;  // without fonts all characters are as wide
    const int height = dc->GetTextExtent("x").cy;
    const struct {
        const char *text, *line;
        int width;
    } lines[] = {
        {"flux", "flux", 4},
        {"fluxes", "fl...", 5},
        {"\u00b5\u00b5\u00b5\u00b5\u00b5", "\u00b5...", 4},
        {"a b c", "a...", 4},
        {"fluxes", "...", 3},
        {"fluxes", "", 2},
        {"", "", 0},
    };
    for (const auto& c : lines)
        EXPECT_EQ(fittedLine(*dc, c.text, c.width * unit), c.line) << c.text;
    const struct {
        const char *text, *kept;
        int width, lines;
    } blocks[] = {
        {"ab cd ef gh", "ab cd ef gh", 5, 2},
        {"ab cd ef gh", "ab cd...", 8, 1},
        {"abcdefgh ij", "ab... ij", 5, 2},
        {"ab cd ef gh ij", "ab cd ef...", 5, 2},
        {"ab cd", "a...", 4, 0},  // one line always
    };
    for (const auto& c : blocks)
        EXPECT_EQ(fittedLines(*dc, c.text, c.width * unit, c.lines * height), c.kept) << c.text;
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
        double a = c.a, b = c.b;
        EXPECT_DOUBLE_EQ(AB2DAxis::getAxisPower(c.name, title, a, b), c.divisor) << c.name << a;
        EXPECT_EQ(title, c.title);
    }
}
