#include "platform/core/region_cover.h"
#include "platform/core/region_union.h"
#include "platform/core/WindowSurface.h"
#include "platform/gdi_constants.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

using namespace pavane;

namespace
{

long long areaOf(const std::vector<CRect>& rects)
{
    long long area = 0;
    for (const CRect& r : rects)
        area += 1LL * r.Width() * r.Height();
    return area;
}

Region outlineOf(const CPoint* corners, int count)
{
    Region region;
    for (int i = 0; i < count; ++i) {
        thinLine(corners[i], corners[(i + 1) % count], {0, 0, 2000, 2000}, [&](const LineRun& run) {
            for (int k = 0; k < run.count; ++k) {
                const int x = run.x + (run.horizontal ? k * run.step : 0);
                const int y = run.y + (run.horizontal ? 0 : k * run.step);
                region = Region::combined(region, Region(CRect(x, y, x + 1, y + 1)), RGN_OR);
            }
        });
    }
    return region;
}

}  // namespace

TEST(RegionCover, IsExactForAFewRectangles)
{
    Region ring =
        Region::combined(Region(CRect(0, 0, 90, 70)), Region(CRect(1, 1, 89, 69)), RGN_DIFF);
    EXPECT_EQ(areaOf(coverOf(ring, 8)), 2 * 90 + 2 * 68);
    EXPECT_TRUE(coverOf(Region(), 8).empty());
}

TEST(RegionCover, HoldsEveryPixelOfASlantedOutlineAndLittleMore)
{
    const CPoint corners[] = {{100, 300}, {500, 40}, {760, 420}};
    const Region outline = outlineOf(corners, 3);
    const std::vector<CRect> cover = coverOf(outline, 48);
    EXPECT_LE(cover.size(), 48u);
    Region covered;
    for (const CRect& r : cover)
        covered = Region::combined(covered, Region(r), RGN_OR);
    EXPECT_TRUE(Region::combined(outline, covered, RGN_DIFF).empty());
    EXPECT_LT(areaOf(cover), 660LL * 380 / 4);  // a quarter of its box
}

TEST(RegionUnion, IsWhatAddingOneByOneGives)
{
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        std::vector<CRect> rects;
        Region plain;
        for (int i = 0; i < round % 30; ++i) {
            const int x = static_cast<int>(random() % 30);
            const int y = static_cast<int>(random() % 30);
            rects.emplace_back(x, y, x + static_cast<int>(random() % 12),
                               y + static_cast<int>(random() % 12));
            plain = Region::combined(plain, Region(rects.back()), RGN_OR);
        }
        const Region once = unionOf(rects);
        EXPECT_TRUE(Region::combined(once, plain, RGN_XOR).empty());
        EXPECT_EQ(once.bands().size(), plain.bands().size());
    }
}

TEST(DirtyBoxes, HoldAllThatWasAddedInAFewBoxes)
{
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        DirtyBoxes boxes;
        std::vector<CRect> added;
        for (int i = 0; i < 60; ++i) {
            const int x = static_cast<int>(random() % 1000);
            const int y = static_cast<int>(random() % 1000);
            added.emplace_back(x, y, x + static_cast<int>(random() % 9), y + 1);
            boxes.add(added.back());
        }
        const std::vector<CRect> taken = boxes.taken();
        EXPECT_LE(taken.size(), 16u);
        EXPECT_TRUE(boxes.empty());
        for (const CRect& r : added) {
            const bool held = std::any_of(taken.begin(), taken.end(), [&](const CRect& box) {
                CRect part;
                part.IntersectRect(box, r);
                return part == r;
            });
            EXPECT_TRUE(held || r.IsRectEmpty());
        }
    }
}

TEST(WindowSurface, KeepsThePictureAndReportsWhatIsPainted)
{
    WindowSurface surface;
    ASSERT_EQ(surface.resize(10, 8, 2), 1);
    EXPECT_EQ(surface.invalid().box(), CRect(0, 0, 10, 8));
    EXPECT_EQ(surface.takeInvalid().box(), CRect(0, 0, 10, 8));
    EXPECT_EQ(surface.takePainted().box(), CRect(0, 0, 10, 8));
    int calls = 0;
    surface.onTouched = [&] { ++calls; };
    PixelPainter(surface.reportedPixels(), nullptr).rect({2, 3, 400, 4}, {});
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(surface.takePainted().box(), CRect(2, 3, 10, 4));
    ASSERT_EQ(surface.resize(4, 20, 2), 1);
    EXPECT_EQ(*surface.pixels().at(3, 3), 0u);
    EXPECT_EQ(*surface.pixels().at(1, 3), 0xFFFFFFu);
    EXPECT_EQ(*surface.pixels().at(3, 19), 0xFFFFFFu);
    surface.clear();
    EXPECT_EQ(surface.reportedPixels().bits, nullptr);
    surface.invalidate(Region(CRect(0, 0, 5, 5)));
    EXPECT_TRUE(surface.invalid().empty());
}
