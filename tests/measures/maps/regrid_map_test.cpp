#include "pavane/measures/maps/GaussianFilter.h"
#include "pavane/measures/maps/map_shift.h"
#include "pavane/measures/maps/pair_maps.h"
#include "pavane/measures/maps/polarisation.h"
#include "pavane/measures/maps/regrid_map.h"
#include "tessel/fits_cards.h"
#include "tessel/PatchedMapping.h"
#include "tests/measures/maps/header_cards.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

using namespace pavane;

namespace
{

constexpr float blank = std::numeric_limits<float>::quiet_NaN();
const SkyFrame icrs{SkyFrame::System::icrs, 2000};

MapHeader headerOf(const std::string& cards, int rows, int columns)
{
    MapHeader header;
    std::string error;
    EXPECT_TRUE(readMapHeader(cardsOf("NAXIS=2;NAXIS1=" + std::to_string(columns) +
                                      ";NAXIS2=" + std::to_string(rows) + ";" + cards),
                              rows, columns, header, error, 0))
        << error;
    return header;
}

/// A smooth function of the position, with some ten cells of 0.1 degrees to a turn of it.
double skyValue(double longitude, double latitude, SkyShift moved = {})
{
    const double degree = std::numbers::pi / 180;
    const double x = (longitude - 187.7) * std::cos(latitude * degree) - moved.east;
    const double y = latitude - 12.4 - moved.north;
    return 2 + std::sin(3.0 * x + 0.4) * std::cos(2.6 * y) + 0.3 * std::cos(4 * (x + y));
}

AMatrix<float> mapOf(const MapHeader& header, SkyShift moved = {}, double factor = 1)
{
    SkyCoordinates sky;
    std::string error;
    EXPECT_TRUE(sky.init(header, error)) << error;
    AMatrix<float> cells(header.axes[1].length, header.axes[0].length);
    for (int r = 0; r < cells.rows(); ++r)
        for (int c = 0; c < cells.columns(); ++c) {
            double l = 0, b = 0;
            cells(r, c) = sky.toSky(c, r, icrs, l, b)
                              ? static_cast<float>(factor * skyValue(l, b, moved))
                              : blank;
        }
    return cells;
}

const std::string sin10 = "CTYPE1='RA---SIN';CTYPE2='DEC--SIN';CRVAL1=187.7;CRVAL2=12.4;"
                          "CRPIX1=75;CRPIX2=55;CDELT1=-0.1;CDELT2=0.1;";
const std::string galactic = "CTYPE1='GLON-TAN';CTYPE2='GLAT-TAN';CRVAL1=283.7;CRVAL2=74.5;"
                             "CRPIX1=50;CRPIX2=45;CD1_1=-0.05;CD1_2=0.02;CD2_1=0.02;CD2_2=0.06;";
const std::string cartesian = "CTYPE1='RA---CAR';CTYPE2='DEC--CAR';CRVAL1=180;CRVAL2=0;"
                              "CRPIX1=114;CRPIX2=-93;CDELT1=-0.12;CDELT2=0.09;RADESYS='FK5';"
                              "EQUINOX=1975;";

}  // namespace

