#include "tessel/sky_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

using namespace pavane;

TEST(SkyPosition, IsReadInEveryUsualSpelling)
{
    using System = SkyFrame::System;
    static constexpr struct {
        const char* text;
        double longitude, latitude;
        System system = System::icrs;
        double equinox = 2000;
    } good[] = {
        {"12:30:49.5 +12:23:30", 187.70625, 12.39166666666667},
        {"12h30m49.5s, +12d23m30s", 187.70625, 12.39166666666667},
        {" 12 30 49.5  +12 23 30 ", 187.70625, 12.39166666666667},
        {"12 30 49.5 12 23 30", 187.70625, 12.39166666666667},
        {"12h 30m 49.5s +12\u00b0 23\u2032 30\u2033", 187.70625, 12.39166666666667},
        {"RA 12h30m49.5s Dec +12\u00b023'30\"", 187.70625, 12.39166666666667},
        {"187.70625 12.5", 187.70625, 12.5},
        {"187.70625d -12.5deg", 187.70625, -12.5},
        {"-10 1e1", 350, 10},
        {"12h -0d00m36s", 180, -0.01},
        {"(0h30m \u221200\u00b030\u2032)", 7.5, -0.5},
        {"FK5 12:30 +12:30", 187.5, 12.5, System::fk5},
        {"12:30 +12:30 fk5 at 1975", 187.5, 12.5, System::fk5, 1975},
        {"12:30 +12:30 J1975", 187.5, 12.5, System::fk5, 1975},
        {"J123049.5+122330", 187.70625, 12.39166666666667, System::fk5},
        {"B1230+1230", 187.5, 12.5, System::fk4, 1950},
        {"283.5 -74.5 galactic", 283.5, -74.5, System::galactic},
        {"gal 283:30 -74:30", 283.5, -74.5, System::galactic},
        {"l=283.5 b=+74.5 (Galactic)", 283.5, 74.5, System::galactic},
        {"ecl 10 20", 10, 20, System::ecliptic},
    };
    for (const auto& g : good) {
        SkyPosition read;
        std::string error;
        EXPECT_TRUE(readSkyPosition(g.text, {System::icrs, 2000}, read, error)) << g.text << error;
        EXPECT_NEAR(read.longitude, g.longitude, 1e-9) << g.text;
        EXPECT_NEAR(read.latitude, g.latitude, 1e-9) << g.text;
        EXPECT_EQ(nameOf(read.frame), nameOf({g.system, g.equinox})) << g.text;
    }
    for (const char* bad : {"",
                            " ",
                            "12h",
                            "-0d00m01s",
                            "nan",
                            "nan nan",
                            "inf 0",
                            "1 2 3",
                            "10 91",
                            "400 10",
                            "25h +10d",
                            "12:60:00 +10:00:00",
                            "12:30 +12:30 FK6",
                            "M87",
                            "12:30:49 +12:23:28 icrs fk5",
                            "+ -",
                            "1e999 3",
                            "12:30 +12:30 fk4 at 1960",
                            "J",
                            "\u00b0 \u00b0"}) {
        SkyPosition read;
        read.longitude = -1;
        std::string error;
        EXPECT_FALSE(readSkyPosition(bad, {}, read, error)) << bad;
        EXPECT_TRUE(read.longitude == -1 && !error.empty()) << bad;
    }
}

TEST(SkyPosition, IsWrittenWithTheDigitsOfACellAndReadBack)
{
    static constexpr struct {
        SkyPosition position;
        double step;
        const char* text;
    } cases[] = {
        {{187.70593, -12.39112, {}}, 1e-3, "12h30m49.42s \u221212\u00b023\u203228.0\u2033 (ICRS)"},
        {{187.7059307, 0, {SkyFrame::System::fk5, 1975}},
         1e-7,
         "12h30m49.423368s +00\u00b000\u203200.00000\u2033 (FK5 at 1975)"},
        {{359.99999, 0.5, {SkyFrame::System::galactic, 2000}},
         0.01,
         "0.000\u00b0 +0.500\u00b0 (galactic)"},
        {{359.99999, -0.00001, {}}, 1, "00h00m00s +00\u00b000\u203200\u2033 (ICRS)"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(skyPositionText(c.position, c.step), c.text);
        SkyPosition read;
        std::string error;
        ASSERT_TRUE(readSkyPosition(c.text, {}, read, error)) << error;
        EXPECT_NEAR(std::remainder(read.longitude - c.position.longitude, 360), 0, c.step);
        EXPECT_NEAR(read.latitude, c.position.latitude, c.step);
        EXPECT_EQ(read.frame, c.position.frame);
    }
}
