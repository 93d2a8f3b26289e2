#include "pavane/tables/components/AComponents.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace pavane
{

namespace
{

// 161 columns of 1 mas, east to the left, and 121 rows.
constexpr TMinMax sky{0.08, -0.08, -0.06, 0.06, 0, 0};
constexpr double cell = 0.001;

AMatrix<float> mapOf(const ACompItem& item)
{
    AMatrix<float> map(121, 161);
    map.fill(0);
    item.ToMap(map, sky);
    return map;
}

std::complex<double> transform(const AMatrix<float>& map, double u, double v)
{
    constexpr double turn = 2 * std::numbers::pi * 4.84813681109536e-6;
    std::complex<double> sum;
    for (int r = 0; r < map.rows(); ++r)
        for (int c = 0; c < map.columns(); ++c)
            sum += double{map(r, c)} *
                   std::polar(1.0, turn * ((sky.xMin - c * cell) * u + (sky.yMin + r * cell) * v));
    return sum;
}

ACompItem itemOf(int type, double axis, double ratio, double width)
{
    ACompItem item;
    item.type = type;
    item.PeakFlux() = 2.5;
    item.LargeAxis() = axis;
    item.AxisRatio() = ratio;
    item.Inclination() = 25;
    item.Angle() = 63;
    item.Distance() = 0.01234;
    item.Width() = width;
    return item;
}

}  // namespace

TEST(ComponentMap, KeepsFluxAndVisibilitiesOfEveryKindAndSize)
{
    for (int type = 1; type <= 7; ++type)
        for (const double axis : {0.0, 1e-6, 0.3e-3, 1.3e-3, 4e-3, 14e-3})
            for (const double ratio : {0.0, 0.05, 0.6, 1.0})
                for (const double width : {0.0, 0.04, 0.5, 1.0, 1.4}) {
                    const ACompItem item = itemOf(type, axis, ratio, width);
                    const AMatrix<float> map = mapOf(item);
                    EXPECT_NEAR(transform(map, 0, 0).real() / item.VfromUV(0, 0).real(), 1, 1e-6)
                        << "kind " << type << " axis " << axis << " ratio " << ratio;
                    // a tenth of a turn per cell: bilinear sharing dims by some per cent there
                    const double u = 1.2e7, v = 0.9e7;
                    EXPECT_LE(std::abs(transform(map, u, v) - item.VfromUV(u, v)), 0.12)
                        << "kind " << type << " axis " << axis << " ratio " << ratio << " width "
                        << width;
                    if (type != wideRingComponent)
                        break;
                }
}

TEST(ComponentMap, SamplesAWideGaussianAtTheCellCentres)
{
    const ACompItem item = itemOf(gaussianComponent, 9e-3, 0.7, 0.5);
    const AMatrix<float> map = mapOf(item);
    EXPECT_LE(std::abs(transform(map, 3e7, -2e7) - item.VfromUV(3e7, -2e7)), 1e-6);
}

TEST(ComponentMap, PutsAPointEastOnTheLeftOfAMapOfFallingX)
{
    ACompItem item;
    item.Angle() = 90;
    item.Distance() = 0.0202;  // 20.2 cells east
    const AMatrix<float> map = mapOf(item);
    EXPECT_NEAR(map(60, 60), 0.8, 1e-6);
    EXPECT_NEAR(map(60, 59), 0.2, 1e-6);
    item.Distance() = 0.0804;  // in the outer half of the last cell
    EXPECT_NEAR(mapOf(item)(60, 0), 1, 1e-6);
    item.Distance() = 0.0806;
    EXPECT_EQ(mapOf(item)(60, 0), 0);
}

TEST(ComponentMap, TakesAnythingAndEnds)
{
    const double inf = std::numeric_limits<double>::infinity();
    const TMinMax ranges[] = {sky,
                              {},
                              {0, 0, 0, 0, 0, 0},
                              {-inf, inf, 0, 1, 0, 0},
                              {-1e-300, 1e-300, -1e300, 1e300, 0, 0}};
    for (const TMinMax& range : ranges)
        for (int type = 1; type <= 7; ++type)
            for (const double axis : {0.0, -0.01, 1e6, 1e300, inf})
                for (const double distance : {0.0, 1e7, 1e300}) {
                    ACompItem item = itemOf(type, axis, 0.3, 0.1);
                    item.Distance() = distance;
                    AMatrix<float> map(5, 4), line(1, 6), nothing;
                    map.fill(0);
                    line.fill(0);
                    item.ToMap(map, range);
                    item.ToMap(line, range);
                    item.ToMap(nothing, range);
                    if (range == TMinMax{} || axis == inf) {
                        EXPECT_EQ(map(2, 2), 0);
                    }
                }
}

}  // namespace pavane