TEST(RegridMap, HasTheValuesOfTheSkyOnTheOtherGrid)
{
    const MapHeader header =
        headerOf(sin10 + "BUNIT='JY/BEAM';BMAJ=0.4;BMIN=0.2;BPA=10;", 110, 150);
    const AMatrix<float> cells = mapOf(header);
    for (const std::string& cards : {galactic, cartesian, sin10 + "CROTA2=33;"})
        for (const SkyShift moved : {SkyShift{}, SkyShift{0.07, -0.04}}) {
            const MapHeader like = headerOf(cards, 90, 100);
            RegriddedMap made;
            std::string error;
            ASSERT_TRUE(regridMap(cells, header, like, moved, made, error)) << error;
            // a shift is one east and north in the frame of the grid
            const int isOwnFrame = cards.starts_with("CTYPE1='RA---SIN");
            if (!moved.isNone() && !isOwnFrame)
                continue;
            const AMatrix<float> wanted = mapOf(like, moved);
            double worst = 0;
            for (int i = 0; i < 9000; ++i)
                if (std::isfinite(made.cells.data()[i]))
                    worst = std::max(
                        worst, std::fabs(double(made.cells.data()[i]) - double(wanted.data()[i])));
            // what a cubic makes of ten cells a turn, and the plane that the function lies in
            EXPECT_LT(worst, moved.isNone() ? 4e-3 : 8e-3) << cards;
            EXPECT_GT(made.known, 3000) << cards;
            // written and read again it lies where the grid does
            std::string text = "NAXIS=2;NAXIS1=100;NAXIS2=90;";
            text = cardsOf(text);
            for (const std::string& card : coordinateCards(made.header))
                text += card + '\n';
            MapHeader read;
            ASSERT_TRUE(readMapHeader(text, 90, 100, read, error, 0)) << error;
            EXPECT_TRUE(haveSameCells(read, like)) << cards;
            EXPECT_FALSE(haveSameCells(header, like)) << cards;
        }
}

TEST(RegridMap, TheSameGridIsACopyAndBlanksAreKept)
{
    const MapHeader header = headerOf(sin10 + "BUNIT='JY/BEAM';", 110, 150);
    AMatrix<float> cells = mapOf(header);
    cells(50, 60) = blank;
    RegriddedMap made;
    std::string error;
    ASSERT_TRUE(regridMap(cells, header, header, {}, made, error)) << error;
    EXPECT_EQ(made.known, 110 * 150 - 1);
    EXPECT_EQ(0, std::memcmp(made.cells.data(), cells.data(), 4 * 110 * 60));
    // half a cell away the blank takes the four cells that it is a neighbour of along the row, and
    // the edges the cells that would need what lies beyond
    MapHeader half = header;
    half.axes[0].crpix += 0.5;
    ASSERT_TRUE(regridMap(cells, header, half, {}, made, error)) << error;
    EXPECT_EQ(made.known, 110 * (150 - 3) - 4);
}

TEST(RegridMap, ValuesPerPixelKeepTheirSum)
{
    // a wide field, so that cells differ in size over it
    const MapHeader header = headerOf(sin10 + "BUNIT='JY/PIXEL';", 110, 150);
    const AMatrix<float> unit = mapOf(header);
    SkyCoordinates sky;
    std::string error;
    ASSERT_TRUE(sky.init(header, error));
    const auto sumOf = [](const AMatrix<float>& cells, const auto& weight) {
        double sum = 0;
        for (int r = 0; r < cells.rows(); ++r)
            for (int c = 0; c < cells.columns(); ++c)
                sum += std::isfinite(cells(r, c)) ? weight(r, c) * double(cells(r, c)) : 0;
        return sum;
    };
    // a window in the map that falls to 0, so that no edge counts
    AMatrix<float> cells = unit;
    for (int r = 0; r < 110; ++r)
        for (int c = 0; c < 150; ++c)
            cells(r, c) *=
                float(std::exp(-std::pow((r - 54) / 6.0, 2) - std::pow((c - 74) / 5.0, 2)));
    const double sum = sumOf(cells, [](int, int) { return 1.0; });
    for (const std::string& cards : {galactic, cartesian}) {
        RegriddedMap made;
        ASSERT_TRUE(regridMap(cells, header, headerOf(cards, 190, 200), {}, made, error)) << error;
        EXPECT_NEAR(sumOf(made.cells, [](int, int) { return 1.0; }), sum, 2e-3 * sum) << cards;
    }
}

