#include "pavane/trackers/masks/overlay_picture.h"

#include "pavane/images/palette_file.h"
#include "platform/core/PixelPainter.h"
#include "platform/system_colors.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>
#include <string>

using namespace pavane;

namespace
{

PixelCells pixels(double start, double step, int count, int cells)
{
    PixelCells result;
    result.setLinear(start, step, count, cells);
    return result;
}

/// "." nothing, "+" inside, "#" the line inside, "o" the line outside.
std::string asText(const std::vector<OverlayPart>& parts, int width)
{
    std::string text;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        text += ".+#o"[static_cast<int>(parts[i])];
        if (static_cast<int>(i) % width == width - 1)
            text += '\n';
    }
    return text;
}

std::string pictureOf(const ABitMatrix& mask, const PixelCells& columns, const PixelCells& rows)
{
    OverlayPicture picture;
    picture.setPixels(columns, rows);
    return asText(picture.parts(mask, {0, 0, picture.width(), picture.height()}), picture.width());
}

TEST(OverlayPicture, FollowsTheEdgesOfLargeCells)
{
    ABitMatrix mask(3, 3);
    mask.set(1, 1);
    mask.set(1, 2);
    mask.set(2, 2);
    // cells of 4 x 3 pixels, the first row at the bottom, one pixel column beyond the map
    EXPECT_EQ(pictureOf(mask, pixels(-0.5, 0.25, 13, 3), pixels(2.5, -1.0 / 3, 9, 3)),
              ".......o####o\n"
              ".......o#++#o\n"
              "....oooo#++#o\n"
              "...o####+++#o\n"
              "...o#++++++#o\n"
              "...o########o\n"
              "....oooooooo.\n"
              ".............\n"
              ".............\n");
}

TEST(OverlayPicture, ShowsEverySetCellWherePixelsHoldMany)
{
    ABitMatrix mask(1, 200);
    mask.set(0, 67);
    mask.setSpan(0, 120, 159);
    EXPECT_EQ(pictureOf(mask, pixels(-0.5, 10, 20, 200), pixels(-0.5, 1, 1, 1)),
              ".....o#o...o####o...\n");
    EXPECT_EQ(pictureOf(mask, pixels(199.5, -10, 20, 200), pixels(-0.5, 1, 1, 1)),
              "...o####o...o#o.....\n");
}

TEST(OverlayPicture, PartsOfThePictureFitTogetherAndChangeWhereItSays)
{
    std::mt19937 random(4);
    const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
    for (int round = 0; round < 60; ++round) {
        ABitMatrix mask(50, 150);
        for (int i = 0; i < 40; ++i)
            mask.setSpan(below(50), below(150), below(150));
        OverlayPicture picture;
        picture.setPixels(pixels(below(150), 0.1 + below(30) / 10.0, 90, 150),
                          pixels(below(50), -0.1 - below(20) / 10.0, 70, 50));
        const CRect all(0, 0, 90, 70);
        const auto before = picture.parts(mask, all);
        std::vector<std::uint32_t> whole(90 * 70, 0x00204060);
        std::vector<std::uint32_t> tiled = whole;
        picture.blend(mask, all, {}, whole.data(), 90);
        for (int y = 0; y < 70; y += 9)
            for (int x = -5; x < 90; x += 31)
                picture.blend(mask, {x, y, x + 31, y + 9}, {}, tiled.data() + y * 90 + x, 90);
        ASSERT_EQ(whole, tiled);
        const CRect block(below(150), below(50), 150, 50);
        for (int r = block.top; r < block.bottom; ++r)
            for (int c = block.left; c < block.right; ++c)
                mask.set(r, c, below(2));
        const auto after = picture.parts(mask, all);
        const CRect reach = picture.pixelsOf(block);
        for (int y = 0; y < 70; ++y)
            for (int x = 0; x < 90; ++x) {
                const auto at = static_cast<std::size_t>(y * 90 + x);
                ASSERT_TRUE(before[at] == after[at] || reach.PtInRect({x, y})) << x << ' ' << y;
            }
    }
}

TEST(OverlayPicture, BlendsByShares)
{
    ABitMatrix mask(3, 3);
    mask.setAll(1);
    OverlayPicture picture;
    picture.setPixels(pixels(-1.5, 1, 5, 3), pixels(-1.5, 1, 5, 3));
    const OverlayStyle style{RGB(255, 255, 255), RGB(0, 0, 0), 128};
    std::uint32_t row[5] = {0x00804020, 0x00804020, 0x00804020, 0x00804020, 0x00804020};
    picture.blend(mask, {0, 2, 5, 3}, style, row, 5);
    EXPECT_EQ(row[0], 0x00402010u);
    EXPECT_EQ(row[1], 0x00BF9F8Fu);
    EXPECT_EQ(row[2], overlayTint(0x00804020));
    EXPECT_EQ(row[4], 0x00402010u);
}

TEST(OverlayPicture, TintStandsOutOnEveryPalette)
{
    for (const char* const name : {"defpal", "diverging", "grey", "heat"}) {
        std::ifstream file(PAVANE_SOURCE_DIR "/pavane/resources/palettes/" + std::string(name) +
                           ".pal");
        PALETTEENTRY colors[paletteColors];
        ASSERT_TRUE(parsePalette(std::string(std::istreambuf_iterator<char>(file), {}), colors))
            << name;
        for (const PALETTEENTRY& c : colors) {
            const COLORREF bare = RGB(c.peRed, c.peGreen, c.peBlue);
            ASSERT_GE(ContrastRatio(bare, colorOf(overlayTint(pixelOf(bare)))), 2)
                << name << ' ' << std::hex << bare;
        }
    }
}

}  // namespace
