#include "tessel/fits_map.h"
#include "tessel/map_steps.h"

#include "tessel/fits_text.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

FitsMap readMap(const std::string& bytes, int plane = -1)
{
    FitsMap map;
    std::string error;
    EXPECT_TRUE(readFitsMap(saved("map.fits", bytes), plane, map, error)) << error;
    return map;
}

std::string floats(std::initializer_list<float> values)
{
    std::string bytes;
    for (const float v : values)
        bytes += bigEndian(std::bit_cast<std::uint32_t>(v), 4);
    return bytes;
}

}  // namespace

TEST(FitsMap, ReadsEveryTypeOfCellWithScaleAndBlanks)
{
    const auto wide = [](double v) { return bigEndian(std::bit_cast<std::uint64_t>(v), 8); };
    const struct {
        int bitpix;
        std::vector<std::string> cards;
        std::string data;
        float second;
    } cases[] = {{8, {"BLANK   = 255"}, "\xff\x03", 3},
                 {16,
                  {"BLANK   = -32768", "BSCALE  = 0.5", "BZERO   = 10.0"},
                  bigEndian(0x8000, 2) + bigEndian(0xFFFC, 2),
                  8},
                 {32, {"BLANK   = 7"}, bigEndian(7, 4) + bigEndian(0xFFFFFFFF, 4), -1},
                 {64, {"BLANK   = 7"}, bigEndian(7, 8) + bigEndian(1000, 8), 1000},
                 {-32, {"BSCALE  = 2.0"}, floats({NAN, 1.5f}), 3},
                 {-64, {}, wide(NAN) + wide(-1e300), -3.4028235e38f}};
    for (const auto& c : cases) {
        const FitsMap map = readMap(hdu(imageCards(c.bitpix, {2, 1}, c.cards), c.data));
        ASSERT_EQ(map.cells.columns(), 2) << c.bitpix;
        EXPECT_TRUE(std::isnan(map.cells(0, 0))) << c.bitpix;
        EXPECT_EQ(map.cells(0, 1), c.second) << c.bitpix;
    }
}

TEST(FitsMap, KeepsTheFilesOrderAndPicksAPlane)
{
    const std::string bytes =
        hdu(imageCards(-32, {2, 1, 1, 3},
                       {"CTYPE3  = 'FREQ'", "CUNIT3  = 'GHz'", "CRVAL3  = 8.4", "CRPIX3  = 1.0",
                        "CTYPE4  = 'STOKES'", "CRVAL4  = -1.0", "CRPIX4  = 1.0", "CDELT4  = -1.0"}),
            floats({0, 1, 2, 3, 4, 5}));
    const FitsMap map = readMap(bytes, 1);
    EXPECT_EQ(map.cells(0, 0), 2);
    EXPECT_EQ(map.cells(0, 1), 3);
    EXPECT_EQ(map.header.planes, 3);
    EXPECT_EQ(map.header.stokes, "LL");
    EXPECT_NEAR(map.header.frequency, 8.4e9, 1);
    FitsMap refused;
    std::string error;
    for (const int plane : {-1, 3}) {
        EXPECT_FALSE(readFitsMap(saved("map.fits", bytes), plane, refused, error));
        EXPECT_NE(error.find("3"), std::string::npos) << error;
        EXPECT_EQ(refused.cells.cells(), 0);
    }
}