TEST(RegridMap, RefusesWhatHasNoPlaceOrNothingInCommon)
{
    const MapHeader header = headerOf(sin10, 110, 150);
    const AMatrix<float> cells = mapOf(header);
    RegriddedMap made;
    std::string error;
    const char* const others[] = {
        "CTYPE1='RA---SIN';CTYPE2='DEC--SIN';CRVAL1=7;CRVAL2=-12;CDELT1=-0.1;CDELT2=0.1;",
        "CTYPE1='LINEAR';CTYPE2='LINEAR';",
        "CTYPE1='RA---SIN';CTYPE2='DEC--SIN';CDELT1=-0.1;CDELT2=0.1;"};
    for (const char* const cards : others) {
        const MapHeader other = headerOf(cards, 20, 20);
        EXPECT_FALSE(regridMap(cells, header, other, {}, made, error)) << cards;
        EXPECT_FALSE(error.empty());
    }
    EXPECT_FALSE(regridMap(cells, header, header, {}, made, error, [](double) { return 0; }));
    // a map of the whole sky, most of which the field does not show
    const MapHeader all = headerOf("CTYPE1='GLON-AIT';CTYPE2='GLAT-AIT';CRVAL1=0;CRVAL2=0;CRPIX1="
                                   "90.5;CRPIX2=45.5;CDELT1=-2;CDELT2=2;",
                                   90, 180);
    ASSERT_TRUE(regridMap(cells, header, all, {}, made, error)) << error;
    EXPECT_NEAR(double(made.known), 14.7 * 10.7 / 4, 8);
}

TEST(PairMaps, AreTheirDefinitions)
{
    const MapHeader first = headerOf(sin10 + "BUNIT='JY/BEAM';RESTFRQ=5e9;", 110, 150);
    const MapHeader second = headerOf(sin10 + "BUNIT='mJy/beam';RESTFRQ=1.4e9;", 110, 150);
    AMatrix<float> a = mapOf(first), b = mapOf(second, {}, 1700);
    a(3, 4) = blank;
    b(7, 8) = -5;
    const double noise[] = {0.5, 400}, calibration = 0.05;
    for (const MapPair pair : {MapPair::difference, MapPair::ratio, MapPair::index}) {
        PairMap made;
        std::string error;
        ASSERT_EQ(combineMaps({a, first, noise[0]}, {b, second, noise[1]}, {pair, 3, calibration},
                              made, error),
                  PairFault::none)
            << error;
        for (int i = 0; i < 110 * 150; ++i) {
            const double x = double(a.data()[i]), y = double(b.data()[i]) / 1000;
            const double ex = std::sqrt(0.25 + 0.0025 * x * x);
            const double ey = std::sqrt(0.16 + 0.0025 * y * y);
            const int isKnown =
                std::isfinite(x) && (pair == MapPair::difference || (x > 1.5 && y > 1.2));
            ASSERT_EQ(std::isfinite(made.cells.data()[i]), isKnown) << i;
            if (!isKnown)
                continue;
            const double relative = std::sqrt(std::pow(ex / x, 2) + std::pow(ey / y, 2));
            const double span = std::log(5.0 / 1.4);
            const double values[] = {x - y, x / y, (std::log(x) - std::log(y)) / span};
            const double errors[] = {std::sqrt(ex * ex + ey * ey), x / y * relative,
                                     relative / span};
            ASSERT_NEAR(made.cells.data()[i], values[int(pair)], 1e-6) << i;
            ASSERT_NEAR(made.errors.data()[i], errors[int(pair)], 1e-6) << i;
        }
    }
}

