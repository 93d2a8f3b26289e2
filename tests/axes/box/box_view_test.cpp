#include "pavane/axes/box/BoxView.h"
#include "pavane/axes/box/SurfaceGrid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using namespace pavane;

namespace
{

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TEST(BoxViewTest, PlacesFollowTheFormulasOfTheProjection)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(-0.5, 0.5);
    for (int i = 0; i < 200; ++i) {
        const double azimuth = place(random) * 1000, elevation = (place(random) + 0.5) * 90;
        const double h = 0.2 + std::fabs(place(random));
        BoxView view;
        view.setView(azimuth, elevation);
        view.setHeight(h);
        view.fit({0, 0, 1200, 800});
        const BoxPoint at{place(random), place(random), place(random)};
        const double a = azimuth * M_PI / 180, e = elevation * M_PI / 180;
        const double base = at.q * std::cos(a) - at.p * std::sin(a);
        const double right = at.p * std::cos(a) + at.q * std::sin(a);
        const double up = at.s * h * std::cos(e) + base * std::sin(e);
        const double depth = base * std::cos(e) - at.s * h * std::sin(e);
        const CPointF seen = view.project(at);
        const double scale = view.transform().ys / (-h * std::cos(e));
        EXPECT_NEAR(seen.x, 600 + scale * right, 1e-9);
        EXPECT_NEAR(seen.y, 400 - scale * up, 1e-9);
        EXPECT_NEAR(view.depth(at), depth, 1e-12);
        BoxPoint back;
        if (elevation > 1 && view.unproject(seen, at.s, back)) {
            EXPECT_NEAR(back.p, at.p, 1e-9);
            EXPECT_NEAR(back.q, at.q, 1e-9);
        }
        // along a line of sight the picture stands still and the depth rises
        const BoxPoint step = view.sight();
        const BoxPoint behind{at.p + step.p, at.q + step.q, at.s + step.s};
        EXPECT_NEAR(view.project(behind).x, seen.x, 1e-9);
        EXPECT_NEAR(view.project(behind).y, seen.y, 1e-9);
        EXPECT_GT(view.depth(behind), view.depth(at));
        for (const double p : {-0.5, 0.5})
            for (const double q : {-0.5, 0.5})
                for (const double s : {-0.5, 0.5}) {
                    const CPointF corner = view.project({p, q, s});
                    EXPECT_GE(std::min(corner.x, corner.y), -1e-9);
                    EXPECT_LE(corner.x, 1200 + 1e-9);
                    EXPECT_LE(corner.y, 800 + 1e-9);
                }
    }
}

TEST(BoxViewTest, BadValuesChangeNothingAndFarOnesAreCut)
{
    BoxView view;
    const BoxView first = view;
    EXPECT_FALSE(view.setView(nan, 10) || view.setView(10, nan) || view.setHeight(nan) ||
                 view.setZoom(0) || view.setZoom(nan) || view.setPan(nan, 0) ||
                 view.setOblique(nan, 1) || view.setBase(0, 1));
    EXPECT_TRUE(view == first);
    EXPECT_TRUE(view.setView(1e9, 1000));
    EXPECT_EQ(view.azimuth(), std::fmod(1e9, 360));
    EXPECT_EQ(view.elevation(), 90);
    EXPECT_TRUE(view.setView(-30, -5));
    EXPECT_EQ(view.azimuth(), 330);
    EXPECT_EQ(view.elevation(), 0);
}

TEST(BoxViewTest, LabelsStandOnTheNearLowerEdgesAndTheOutermostUprightOnes)
{
    struct {
        double azimuth, xAtQ, yAtP, zP, zQ, wallP, wallQ;
    } const cases[] = {
        {30, -0.5, 0.5, -0.5, -0.5, -0.5, 0.5}, {120, 0.5, 0.5, 0.5, -0.5, -0.5, -0.5},
        {210, 0.5, -0.5, 0.5, 0.5, 0.5, -0.5},  {300, -0.5, -0.5, -0.5, 0.5, 0.5, 0.5},
        {0, -0.5, 0.5, -0.5, -0.5, -0.5, 0.5},  {90, 0.5, 0.5, 0.5, -0.5, -0.5, -0.5},
        {180, 0.5, -0.5, 0.5, 0.5, 0.5, -0.5},  {270, -0.5, -0.5, -0.5, 0.5, 0.5, 0.5},
    };
    for (const auto& c : cases) {
        BoxView view;
        view.setView(c.azimuth, 35);
        const BoxEdges edges = view.edges();
        EXPECT_EQ(edges.x.from, (BoxPoint{-0.5, c.xAtQ, -0.5})) << c.azimuth;
        EXPECT_EQ(edges.y.to, (BoxPoint{c.yAtP, 0.5, -0.5})) << c.azimuth;
        EXPECT_EQ(edges.z.to, (BoxPoint{c.zP, c.zQ, 0.5})) << c.azimuth;
        EXPECT_EQ(edges.wallP, c.wallP) << c.azimuth;
        EXPECT_EQ(edges.wallQ, c.wallQ) << c.azimuth;
    }
}

TEST(SurfaceGridTest, ABlockIsItsGreatestCellAndKnowsIt)
{
    AMatrix<float> cells(37, 50);
    std::mt19937 random(3);
    for (int i = 0; i < cells.cells(); ++i)
        cells.data()[i] = i % 11 ? static_cast<float>(random() % 1000) : NAN;
    const AFloatMatrixAccess access(cells);
    SurfaceGrid grid, blocks;
    ASSERT_TRUE(grid.set(access, MapScale(MapScaleKind::linear, 0, 1000), {}, {3, 5, 40, 30}));
    EXPECT_EQ(grid.columns(), 40);
    EXPECT_EQ(grid.cell(2, 1), 6u * 50 + 5);
    EXPECT_FLOAT_EQ(grid.height(2, 1), cells(6, 5) / 1000 - 0.5f);
    ASSERT_TRUE(blocks.setBlocks(grid, 7, 4));
    ASSERT_EQ(blocks.columns(), 6);
    ASSERT_EQ(blocks.rows(), 8);
    for (int r = 0; r < 8; ++r)
        for (int c = 0; c < 6; ++c) {
            float most = -1;
            for (int y = r * 4; y < std::min(30, r * 4 + 4); ++y)
                for (int x = c * 7; x < std::min(40, c * 7 + 7); ++x)
                    most = std::fmax(most, grid.height(x, y));
            EXPECT_EQ(blocks.height(c, r), most);
            const auto cell = blocks.cell(c, r);
            EXPECT_FLOAT_EQ(cells.data()[cell] / 1000 - 0.5f, most);
        }
    EXPECT_DOUBLE_EQ(blocks.p(5), 0.5);
}

}  // namespace
