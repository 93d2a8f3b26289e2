#include "pavane/measures/maps/near_blanks.h"
#include "pavane/measures/maps/smooth_map.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

using namespace pavane;

namespace
{

constexpr float blank = std::numeric_limits<float>::quiet_NaN();

/// A map turned by 20 degrees, its cells oblong, with a beam of 10 x 6 milliarcseconds.
MapHeader turnedHeader(const char* unit)
{
    constexpr double cell = 1e-3 / 3600;
    const double turn = 20 * std::numbers::pi / 180;
    MapHeader header;
    header.axes.resize(2);
    header.axes[0].ctype = "RA---SIN";
    header.axes[1].ctype = "DEC--SIN";
    header.hasCelestialAxes = header.hasBeam = 1;
    header.cd[0][0] = -cell * std::cos(turn);
    header.cd[0][1] = -1.25 * cell * std::sin(turn);
    header.cd[1][0] = -cell * std::sin(turn);
    header.cd[1][1] = 1.25 * cell * std::cos(turn);
    header.bunit = unit;
    header.bmaj = 10 * cell;
    header.bmin = 6 * cell;
    header.bpa = 30;
    return header;
}

/// A Gaussian of peak 1, the shape of a beam, at a cell.
double gaussian(const MapHeader& header, const SkyBeam& beam, double column, double row)
{
    const double east = header.cd[0][0] * column + header.cd[0][1] * row;
    const double north = header.cd[1][0] * column + header.cd[1][1] * row;
    const double angle = beam.angle * std::numbers::pi / 180;
    const double along = (east * std::sin(angle) + north * std::cos(angle)) / beam.major;
    const double across = (east * std::cos(angle) - north * std::sin(angle)) / beam.minor;
    return std::exp(-4 * std::numbers::ln2 * (along * along + across * across));
}

}  // namespace

// Sources of the shape of the old beam become ones of the new beam, whatever way both lie.
TEST(SmoothMap, MakesSourcesOfTheNewBeam)
{
    const double mas = 1e-3 / 3600;
    const struct {
        const char* unit;
        SkyBeam beam;
        int keepsArea;     // not the peak
        double tolerance;  // a Gaussian without a width across rings at sources cut by the edge
    } cases[] = {{"JY/BEAM", {16 * mas, 11 * mas, -50}, 0, 3e-6},
                 {"mJy beam-1", {10 * mas, 9 * mas, 30}, 0, 3e-4},
                 {"Jy/beam", {10 * mas, 6 * mas, 30}, 0, 3e-6},
                 {"JY/PIXEL", {16 * mas, 11 * mas, 75}, 1, 3e-6},
                 {"K", {14 * mas, 14 * mas, 0}, 1, 3e-6}};
    for (const auto& c : cases) {
        const MapHeader header = turnedHeader(c.unit);
        const SkyBeam old{header.bmaj, header.bmin, header.bpa};
        AMatrix<float> cells(97, 120);
        const double places[][2] = {{60, 40}, {2, 1}, {118.5, 70}};
        const auto fill = [&](int row, int column, const SkyBeam& beam) {
            double sum = 0;
            for (const auto& p : places)
                sum += gaussian(header, beam, column - p[0], row - p[1]);
            return sum;
        };
        for (int r = 0; r < 97; ++r)
            for (int col = 0; col < 120; ++col)
                cells(r, col) = float(fill(r, col, old));
        SmoothedMap made;
        std::string error;
        ASSERT_TRUE(smoothMap(cells, header, c.beam, made, error)) << error;
        const double peak = c.keepsArea ? old.major * old.minor / c.beam.major / c.beam.minor : 1;
        double worst = 0;
        // away from the edges, beyond which the map has lost half of two sources
        for (int r = 22; r < 50; ++r)
            for (int col = 35; col < 85; ++col)
                worst = std::max(
                    worst, std::fabs(double(made.cells(r, col)) - peak * fill(r, col, c.beam)));
        EXPECT_LT(worst, c.tolerance) << c.unit << ' ' << c.beam.angle;
        // what stands in one corner does not come in at the other ones
        EXPECT_LT(std::fabs(made.cells(96, 0)), c.tolerance) << c.unit;
        EXPECT_EQ(made.header.bmaj, c.beam.major);
    }
}

TEST(SmoothMap, RefusesWhatIsNotLarger)
{
    const double mas = 1e-3 / 3600;
    AMatrix<float> cells(20, 20);
    cells.fill(1);
    MapHeader header = turnedHeader("JY/BEAM");
    SmoothedMap made;
    std::string error;
    for (const SkyBeam& beam :
         {SkyBeam{10 * mas, 5.99 * mas, 30}, SkyBeam{9.99 * mas, 9 * mas, 30},
          SkyBeam{10.2 * mas, 6 * mas, 50}, SkyBeam{0, 0, 0}, SkyBeam{20 * mas, 21 * mas, 0},
          SkyBeam{std::numeric_limits<double>::infinity(), 6 * mas, 0}})
        EXPECT_FALSE(smoothMap(cells, header, beam, made, error)) << beam.major / mas;
    const SkyBeam larger{20 * mas, 20 * mas, 0};
    EXPECT_FALSE(smoothMap(cells, header, larger, made, error, [](double) { return 0; }));
    header.hasBeam = 0;
    EXPECT_FALSE(smoothMap(cells, header, larger, made, error));
    header.hasBeam = 1;
    header.hasCelestialAxes = 0;
    EXPECT_FALSE(smoothMap(cells, header, larger, made, error));
}

TEST(SmoothMap, BlanksStayAndTheirNeighboursAreCounted)
{
    std::mt19937 random(3);
    for (const double reach : {0.5, 3.0, 7.3, 80.0}) {
        AMatrix<float> cells(40, 53);
        for (int i = 0; i < 40 * 53; ++i)
            cells.data()[i] = random() % 300 == 0 ? blank : 1.0f;
        std::int64_t near = 0;
        for (int r = 0; r < 40; ++r)
            for (int c = 0; c < 53; ++c) {
                int found = 0;
                for (int y = -1; y <= 40 && !found; ++y)
                    for (int x = -1; x <= 53; ++x) {
                        const int isBlank =
                            y < 0 || x < 0 || y > 39 || x > 52 || std::isnan(cells(y, x));
                        const double dx = x - c, dy = 1.5 * (y - r);
                        found |= isBlank && dx * dx + dy * dy <= reach * reach;
                    }
                near += found && !std::isnan(cells(r, c));
            }
        EXPECT_EQ(cellsNearBlanks(cells, 1, 1.5, reach), near) << reach;
        SmoothedMap made;
        std::string error;
        const double mas = 1e-3 / 3600;
        ASSERT_TRUE(smoothMap(cells, turnedHeader("K"), {12 * mas, 12 * mas, 0}, made, error));
        for (int i = 0; i < 40 * 53; ++i)
            ASSERT_EQ(std::isnan(cells.data()[i]), std::isnan(made.cells.data()[i]));
    }
}