TEST(PairMaps, RefuseWhatDoesNotGoTogether)
{
    const std::string usual = sin10 + "BUNIT='JY/BEAM';BMAJ=0.4;BMIN=0.2;BPA=10;";
    const MapHeader first = headerOf(usual + "RESTFRQ=5e9;", 10, 12);
    const std::string other = sin10 + "BUNIT='JY/BEAM';RESTFRQ=2e9;";
    AMatrix<float> cells(10, 12);
    cells.fill(1);
    const struct {
        MapPair pair;
        std::string cards;
        PairFault fault;
    } cases[] = {
        {MapPair::index, other + "BMAJ=0.4;BMIN=0.2;BPA=-170;", PairFault::none},
        {MapPair::index, other + "BMAJ=0.401;BMIN=0.2;BPA=10.2;", PairFault::none},
        {MapPair::index, other + "BMAJ=0.42;BMIN=0.2;BPA=10;", PairFault::beams},
        {MapPair::difference, other + "BMAJ=0.4;BMIN=0.2;BPA=40;", PairFault::beams},
        {MapPair::index, usual + "RESTFRQ=5.000000001e9;", PairFault::frequencies},
        {MapPair::index, usual, PairFault::frequencies},
        {MapPair::ratio, usual, PairFault::none},
        {MapPair::difference, sin10 + "BUNIT='K';", PairFault::units},
        {MapPair::ratio, sin10 + "BUNIT='K';", PairFault::none},
        {MapPair::ratio, "CRPIX1=75.02;" + sin10, PairFault::cells},
        {MapPair::ratio, "CRVAL2=12.402;" + sin10, PairFault::cells},
        {MapPair::ratio, cartesian, PairFault::cells},
        {MapPair::ratio, "CTYPE1='LINEAR';CTYPE2='LINEAR';", PairFault::cells},
    };
    for (const auto& c : cases) {
        PairMap made;
        std::string error;
        const MapHeader second = headerOf(c.cards, 10, 12);
        EXPECT_EQ(
            combineMaps({cells, first, 0.1}, {cells, second, 0.1}, {c.pair, 3, 0}, made, error),
            c.fault)
            << c.cards;
        EXPECT_EQ(error.empty(), c.fault == PairFault::none) << error;
    }
}

TEST(Polarisation, IsItsDefinition)
{
    MapHeader header = headerOf(sin10 + "BUNIT='JY/BEAM';", 110, 150);
    const AMatrix<float> i = mapOf(header);
    AMatrix<float> q = mapOf(header, {0.5, 0.2}, 0.1), u = mapOf(header, {-0.3, 0.4}, -0.08);
    for (int k = 0; k < 110 * 150; ++k)
        q.data()[k] -= 0.2f;
    q(5, 6) = blank;
    MapHeader milli = header;
    milli.bunit = "mJy/beam";
    AMatrix<float> u1000 = u;
    for (int k = 0; k < 110 * 150; ++k)
        u1000.data()[k] *= 1000;
    const double s = 0.02;
    for (const PolarKind kind : {PolarKind::intensity, PolarKind::degree, PolarKind::angle}) {
        PolarMap made;
        std::string error;
        ASSERT_TRUE(findPolarisation(kind, {&i, &header, 0.5}, {&q, &header, 0.015},
                                     {&u1000, &milli, 25}, 4, made, error))
            << error;
        for (int k = 0; k < 110 * 150; ++k) {
            const double a = double(q.data()[k]), b = double(u.data()[k]), t = double(i.data()[k]);
            const double p = std::sqrt(std::max(a * a + b * b - s * s, 0.0));
            const int isKnown = p > 4 * s && (kind != PolarKind::degree || t > 2);
            ASSERT_EQ(std::isfinite(made.cells.data()[k]), isKnown) << k;
            if (!isKnown)
                continue;
            // twice the angle is that of (Q, U)
            const double twice = 2 * double(made.angles.data()[k]) * std::numbers::pi / 180;
            ASSERT_NEAR(std::cos(twice) * std::hypot(a, b), a, 1e-5);
            ASSERT_NEAR(std::sin(twice) * std::hypot(a, b), b, 1e-5);
            const double values[] = {p, p / t, double(made.angles.data()[k])};
            const double errors[] = {s, std::sqrt(s * s / t / t + std::pow(p * 0.5 / t / t, 2)),
                                     s / p * 90 / std::numbers::pi};
            ASSERT_NEAR(made.cells.data()[k], values[int(kind)], 1e-5);
            ASSERT_NEAR(made.errors.data()[k], errors[int(kind)], 1e-4);
        }
    }
    PolarMap made;
    std::string error;
    const MapHeader other = headerOf(galactic, 110, 150);
    MapHeader isU = header;
    isU.stokes = "U";
    EXPECT_FALSE(
        findPolarisation(PolarKind::angle, {}, {&q, &header, s}, {&u, &other, s}, 3, made, error));
    EXPECT_FALSE(findPolarisation(PolarKind::degree, {}, {&q, &header, s}, {&u, &header, s}, 3,
                                  made, error));
    EXPECT_FALSE(
        findPolarisation(PolarKind::angle, {}, {&q, &isU, s}, {&u, &header, s}, 3, made, error));
}

