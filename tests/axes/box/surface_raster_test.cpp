#include "pavane/axes/box/SurfaceRaster.h"
#include "tests/axes/box/box_scenes.h"
#include "tests/axes/box/plain_depth.h"

#include <gtest/gtest.h>

using namespace pavane;

namespace
{

bool isSame(const SurfacePixel& a, const SurfacePixel& b)
{
    return a.part == b.part &&
           (a.part == SurfacePart::nothing || (a.cell == b.cell && a.second == b.second));
}

TEST(SurfaceRasterTest, PicturesAreThoseOfAPlainDepthBuffer)
{
    long all = 0, different = 0;
    for (unsigned number = 0; number < 220; ++number) {
        const RandomScene random(number);
        constexpr int width = RandomScene::width, height = RandomScene::height;
        SurfaceRaster raster;
        ASSERT_TRUE(raster.draw(random.view, random.scene, {0, 0, width, height}));
        PlainDepth plain(random.view, width, height);
        plain.add(random.scene.first, 0);
        plain.add(random.scene.second, 1);
        int far = 0;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                all += plain.pixel(x, y).part != SurfacePart::nothing;
                if (isSame(raster.pixel(x, y), plain.pixel(x, y)))
                    continue;
                ++different;
                // an edge that lies a pixel aside, either way
                bool isNear[2] = {};
                for (int v = std::max(y - 1, 0); v <= std::min(y + 1, height - 1); ++v)
                    for (int u = std::max(x - 1, 0); u <= std::min(x + 1, width - 1); ++u) {
                        isNear[0] |= isSame(raster.pixel(u, v), plain.pixel(x, y));
                        isNear[1] |= isSame(raster.pixel(x, y), plain.pixel(u, v));
                    }
                far += !(isNear[0] && isNear[1]);
            }
        EXPECT_EQ(far, 0) << number;
    }
    EXPECT_LT(different, all / 1000);
    EXPECT_GT(all, 500000);
}

}  // namespace
