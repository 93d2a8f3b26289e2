#include "apps/view/several/MapList.h"

#include <gtest/gtest.h>

namespace pavane
{

TEST(MapList, KeepsTheCurrentMapAndTheOneBefore)
{
    MapList maps;
    EXPECT_EQ(maps.current(), -1);
    EXPECT_EQ(maps.next(1), -1);
    for (const char* file : {"/a/one.fits", "/a/two.fits", "/a/three.fits"})
        (void)maps.add(file);
    EXPECT_EQ(maps.current(), 2);
    EXPECT_EQ(maps.other(), 1);
    EXPECT_EQ(maps.next(1), 0);
    EXPECT_EQ(maps.next(-7), 1);
    EXPECT_TRUE(maps.choose(0));
    EXPECT_FALSE(maps.choose(0) || maps.choose(3) || maps.choose(-1));
    EXPECT_EQ(maps.other(), 2);
    EXPECT_TRUE(maps.remove(2));  // the one before: the next one is the other now
    EXPECT_EQ(maps.other(), 1);
    EXPECT_EQ(maps.find("/a/two.fits"), 1);
    EXPECT_TRUE(maps.choose(1) && maps.remove(1));
    EXPECT_EQ(maps.current(), 0);
    EXPECT_EQ(maps.other(), -1);
    EXPECT_FALSE(maps.remove(1));
}

TEST(MapList, TellsEqualNamesApart)
{
    MapList maps;
    for (const char* file : {"/data/C/map.fits", "/data/X/map.fits", "/data/X/other.fits"})
        (void)maps.add(file);
    EXPECT_EQ(maps.names(), (std::vector<std::string>{"C/map.fits", "X/map.fits", "other.fits"}));
}

TEST(MapList, PlacesMapsSideBySideWithoutOverlap)
{
    const CRect room(10, 20, 1010, 620);
    for (int count = 1; count <= 9; ++count) {
        MapList maps;
        for (int i = 0; i < count; ++i)
            (void)maps.add(std::to_string(i));
        EXPECT_EQ(maps.places(room), std::vector<CRect>(static_cast<std::size_t>(count), room));
        maps.setShown(MapsShown::sideBySide);
        const std::vector<CRect> places = maps.places(room);
        ASSERT_EQ(places.size(), static_cast<std::size_t>(count));
        long area = 0;
        for (std::size_t i = 0; i < places.size(); ++i) {
            CRect both;
            EXPECT_TRUE(both.IntersectRect(places[i], room));
            EXPECT_EQ(both, places[i]);
            area += long{places[i].Width()} * places[i].Height();
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(both.IntersectRect(places[i], places[j])) << count;
        }
        EXPECT_GT(area, long{room.Width()} * room.Height() * 95 / 100) << count;
    }
}

TEST(MapList, BlinksInSteps)
{
    EXPECT_EQ(blinkSeconds(firstBlinkSeconds, 0), firstBlinkSeconds);
    EXPECT_EQ(blinkSeconds(0.2, -1), 0.2);
    EXPECT_EQ(blinkSeconds(5, 3), 5);
    EXPECT_EQ(blinkSeconds(1, 1), 1.5);
}

}  // namespace pavane