TEST(RegridMask, TakesCellsWhoseCentreLiesInIt)
{
    const MapHeader header = headerOf(sin10, 110, 150), like = headerOf(galactic, 90, 100);
    ABitMatrix mask(110, 150), made;
    mask.setAll(0);
    for (int r = 40; r < 60; ++r)
        for (int c = 60; c < 70; ++c)
            mask.set(r, c, 1);
    std::string error;
    ASSERT_TRUE(regridMask(mask, header, header, made, error)) << error;
    EXPECT_EQ(made.count(), 200);
    ASSERT_TRUE(regridMask(mask, header, like, made, error)) << error;
    SkyCoordinates own, grid;
    ASSERT_TRUE(own.init(header, error) && grid.init(like, error));
    int wrong = 0;
    for (int r = 0; r < 90; ++r)
        for (int c = 0; c < 100; ++c) {
            double l = 0, b = 0, x = 0, y = 0;
            const int isIn = grid.toSky(c, r, icrs, l, b) && own.toPixel(l, b, icrs, x, y) &&
                             x > 59.5 && x < 69.5 && y > 39.5 && y < 59.5;
            wrong += made.get(r, c) != isIn;
        }
    EXPECT_LE(wrong, 1);
    mask.setAll(0);
    EXPECT_FALSE(regridMask(mask, header, like, made, error));
}

// Sources under noise of the beam: the shift comes back, and its scatter is the error.
TEST(MapShift, ComesBackWithItsError)
{
    const MapHeader header = headerOf("CTYPE1='RA---SIN';CTYPE2='DEC--SIN';CRVAL1=30;CRVAL2=50;"
                                      "CRPIX1=32;CRPIX2=32;CDELT1=-1e-6;CDELT2=1e-6;BUNIT='JY/BEAM'"
                                      ";BMAJ=4e-6;BMIN=4e-6;BPA=0;",
                                      64, 64);
    std::mt19937 random(11);
    std::normal_distribution<double> normal;
    ABitMatrix mask(64, 64);
    mask.setAll(0);
    for (int r = 16; r < 48; ++r)
        for (int c = 14; c < 50; ++c)
            mask.set(r, c, 1);
    const auto mapAt = [&](double x, double y, double scale) {
        AMatrix<float> white(64, 64);
        for (int i = 0; i < 64 * 64; ++i)
            white.data()[i] = static_cast<float>(normal(random));
        std::string error;
        // white noise under the beam, of scatter 0.01
        EXPECT_TRUE(convolve(white, {16, 0, 16}, error, {})) << error;
        const double sum = 0.01 * 4 * std::sqrt(std::numbers::pi / 2 / std::numbers::ln2);
        for (int r = 0; r < 64; ++r)
            for (int c = 0; c < 64; ++c) {
                double value = sum * double(white(r, c));
                for (const auto& [sx, sy, w, s] :
                     {std::array{27.0, 30.0, 5.0, 1.0}, std::array{36.0, 34.0, 7.0, 0.6}})
                    value +=
                        scale * s *
                        std::exp(-4 * std::numbers::ln2 *
                                 (std::pow(c - sx - x, 2) + std::pow(r - sy - y, 2)) / (w * w));
                white(r, c) = static_cast<float>(value);
            }
        return white;
    };
    double squares = 0;
    constexpr int tries = 60;
    for (int k = 0; k < tries; ++k) {
        const double x = 3.3 - 0.1 * k, y = 0.07 * k - 2;
        MapShift found;
        std::string error;
        ASSERT_TRUE(findMapShift(mapAt(0, 0, 1), mapAt(x, y, 1.7), mask, header, 8, found, error))
            << error;
        // a step of a column is one to the west
        const double east = (found.shift.east - x * 1e-6) / found.error.east;
        const double north = (found.shift.north + y * 1e-6) / found.error.north;
        ASSERT_LT(std::hypot(east, north), 5) << k;
        ASSERT_LT(found.error.east, 0.1e-6);
        squares += (east * east + north * north) / 2;
    }
    EXPECT_NEAR(std::sqrt(squares / tries), 1, 0.25);
    MapShift found;
    std::string error;
    AMatrix<float> flat(64, 64);
    flat.fill(1);
    EXPECT_FALSE(findMapShift(mapAt(0, 0, 1), flat, mask, header, 8, found, error));
    EXPECT_FALSE(findMapShift(mapAt(0, 0, 1), mapAt(20, 0, 1), mask, header, 8, found, error,
                              [](double) { return 0; }));
    mask.setAll(0);
    EXPECT_FALSE(findMapShift(flat, flat, mask, header, 8, found, error));
}

