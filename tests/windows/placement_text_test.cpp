#include "pavane/windows/placement_text.h"

#include <gtest/gtest.h>

using namespace pavane;

TEST(PlacementText, HoldsTenNumbersInOrder)
{
    const PlacementRecord record{4294967295u, 3, {-1, -2}, {-8, -31}, {10, 20, 610, 420}};
    const CString text = "4294967295,3,-1,-2,-8,-31,10,20,610,420";
    EXPECT_EQ(placementText(record), text);
    PlacementRecord read;
    EXPECT_TRUE(readPlacement(text, read));
    EXPECT_EQ(read, record);
    EXPECT_TRUE(readPlacement(" 8, 1,-1,-1,-1,-1,10,20,610,420, 7 and more", read));
    EXPECT_EQ(read, (PlacementRecord{8, 1, {-1, -1}, {-1, -1}, {10, 20, 610, 420}}));
}

TEST(PlacementText, RefusesWhatIsNotWhole)
{
    const PlacementRecord before{7, 7, {7, 7}, {7, 7}, {7, 7, 7, 7}};
    for (const char* text :
         {"", "garbage", "8,1,-1,-1,-1,-1,10,20,610", "8,1,-1,-1,-1,-1,10,20,610,",
          "8;1;-1;-1;-1;-1;10;20;610;420", "8,1,-1,-1,-1,-1,10,20,6e2,420",
          "-8,1,-1,-1,-1,-1,10,20,610,420", "8,1,-1,-1,-1,-1,10,20,99999999999,420",
          "8,1,-1,-1,-1,-1,-2147483648,20,2147483647,420", "8,1,-1,-1,-1,-1,610,20,10,420",
          ",,,,,,,,,"}) {
        PlacementRecord read = before;
        EXPECT_FALSE(readPlacement(text, read)) << text;
        EXPECT_EQ(read, before) << text;
    }
}