TEST(FitsMap, TakesStepsAndTurnFromTheMatrixWhateverStandsBesideIt)
{
    using Cards = std::vector<std::string>;
    const Cards sky = {"CTYPE1  = 'RA---SIN'", "CTYPE2  = 'DEC--SIN'"};
    const Cards swapped = {"CTYPE1  = 'DEC--SIN'", "CTYPE2  = 'RA---SIN'"};
    const Cards steps = {"CDELT1  = -2.0", "CDELT2  = 2.0"};
    const auto with = [](Cards a, const Cards& b) {
        a.insert(a.end(), b.begin(), b.end());
        return a;
    };
    const struct {
        const char* name;
        Cards cards;
        double column, row, turn;  // degrees from east towards north; 999 is none
        double sky01;              // east of a step of a row
    } cases[] = {
        {"CD", {"CD1_1   = -2D-8", "CD2_2   = 2E-8"}, -2e-8, 2e-8, 999, 0},
        {"CD, stray steps", with(steps, {"CD1_1   = -0.5", "CD2_2   = 0.5"}), -0.5, 0.5, 999, 0},
        {"CD of one line is none", with(steps, {"CD1_1   = -2D-8"}), -2, 2, 999, 0},
        {"PC", with(steps, {"PC1_2   = 0.5"}), -2, std::sqrt(5.0), 0, -1},
        {"PC, old spelling", with(steps, {"PC001002= 0.5"}), -2, std::sqrt(5.0), 0, -1},
        {"PC of two digits", with(steps, {"PC01_02 = 0.5"}), -2, std::sqrt(5.0), 0, -1},
        {"PC with the scale", {"PC1_1   = -3E-7", "PC2_2   = 3E-7"}, -3e-7, 3e-7, 999, 0},
        {"PC with the sign", {"CDELT1  = 2.0", "CDELT2  = 2.0", "PC1_1   = -1.0"}, -2, 2, 999, 0},
        {"CROTA", with(steps, {"CROTA2  = 90.0"}), -2, 2, 90, -2},
        {"CROTA of the longitude", with(steps, {"CROTA1  = 90.0"}), -2, 2, 999, 0},
        {"upside down", with(steps, {"CROTA2  = 180.0"}), 2, -2, 999, 0},
        {"PC beside CROTA", with(steps, {"CROTA2  = 30.0", "PC1_1   = 1.0"}), -2, 2, 999, 0},
        {"latitude first", with(swapped, steps), 2, 2, -90, 2},
        {"latitude first, CROTA", with(with(swapped, steps), {"CROTA1  = 90.0"}), 2, 2, 999, 0},
        {"arcseconds", {"CDELT1  = -3600.0", "CUNIT1  = 'ARCSEC'"}, -1, 1, 999, 0},
        {"milliarcseconds", {"CDELT1  = -3.6d6", "CUNIT1  = 'marcsec'"}, -1, 1, 999, 0},
    };
    for (const auto& c : cases) {
        const Cards cards = c.cards[0].substr(0, 5) == "CTYPE" ? c.cards : with(sky, c.cards);
        const MapHeader header = readMap(hdu(imageCards(8, {1, 1}, cards), "x")).header;
        const MapSteps got = stepsOf(header);
        EXPECT_TRUE(header.hasCelestialAxes) << c.name;
        EXPECT_DOUBLE_EQ(header.axes[0].cdelt, c.column) << c.name;
        EXPECT_DOUBLE_EQ(header.axes[1].cdelt, c.row) << c.name;
        EXPECT_NEAR(got.sky[0][1], c.sky01, 1e-12) << c.name;
        EXPECT_EQ(got.isTurned, c.turn < 999) << c.name;
        if (got.isTurned && c.turn != 0) {  // the columns' direction on the sky
            const double x = got.sky[0][0] / got.column;
            const double y = got.sky[1][0] / got.column;
            EXPECT_NEAR(std::atan2(y, x) * 180 / 3.14159265358979, c.turn, 1e-9) << c.name;
        }
        for (int i = 0; i < 4; ++i) {  // turn undoes the sky, up to the steps
            const int r = i / 2;
            const int k = i % 2;
            const double back = got.turn[r][0] * got.sky[0][k] + got.turn[r][1] * got.sky[1][k];
            EXPECT_NEAR(back, r != k ? 0 : r ? got.row : got.column, 1e-12) << c.name;
        }
    }
    const Cards lengths = with(sky, {"CUNIT2  = 'cm'"});
    EXPECT_FALSE(readMap(hdu(imageCards(8, {1, 1}, lengths), "x")).header.hasCelestialAxes);
}

TEST(FitsMap, FindsTheBeamInTheHeaderElseInTheLastOfTheHistory)
{
    const std::string history[] = {
        "HISTORY AIPS   CLEAN BMAJ=  1.0000E-06 BMIN=  5.0000E-07 BPA=  10.00",
        "HISTORY AIPS   CLEAN BMAJ=  2.0000E-06 BMIN=  1.0000E-06 BPA= -20.50"};
    const auto beamOf = [](const std::vector<std::string>& cards) {
        const MapHeader h = readMap(hdu(imageCards(8, {1, 1}, cards), "x")).header;
        return std::vector<double>{double(h.hasBeam), h.bmaj, h.bmin, h.bpa};
    };
    EXPECT_EQ(beamOf({history[0], history[1]}), (std::vector<double>{1, 2e-6, 1e-6, -20.5}));
    EXPECT_EQ(beamOf({history[0], "BMAJ    = 3E-6", "BMIN    = 2E-6", "BPA     = 5.0"}),
              (std::vector<double>{1, 3e-6, 2e-6, 5}));
    EXPECT_EQ(beamOf({"BMAJ    = 0.0", "BMIN    = 0.0"}), (std::vector<double>{0, 0, 0, 0}));
}

TEST(FitsMap, ReadsTileCompressedImages)
{
    for (const int codec : {RICE_1, GZIP_1, GZIP_2, HCOMPRESS_1, PLIO_1}) {
        const FitsMap map = readMap(packedMap(codec));
        ASSERT_EQ(map.cells.columns(), 40) << codec;
        EXPECT_EQ(map.cells.rows(), 30) << codec;
        for (const int r : {0, 7, 29})
            for (const int c : {0, 39})
                EXPECT_EQ(map.cells(r, c), static_cast<float>(r * 40 + c) * 0.5f) << codec;
        EXPECT_EQ(map.header.object, "M87") << codec;
    }
}

TEST(FitsMap, TakesNamesAsTheyAre)
{
    FitsMap map;
    std::string error;
    for (const char* name : {"m[1].fits", "~m.fits", " m.fits", "m+1", "m.fits(out)"})
        EXPECT_TRUE(readFitsMap(saved(name, hdu(imageCards(8, {1, 1}), "x")), -1, map, error))
            << name << ": " << error;
}

TEST(FitsMap, StopsWhenTheCallerGivesUp)
{
    FitsMap map;
    std::string error;
    const std::string name =
        saved("map.fits", hdu(imageCards(8, {1500, 1500}), std::string(2250000, 'x')));
    double done = 0;
    EXPECT_FALSE(readFitsMap(name, -1, map, error, [&](double part) {
        done = part;
        return 0;
    }));
    EXPECT_TRUE(done > 0 && done < 1);
    EXPECT_EQ(map.cells.cells(), 0);
}

}  // namespace pavane
