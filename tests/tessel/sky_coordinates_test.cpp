#include "tessel/fits_map.h"
#include "tessel/paths.h"
#include "tessel/SkyCoordinates.h"
#include "tessel/value_text.h"
#include "tests/tessel/sin_map.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

using namespace pavane;

namespace
{

/// Right ascension and declination of a cell under the SIN projection, from the formulas of
/// Calabretta and Greisen (2002), written out.
void plainSin(const MapHeader& h, double column, double row, double& ra, double& dec)
{
    const double dx = column + 1 - h.axes[0].crpix;
    const double dy = row + 1 - h.axes[1].crpix;
    const double l = (h.cd[0][0] * dx + h.cd[0][1] * dy) * degree;
    const double m = (h.cd[1][0] * dx + h.cd[1][1] * dy) * degree;
    const double d0 = h.axes[1].crval * degree;
    const double n = std::sqrt(1 - l * l - m * m);
    ra = h.axes[0].crval + std::atan2(l, n * std::cos(d0) - m * std::sin(d0)) / degree;
    dec = std::asin(m * std::cos(d0) + n * std::sin(d0)) / degree;
}

/// Largest difference, in cells, between the formula's positions and the cells they came from.
double worstCell(const MapHeader& header, const SkyCoordinates& sky)
{
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> cell(-100, 900);
    double worst = 0;
    for (int i = 0; i < 2000; ++i) {
        const double column = cell(random);
        const double row = cell(random);
        double ra = 0, dec = 0, backColumn = 0, backRow = 0;
        plainSin(header, column, row, ra, dec);
        if (!sky.toPixel(ra, dec, backColumn, backRow))
            return 1e9;
        worst = std::max({worst, std::abs(backColumn - column), std::abs(backRow - row)});
        if (!sky.toSky(column, row, ra, dec) || !sky.toPixel(ra, dec, backColumn, backRow))
            return 1e9;
        worst = std::max({worst, std::abs(backColumn - column), std::abs(backRow - row)});
    }
    return worst;
}

struct Sky : SkyCoordinates {
    explicit Sky(const MapHeader& header)
    {
        std::string error;
        EXPECT_TRUE(init(header, error)) << error;
    }
};

std::string refusalOf(const MapHeader& header)
{
    SkyCoordinates sky;
    std::string error;
    EXPECT_FALSE(sky.init(header, error) || sky.isSet());
    return error;
}

std::string card(const std::string& text)
{
    std::string whole = text;
    whole.resize(80, ' ');
    return whole;
}

}  // namespace

TEST(SkyCoordinates, AgreeWithTheFormulaOfTheSinProjection)
{
    for (const MapHeader& header : {sinMap(0.08, 2.8, 5.6e-8), sinMap(359.9999999, -45, 1e-5, 30),
                                    sinMap(200, 88, 2e-3, -75), sinMap(114.53, 17.7, 2e-4)})
        EXPECT_LT(worstCell(header, Sky(header)), 1e-6);
}

TEST(SkyCoordinates, AgreeWithTheFormulaOnRealMaps)
{
    const std::string folder = PAVANE_SOURCE_DIR "/../shared/data/maps/";
    if (!IsFolderExists(folder))
        GTEST_SKIP() << "no real maps here";
    for (const char* name :
         {"J0000+0248_2016_01_03_VLBA_4GHz.fits", "J0738+17_stacked_VLBA_15GHz.fits"}) {
        FitsMap map;
        std::string error;
        ASSERT_TRUE(readFitsMap(folder + name, -1, map, error)) << error;
        const double worst = worstCell(map.header, Sky(map.header));
        RecordProperty(name, valToStr(worst, 3));
        EXPECT_LT(worst, 1e-6) << name;
    }
    FitsMap odd;
    std::string error;
    ASSERT_TRUE(readFitsMap(folder + "sampling_mean_odd_header.fits", -1, odd, error)) << error;
    EXPECT_EQ(refusalOf(odd.header), "the header has no position of the reference pixel (CRVAL)");
}

