#include "pavane/axes/maps/sky/sky_grid_wish.h"
#include "pavane/axes/maps/sky/sky_titles.h"

#include <gtest/gtest.h>

using namespace pavane;

TEST(SkyGridWish, IsReadAndWritten)
{
    for (const char* text : {"none", "ticks", "lines,galactic", "lines,FK5 at 1975,offsets",
                             "ticks,FK4 at 1950", "lines,sexagesimal"}) {
        SkyGridWish wish;
        CString error;
        EXPECT_TRUE(readSkyGridWish(text, wish, error)) << error;
        EXPECT_EQ(skyGridWishText(wish), text);
    }
    for (const char* bad :
         {"", "line", "lines,", ",lines", "lines,degrees,offsets", "lines,FK5,ICRS", "lines,FK6",
          "lines, ", "lines,,ICRS", "ticks,none"}) {
        SkyGridWish wish;
        wish.shown = SkyGridShown::ticks;
        CString error;
        EXPECT_FALSE(readSkyGridWish(bad, wish, error)) << bad;
        EXPECT_TRUE(wish.shown == SkyGridShown::ticks && !error.empty()) << bad;
    }
}

TEST(SkyGridWish, TitlesNameTheFrame)
{
    using System = SkyFrame::System;
    EXPECT_EQ(skyAxisTitle({System::icrs, 2000}, 0, 0), "Right ascension (ICRS)");
    EXPECT_EQ(skyAxisTitle({System::fk5, 1975}, 1, 1), "Relative declination (FK5 at 1975)");
    EXPECT_EQ(skyAxisTitle({System::galactic, 2000}, 1, 0), "Galactic latitude");
    EXPECT_EQ(skyAxisTitle({System::ecliptic, 1950}, 0, 0), "Ecliptic longitude (1950)");
}
