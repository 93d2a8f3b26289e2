#include "pavane/tables/component_outline.h"
#include "tests/tables/test_components.h"

#include <cmath>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

struct Moments {
    double flux = 0, east = 0, north = 0, squareEast = 0, squareNorth = 0;
};

/// A map of 161 x 121 cells of a milliarcsecond with east falling along the row.
Moments onMap(const ACompItem& item, double cell = 1e-3)
{
    AMatrix<float> map(121, 161);
    map.fill(0);
    TMinMax range;
    range.xMin = 80 * cell;
    range.xMax = -80 * cell;
    range.yMin = -60 * cell;
    range.yMax = 60 * cell;
    item.ToMap(map, range);
    Moments m;
    for (int r = 0; r < map.rows(); ++r)
        for (int c = 0; c < map.columns(); ++c) {
            const double value = static_cast<double>(map(r, c));
            const double east = (80 - c) * cell;
            const double north = (r - 60) * cell;
            m.flux += value;
            m.east += value * east;
            m.north += value * north;
            m.squareEast += value * east * east;
            m.squareNorth += value * north * north;
        }
    return m;
}

}  // namespace

TEST(ComponentMap, HoldsTheFluxAndThePlaceOfEveryKindAndSize)
{
    for (std::int32_t kind = 1; kind <= 7; ++kind)
        for (const double axis : {0.0, 1e-7, 4e-4, 1.7e-3, 6e-3, 2.03e-2})
            for (const double ratio : {1.0, 0.4, 0.0}) {
                const ACompItem item = component(kind, 1.7, axis, ratio, 25, 70, 4.321e-3, 0.4);
                const double wanted = item.VfromUV(0, 0).real();
                const Moments m = onMap(item);
                EXPECT_NEAR(m.flux / wanted, 1, 1e-6) << kind << ' ' << axis << ' ' << ratio;
                const double turn = 70 * 3.141592653589793 / 180;
                EXPECT_NEAR(m.east / m.flux, 4.321e-3 * std::sin(turn), 2e-5)
                    << kind << ' ' << axis;
                EXPECT_NEAR(m.north / m.flux, 4.321e-3 * std::cos(turn), 2e-5)
                    << kind << ' ' << axis;
            }
}

TEST(ComponentMap, TurnsTheMajorAxisAsTheVisibilitiesDo)
{
    // a narrow Gaussian with its axis to the east: wide in x, resolved on u
    const ACompItem item = component(gaussianComponent, 1, 2e-2, 0.3, 90, 0, 0, 0.5);
    const Moments m = onMap(item);
    EXPECT_GT(m.squareEast, 8 * m.squareNorth);
    EXPECT_LT(item.VfromUV(2e7, 0).real(), item.VfromUV(0, 2e7).real());
    AArray<APoint<double>> outline(0, 0, 64);
    const APoint<double> centre = componentOutline(item, outline);
    EXPECT_EQ(centre.x, 0);
    double east = 0, north = 0;
    for (int i = 0; i < outline.count(); ++i) {
        east = std::max(east, outline(i).x);
        north = std::max(north, outline(i).y);
    }
    EXPECT_NEAR(east, 1e-2, 1e-4);
    EXPECT_NEAR(north, 3e-3, 1e-4);
}

TEST(ComponentMap, CutsWhatLiesBesideAndIgnoresWhatIsNoNumber)
{
    for (std::int32_t kind = 0; kind <= 8; ++kind) {
        EXPECT_EQ(onMap(component(kind, 1, 1e-3, 1, 0, 90, 5, 0.5)).flux, 0) << kind;
        const double half = onMap(component(kind, 1, 4e-2, 1, 0, 0, 0.06, 0.5)).flux;
        EXPECT_TRUE(half > 0.3 && half < 1.1) << kind << ' ' << half;
        EXPECT_EQ(onMap(component(kind, std::nan(""), 1e-3, 1, 0, 0, 0, 0.5)).flux, 0);
        EXPECT_EQ(onMap(component(kind, 1, 1e-3, 1, 0, 0, 1e300, 0.5)).flux, 0);
        EXPECT_EQ(onMap(component(kind, 1, 1e-3, 1, 0, 0, 0, 0.5), 0).flux, 0);
        (void)onMap(component(kind, 1, 1e12, 1e-12, 30, 0, 0, 0.5));
    }
    AMatrix<float> none, one(1, 1), row(1, 9);
    one.fill(0);
    row.fill(0);
    TMinMax range;
    for (AMatrix<float>* map : {&none, &one, &row})
        component(gaussianComponent, 1, 1, 1, 0, 0, 0, 0.5).ToMap(*map, range);
}

}  // namespace pavane