TEST(SkyCoordinates, TellScaleNorthAndHandednessOfAPlace)
{
    struct {
        const char* name;
        double turn, xSign, north;
        int handedness;
    } const cases[] = {
        {"north up", 0, 1, 0, 1}, {"turned", 30, 1, -30, 1}, {"east to the right", 0, -1, 0, -1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        MapHeader header = sinMap(10, 60, 1e-7, c.turn);
        header.cd[0][0] *= 2 * c.xSign;
        header.cd[1][0] *= 2;
        LocalSky local;
        ASSERT_TRUE(Sky(header).localSky(500, 501, local));
        EXPECT_NEAR(local.columnScale, 2e-7, 1e-16);
        EXPECT_NEAR(local.rowScale, 1e-7, 1e-16);
        EXPECT_NEAR(local.rowPositionAngle / degree, c.north, 1e-6);
        EXPECT_EQ(local.handedness, c.handedness);
    }
}

TEST(SkyCoordinates, FollowTheHeadersPolesParametersAndOldNames)
{
    // NCP is the SIN projection seen along the pole: x = cos d sin a, y = (cos d0 - cos d cos a) /
    // sin d0
    MapHeader header = sinMap(100, 60, 1e-4);
    header.axes[0].ctype = "RA---NCP";
    header.axes[1].ctype = "DEC--NCP";
    double column = 0, row = 0;
    ASSERT_TRUE(Sky(header).toPixel(100.3, 60.2, column, row));
    const double a = 0.3 * degree, d = 60.2 * degree, d0 = 60 * degree;
    EXPECT_NEAR(column, 500 - std::cos(d) * std::sin(a) / degree / 1e-4, 1e-6);
    EXPECT_NEAR(
        row, 501 + (std::cos(d0) - std::cos(d) * std::cos(a)) / std::sin(d0) / degree / 1e-4, 1e-6);
    header = sinMap(100, 60, 1e-4);
    header.coordinateCards = {card("CRVAL1  = 100.0"), card("CRVAL2  = 60.0"),
                              card("LONPOLE =1.5d+02"), card("RADESYS = 'icrs'"),
                              card("RADESYS = ''")};
    const Sky sky(header);
    EXPECT_EQ(sky.frame(), SkyCoordinates::Frame::icrs);
    LocalSky local;
    ASSERT_TRUE(sky.localSky(500, 501, local));
    EXPECT_NEAR(std::abs(local.rowPositionAngle) / degree, 30, 1e-6);
}

TEST(SkyFrame, ConvertsAsAstropyDoes)
{
    // Astropy 5.2: SkyCoord(97.3, -42.6).transform_to(ICRS()) and, last, near a pole
    using S = SkyFrame::System;
    const struct {
        const char* name;
        SkyFrame frame;
        double ra, dec, mas = 1e-05, longitude = 97.3, latitude = -42.6;
    } cases[] = {
        {"FK5", {S::fk5, 2000}, 97.29999529858266, -42.59999419583683},
        {"FK5 at 1975", {S::fk5, 1975}, 97.49329625880168, -42.61791460411149},
        {"FK5 at 2050.5", {S::fk5, 2050.5}, 96.90926668006438, -42.56522221642571},
        {"FK4", {S::fk4, 1950}, 97.68655240149410, -42.63629102108140, 2},
        {"galactic", {S::galactic, 2000}, 353.47548771287518, 16.37985092130396},
        {"ecliptic", {S::ecliptic, 2000}, 95.68758051991455, -19.30473877073499},
        {"ecliptic of 1950", {S::ecliptic, 1950}, 96.23080469575429, -19.32717109729445},
        {"near the pole",
         {S::fk5, 2000},
         9.14102288747462,
         89.99989855429116,
         1e-05,
         12.5,
         89.9999},
    };
    for (const auto& c : cases) {
        const double perMas = std::cos(c.dec * degree) * 3.6e6;
        double ra = 0, dec = 0, longitude = 0, latitude = 0;
        ASSERT_TRUE(convertSky(c.frame, {}, c.longitude, c.latitude, ra, dec)) << c.name;
        EXPECT_NEAR(std::remainder(ra - c.ra, 360) * perMas, 0, c.mas) << c.name;
        EXPECT_NEAR((dec - c.dec) * 3.6e6, 0, c.mas) << c.name;
        ASSERT_TRUE(convertSky({}, c.frame, ra, dec, longitude, latitude)) << c.name;
        EXPECT_NEAR(std::remainder(longitude - c.longitude, 360) * 3.6e6 *
                        std::cos(c.latitude * degree),
                    0, 1e-5)
            << c.name;
        EXPECT_NEAR((latitude - c.latitude) * 3.6e6, 0, 1e-5) << c.name;
    }
    double a = 7, b = 7;
    EXPECT_FALSE(convertSky({S::fk4, 1975}, {}, 1, 1, a, b) || convertSky({}, {}, NAN, 1, a, b) ||
                 convertSky({S::fk5, 1e9}, {}, 1, 1, a, b) || convertSky({}, {}, 1, 91, a, b));
    EXPECT_EQ(a, 7);
}

TEST(SkyCoordinates, GivePlacesAndNorthInOtherFrames)
{
    // on the galactic equator towards the centre, galactic north lies 58.6 degrees west of north
    const SkyFrame galactic{SkyFrame::System::galactic, 2000};
    double ra = 0, dec = 0, column = 0, row = 0, l = 0, b = 0;
    ASSERT_TRUE(convertSky(galactic, {SkyFrame::System::fk5, 2000}, 0, 0, ra, dec));
    const Sky sky(sinMap(ra, dec, 1e-6));
    ASSERT_TRUE(sky.toPixel(0, 0, galactic, column, row));
    EXPECT_NEAR(std::hypot(column - 500, row - 501), 0, 1e-6);
    ASSERT_TRUE(sky.toSky(500, 501, galactic, l, b));
    EXPECT_NEAR(std::hypot(std::remainder(l, 360), b), 0, 1e-12);
    LocalSky own, there;
    ASSERT_TRUE(sky.localSky(500, 501, own) && sky.localSky(500, 501, galactic, there));
    EXPECT_NEAR((there.rowPositionAngle - own.rowPositionAngle) / degree, 58.598, 1e-3);
}

TEST(SkyCoordinates, RefuseWhatWouldGiveWrongPositions)
{
    MapHeader besselian = sinMap(10, 20, 1e-7);
    besselian.equinox = 1975;
    EXPECT_EQ(refusalOf(besselian), "positions in FK4 at 1975 are not supported");
    besselian.coordinateCards = {card("CRVAL1  = 10"), card("CRVAL2  = 20"),
                                 card("RADESYS = 'FK4-NO-E'")};
    EXPECT_EQ(refusalOf(besselian), "positions in FK4-NO-E are not supported");
    MapHeader never = sinMap(10, 20, 1e-7);
    never.equinox = 1e300;
    EXPECT_NE(refusalOf(never).find("FK5 at 1e+300"), std::string::npos);
    EXPECT_EQ(refusalOf(MapHeader()), "the map has no celestial axes");
    MapHeader planet = sinMap(10, 20, 1e-7);
    planet.axes[0].ctype = "SLON-SIN";
    planet.axes[1].ctype = "SLAT-SIN";
    EXPECT_EQ(refusalOf(planet), "the axes SLON-SIN and SLAT-SIN are in no frame that is known");
    for (const char* code : {"TAN-SIP", "TPV", "", "XXX"}) {
        MapHeader other = sinMap(10, 20, 1e-7);
        other.axes[0].ctype = std::string("RA---") + code;
        other.axes[1].ctype = std::string("DEC--") + code;
        EXPECT_NE(refusalOf(other).find("projection"), std::string::npos) << code;
    }
    MapHeader flat = sinMap(10, 20, 1e-7);
    flat.cd[1][1] = 0;
    EXPECT_FALSE(refusalOf(flat).empty());
    MapHeader coupled = sinMap(10, 20, 1e-7);
    coupled.coordinateCards = {card("CRVAL1  = 10"), card("CRVAL2  = 20"), card("CD1_3   = 1E-3")};
    EXPECT_NE(refusalOf(coupled).find("more axes"), std::string::npos);
    double a = 7, b = 7;
    const SkyCoordinates unset;
    EXPECT_FALSE(unset.toSky(1, 1, a, b) || unset.toPixel(1, 1, a, b));
    const Sky sky(sinMap(10, 20, 1e-2));
    EXPECT_FALSE(sky.toSky(20000, 0, a, b) || sky.toPixel(190, -20, a, b) ||
                 sky.toPixel(NAN, 0, a, b) || sky.toPixel(10, 91, a, b) ||
                 sky.toSky(0, 1e300, a, b));
    EXPECT_EQ(a, 7);
}