// Patches of curves beside the way through the sky: small fields, whole skies with cuts, limbs and
// poles.
TEST(PatchedMapping, IsWhereTheSkySays)
{
    const char* const maps[] = {
        "CTYPE1='RA---SIN';CTYPE2='DEC--SIN';CRVAL1=187.7;CRVAL2=12.4;CDELT1=-1E-3;CDELT2=1E-3;"
        "CRPIX1=150;CRPIX2=100",
        "CTYPE1='GLON-AIT';CTYPE2='GLAT-AIT';CRVAL1=0;CRVAL2=0;CDELT1=-1.1;CDELT2=1.1;CRPIX1=150;"
        "CRPIX2=100",
        "CTYPE1='RA---CAR';CTYPE2='DEC--CAR';CRVAL1=10;CRVAL2=0;CDELT1=-1.3;CDELT2=1;CRPIX1=150;"
        "CRPIX2=90",
        "CTYPE1='RA---SIN';CTYPE2='DEC--SIN';CRVAL1=90;CRVAL2=89.9;CDELT1=-0.6;CDELT2=0.6;"
        "CRPIX1=150;CRPIX2=100",
    };
    std::mt19937 random(3);
    for (const char* const own : maps)
        for (const char* const other : maps) {
            SkyCoordinates from, to;
            std::string error;
            ASSERT_TRUE(from.init(headerOf(own, 200, 300), error)) << error;
            ASSERT_TRUE(to.init(headerOf(other, 200, 300), error)) << error;
            const CellMapping mapping(from, to, {0.001, -0.002});
            PatchedMapping patched(mapping, 200, 300);
            for (int i = 0; i < 2000; ++i) {
                const CellPlace place{std::uniform_real_distribution<>(-3, 303)(random),
                                      std::uniform_real_distribution<>(-3, 203)(random)};
                CellPlace exact{-1, -1}, fitted{-1, -1};
                ASSERT_EQ(mapping.map(place.column, place.row, exact.column, exact.row),
                          patched.map(place, fitted))
                    << own << '\n'
                    << other << '\n'
                    << place.column << ' ' << place.row;
                ASSERT_NEAR(fitted.column, exact.column, 0.002) << own << '\n' << other;
                ASSERT_NEAR(fitted.row, exact.row, 0.002) << own << '\n' << other;
            }
        }
}
