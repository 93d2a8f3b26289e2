#include "tessel/fits_map.h"
#include "tessel/time_text.h"
#include "tessel/value_text.h"

#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace pavane
{

TEST(ValueText, WritesTheShortestTextThatReadsBack)
{
    const struct {
        double value;
        const char* text;
    } cases[] = {{0.1, "0.1"},
                 {100000, "100000"},
                 {1e30, "1e+30"},
                 {-0.0, "0"},
                 {-2.5e-7, "-2.5e-07"},
                 {1e15, "1000000000000000"},
                 {-9999999999999998, "-9999999999999998"},
                 {1e16, "1e+16"},
                 {0.0001, "0.0001"},
                 {std::numeric_limits<double>::quiet_NaN(), "nan"},
                 {-std::numeric_limits<double>::infinity(), "-inf"}};
    for (const auto& c : cases)
        EXPECT_EQ(valToStr(c.value), c.text);
    std::mt19937_64 random(1);
    for (int i = 0; i < 20000; ++i) {
        const double value =
            std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 1900) - 1000);
        double back = 0;
        ASSERT_TRUE(stoval(valToStr(value), back));
        EXPECT_EQ(back, value);
        // any number that is written plain has the digits that the C++ library gives it
        const double plain = std::pow(10, static_cast<double>(random() % 20000) / 1000 - 4) *
                             (random() % 2 ? 1 : -1);
        const double shown = random() % 4 ? plain : std::round(plain);
        if (std::abs(shown) >= 1e16 || shown == 0)
            continue;
        char digits[64];
        const auto end = std::to_chars(digits, digits + 64, shown, std::chars_format::fixed).ptr;
        EXPECT_EQ(valToStr(shown), std::string(digits, end));
    }
}

TEST(ValueText, WritesTheDigitsOfTheCLibraryButNeverMinusZero)
{
    EXPECT_EQ(valToStr(123456.0, 4), "1.235e+05");
    EXPECT_EQ(valToStr(0.5, 0), "0.5");
    EXPECT_EQ(valToStr(1.0 / 3, 99), "0.33333333333333331");
    EXPECT_EQ(nValToStr(-0.004, 2), "0.00");
    EXPECT_EQ(nValToStr(2.5, 0), "2");  // ties of the binary value go to the even digit
    EXPECT_EQ(nValToStr(1e308, 0).size(), 309u);
}

TEST(ValueText, ReadsAWholeNumberOrNothing)
{
    double value = 7;
    for (const char* bad : {"", " ", "+", "--1", "+-1", "1,5", "1.5x", "0x10", "1e999", "e5"})
        EXPECT_FALSE(stoval(bad, value)) << bad;
    EXPECT_EQ(value, 7);
    const struct {
        const char* text;
        double value;
    } good[] = {{" +1.5e3 \n", 1500}, {"-.5", -0.5}, {"1e-999", 0}, {"5.", 5}};
    for (const auto& c : good) {
        EXPECT_TRUE(stoval(c.text, value)) << c.text;
        EXPECT_EQ(value, c.value);
    }
    int whole = 0;
    EXPECT_FALSE(stoval("2147483648", whole));
    EXPECT_FALSE(stoval("1.0", whole));
    EXPECT_TRUE(stoval("-2147483648", whole));
}

TEST(TimeText, CarriesAndRunsOnPastADay)
{
    const struct {
        double seconds;
        int decimals;
        const char* text;
    } cases[] = {{59.96, 1, "00:01:00.0"},          {-90001.5, -1, "-25:00:01.5"},
                 {-0.04, 1, "00:00:00.0"},          {3599.9999999, -1, "01:00:00"},
                 {0.000001, -1, "00:00:00.000001"}, {360000, 0, "100:00:00"},
                 {1e18, 0, "277777777777777:46:40"}};
    for (const auto& c : cases) {
        EXPECT_EQ(timeToStr(c.seconds, c.decimals), c.text);
        EXPECT_EQ(dateTimeToStr(c.seconds, c.decimals), c.text);
    }
    EXPECT_EQ(timeToStr(std::numeric_limits<double>::infinity()), "");
}

TEST(TimeText, ReadsWhatItWrote)
{
    std::mt19937_64 random(2);
    for (int i = 0; i < 2000; ++i) {
        const double seconds = (static_cast<double>(random() % 4000000) - 2000000) / 8;
        double back = 0;
        ASSERT_TRUE(strToTime(timeToStr(seconds, 3), back));
        EXPECT_EQ(back, seconds);
    }
}

TEST(TimeText, RefusesWhatIsNoTime)
{
    double seconds = 5;
    for (const char* bad : {"", "-", ":", "1:", "1:60", "1:00:60", "1:2:3:4", "1.5:00", "1:-1",
                            "--1", "1e3", "nan", "12:3.4:5"})
        EXPECT_FALSE(strToTime(bad, seconds)) << bad;
    EXPECT_EQ(seconds, 5);
    EXPECT_TRUE(strToTime(" -90:30.5 ", seconds));  // the first field may pass 60
    EXPECT_EQ(seconds, -5430.5);
}

/// The process in a locale with a decimal comma; `active` tells whether it could be made.
struct CommaLocale {
    CommaLocale()
    {
        const std::string folder = testing::TempDir() + "pavane-locale";
        const std::string make = "mkdir -p " + folder + " && localedef -i de_DE -f UTF-8 " +
                                 folder + "/de_DE.UTF-8 >/dev/null 2>&1";
        if (std::system(make.c_str()) < 0)
            return;
        setenv("LOCPATH", folder.c_str(), 1);
        active = std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
    }
    ~CommaLocale()
    {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
    }
    bool active = false;
};

TEST(CommaLocale, ChangesNeitherTextsNorFiles)
{
    const CommaLocale locale;
    if (!locale.active && std::getenv("CI"))
        FAIL() << "localedef is missing where all tools should be";
    if (!locale.active)
        GTEST_SKIP() << "localedef is missing";
    ASSERT_EQ(std::string(std::localeconv()->decimal_point), ",");
    EXPECT_EQ(valToStr(0.5), "0.5");
    EXPECT_EQ(timeToStr(1.5), "00:00:01.5");
    double value = 0;
    EXPECT_TRUE(stoval("2.5", value));
    EXPECT_EQ(value, 2.5);

    const std::string name = testing::TempDir() + "comma.fits";
    FitsMap map;
    std::string error;
    map.header.axes.resize(2);
    map.header.axes[0].crval = 12.25;
    ASSERT_TRUE(map.cells.allocate(1, 1));
    map.cells(0, 0) = 1.5f;
    ASSERT_TRUE(writeFitsMap(name, map.cells, map.header, error)) << error;
    ASSERT_TRUE(readFitsMap(name, -1, map, error)) << error;
    EXPECT_EQ(map.header.axes[0].crval, 12.25);
    EXPECT_EQ(map.cells(0, 0), 1.5f);
}

}  // namespace pavane
