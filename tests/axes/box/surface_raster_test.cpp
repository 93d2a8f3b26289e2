#include "pavane/axes/box/soft_edges.h"
#include "pavane/axes/box/SurfaceRaster.h"
#include "pavane/axes/box/SurfaceSight.h"
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

TEST(SurfaceRasterTest, APickIsWhatThePixelShows)
{
    long hits = 0, different = 0;
    for (unsigned number = 0; number < 220; ++number) {
        const RandomScene random(number);
        SurfaceRaster raster;
        ASSERT_TRUE(raster.draw(random.view, random.scene,
                                {0, 0, RandomScene::width, RandomScene::height}));
        const SurfaceSight sight(random.view, random.scene);
        for (int k = 0; k < 300; ++k) {
            const int x = k * 7919 % RandomScene::width, y = k * 104729 % RandomScene::height;
            const SurfacePixel& pixel = raster.pixel(x, y);
            SurfaceHit hit;
            const int isHit = sight.pick({x + 0.5, y + 0.5}, hit);
            hits += isHit;
            const bool isShown =
                pixel.part == SurfacePart::upper || pixel.part == SurfacePart::under;
            different += isHit ? !isShown || pixel.cell != hit.cell || pixel.second != hit.second ||
                                     (pixel.part == SurfacePart::under) != hit.fromBelow
                               : isShown;
            if (isHit) {
                const CPointF seen = random.view.project(hit.at);
                EXPECT_NEAR(std::hypot(seen.x - x - 0.5, seen.y - y - 0.5), 0, 1e-6);
                EXPECT_FALSE(sight.isHidden(hit.at)) << number;
            }
        }
    }
    EXPECT_LE(different, hits / 300);
    EXPECT_GT(hits, 5000);
}

TEST(SurfaceRasterTest, SoftEdgesComeNearThoseOfAFinerPicture)
{
    constexpr int width = RandomScene::width, height = RandomScene::height, finer = 4;
    double hard = 0, soft = 0;
    for (unsigned number = 0; number < 60; ++number) {
        const RandomScene random(number);
        SurfaceRaster raster, fine;
        BoxView near = random.view;
        near.fit({0, 0, width * finer, height * finer});
        ASSERT_TRUE(raster.draw(random.view, random.scene, {0, 0, width, height}));
        ASSERT_TRUE(fine.draw(near, random.scene, {0, 0, width * finer, height * finer}));
        std::vector<std::uint32_t> image(width * height, 0xFFFFFFFF);
        for (int i = 0; i < width * height; ++i)
            if (raster.pixel(i % width, i / width).part != SurfacePart::nothing)
                image[static_cast<std::size_t>(i)] = 0xFF000000;
        const std::vector<std::uint32_t> plain = image;
        softenEdges(raster, {100, 100}, 1000, image.data(), width);
        for (int i = 0; i < width * height; ++i) {
            double free = 0;
            for (int k = 0; k < finer * finer; ++k)
                free +=
                    fine.pixel(i % width * finer + k % finer, i / width * finer + k / finer).part ==
                    SurfacePart::nothing;
            const double grey = 255 * free / (finer * finer);
            const auto at = static_cast<std::size_t>(i);
            hard += std::fabs(grey - (plain[at] & 255));
            soft += std::fabs(grey - (image[at] & 255));
            EXPECT_EQ(image[at] >> 24, 255u);
        }
    }
    EXPECT_LT(soft, 0.7 * hard);
}

TEST(SurfaceRasterTest, ColoursAreThoseOfTheCellsShown)
{
    AMatrix<float> cells(9, 12);
    for (int i = 0; i < cells.cells(); ++i)
        cells.data()[i] = static_cast<float>(i * 2);
    cells(4, 5) = NAN;
    const AFloatMatrixAccess access(cells);
    const AStridedAccess<float> strided(cells.data(), 9, 12, 12, 1, 1e9);
    const MapScale scale(MapScaleKind::linear, 0, 226);
    SurfaceGrid grid;
    ASSERT_TRUE(grid.set(access, scale, {}));
    BoxView view;
    view.fit({0, 0, 90, 70});
    SurfaceScene scene;
    scene.first = {&grid, 1, 1};
    SurfaceRaster raster;
    ASSERT_TRUE(raster.draw(view, scene, {0, 0, 90, 70}));
    for (const AMatrixAccess* colors : {static_cast<const AMatrixAccess*>(&access),
                                        static_cast<const AMatrixAccess*>(&strided)}) {
        std::vector<unsigned char> bits(100 * 70, 255);
        ASSERT_TRUE(paintSurface(raster, {colors, &scale, {}}, {}, bits.data(), 100));
        for (int y = 0; y < 70; ++y)
            for (int x = 0; x < 90; ++x) {
                const SurfacePixel& pixel = raster.pixel(x, y);
                const auto cell = static_cast<int>(pixel.cell);
                EXPECT_EQ(bits[static_cast<std::size_t>(y * 100 + x)],
                          pixel.part == SurfacePart::nothing ? 255
                          : cell == 4 * 12 + 5               ? 229
                                                             : cell * 2);
            }
    }
    EXPECT_FALSE(paintSurface(raster, {&access, &scale, {200, 100, 0}}, {}, nullptr, 0));
    EXPECT_FALSE(raster.draw(view, scene, {5, 5, 5, 9}));
}

}  // namespace
