#include "pavane/axes/maps/cells/fit_beam.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

using namespace pavane;

namespace
{

/// A Gaussian on a map of `columns` x `rows` cells of the given sizes, about (x, y) in cells.
struct Lobe {
    double major, minor, angle;
    int columns = 80, rows = 64;
    double x = 40, y = 32, height = 1, noise = 0;
    double stepX = -1, stepY = 1;
};

AMatrix<float> mapOf(const Lobe& lobe)
{
    AMatrix<float> map(lobe.rows, lobe.columns);
    std::mt19937 random(4);
    std::normal_distribution<double> noise(0, 1);
    const double turn = lobe.angle * std::numbers::pi / 180;
    for (int r = 0; r < lobe.rows; ++r)
        for (int c = 0; c < lobe.columns; ++c) {
            const double e = (c - lobe.x) * lobe.stepX, n = (r - lobe.y) * lobe.stepY;
            const double along = (e * std::sin(turn) + n * std::cos(turn)) / lobe.major;
            const double across = (e * std::cos(turn) - n * std::sin(turn)) / lobe.minor;
            const double square = along * along + across * across;
            map(r, c) = static_cast<float>(lobe.height * std::exp(-4 * std::numbers::ln2 * square) +
                                           lobe.noise * noise(random));
        }
    return map;
}

int fit(const Lobe& lobe, const AMatrix<float>& map, MapBeam& beam)
{
    const TMinMax centres{5, 5 + lobe.stepX * (lobe.columns - 1), -3,
                          -3 + lobe.stepY * (lobe.rows - 1)};
    return fitBeam(AFloatMatrixAccess(map), centres, beam);
}

TEST(FitBeamTest, FindsWidthsAndAngleOfMadeGaussians)
{
    const Lobe lobes[] = {
        {14, 6, 35},
        {14, 6, -70},
        {14, 6, 0},
        {9, 4, -90},
        {12, 5, 60, 80, 64, 39.7, 32.3},    // between the cells
        {40, 3, 30},                        // elongated
        {3, 2, 10},                         // a few cells
        {14, 6, 35, 80, 64, 40, 32, 2e-6},  // faint
        {14, 6, 35, 80, 64, 40, 32, 3e30},  // bright
        {0.014, 0.006, 35, 80, 64, 40, 32, 1, 0, -1e-3, 1e-3},
        {14, 6, 35, 80, 64, 40, 32, 1, 0, 1, 1},       // x rises with the column
        {14, 6, -50, 80, 64, 40, 32, 1, 0, -0.5, -2},  // rows run down, cells are not square
        {8, 8, 0},                                     // round
    };
    for (const Lobe& lobe : lobes) {
        MapBeam beam;
        ASSERT_TRUE(fit(lobe, mapOf(lobe), beam)) << lobe.major << ' ' << lobe.angle;
        EXPECT_NEAR(beam.major / lobe.major, 1, 1e-5) << lobe.angle;
        EXPECT_NEAR(beam.minor / lobe.minor, 1, 1e-5) << lobe.angle;
        EXPECT_NEAR(beam.angle, lobe.angle, lobe.major == lobe.minor ? 90 : 1e-3);
        EXPECT_TRUE(beam.angle >= -90 && beam.angle < 90);
    }
}

TEST(FitBeamTest, NoiseAndSidelobesDisturbItLittle)
{
    Lobe lobe{14, 6, 35};
    lobe.noise = 0.01;
    AMatrix<float> map = mapOf(lobe);
    map(5, 5) = 0.9f;  // does not hang together with the peak
    map(60, 70) = NAN;
    MapBeam beam;
    ASSERT_TRUE(fit(lobe, map, beam));
    EXPECT_NEAR(beam.major, 14, 0.2);
    EXPECT_NEAR(beam.minor, 6, 0.1);
    EXPECT_NEAR(beam.angle, 35, 1);
}

TEST(FitBeamTest, WhatIsNoLobeIsRefused)
{
    const Lobe atEdge{14, 6, 35, 80, 64, 2, 32}, wide{200, 90, 35}, narrow{1, 1, 0};
    const Lobe least{2.4, 2.4, 0};  // nine cells
    MapBeam beam{3, 2, 1};
    EXPECT_FALSE(fit(atEdge, mapOf(atEdge), beam) || fit(wide, mapOf(wide), beam) ||
                 fit(narrow, mapOf(narrow), beam));
    AMatrix<float> map = mapOf(least);
    EXPECT_FALSE(fitBeam(AFloatMatrixAccess(map), {}, beam));
    EXPECT_FALSE(fitBeam(AFloatMatrixAccess(map), {1, 1, 0, 5}, beam));
    for (const float value : {0.0f, -1.0f, 1.0f, NAN, INFINITY}) {
        map.fill(value);
        EXPECT_FALSE(fit(least, map, beam)) << value;
    }
    AMatrix<float> one(1, 1), none;
    one.fill(1);
    EXPECT_FALSE(fitBeam(AFloatMatrixAccess(one), {0, 1, 0, 1}, beam));
    EXPECT_FALSE(fitBeam(AFloatMatrixAccess(none), {0, 1, 0, 1}, beam));
    EXPECT_EQ(beam.major, 3);
    EXPECT_TRUE(fit(least, mapOf(least), beam));
}

}  // namespace
