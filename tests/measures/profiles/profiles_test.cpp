// What no other program has a number for: gaps, refusals, planes that fail. Values of profiles,
// spectra and histograms stand beside numpy in tests/apps/profile_tables.py.
#include "pavane/measures/profiles/PositionVelocity.h"
#include "pavane/measures/profiles/profile_tables.h"
#include "pavane/measures/profiles/sky_ruler.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numeric>
#include <sstream>

using namespace pavane;

namespace
{

constexpr float blank = std::numeric_limits<float>::quiet_NaN();

/// Cells that are a plane, 2 + 3 column - row, which bilinear interpolation meets exactly.
struct Ramp : AMatrix<float> {
    Ramp(int rows, int columns)
    {
        EXPECT_TRUE(allocate(rows, columns));
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < columns; ++c)
                (*this)(r, c) = 2.0f + 3.0f * float(c) - float(r);
    }
};

int takeFrom(const AMatrix<float>& cells, const ProfileLine& line, MapProfile& profile,
             std::string& error)
{
    error.clear();
    return profile.take(AFloatMatrixAccess(cells), line, SkyCoordinates(), MapFrame(), error);
}

}  // namespace

TEST(MapProfile, IsTheMapAlongItsCorners)
{
    Ramp cells(20, 30);
    MapProfile profile;
    std::string error;
    // 5 cells along a diagonal, 7.25 down a column
    ASSERT_TRUE(takeFrom(cells, {{{2, 3}, {5, 7}, {5, 14.25}}}, profile, error)) << error;
    ASSERT_EQ(profile.samples.size(), 26u);
    EXPECT_EQ(profile.samples.back().cells, 12.25);
    EXPECT_FALSE(profile.hasSky);
    for (const MapProfile::Sample& s : profile.samples) {
        const double part = std::min(s.cells, 5.0) / 5;
        EXPECT_NEAR(s.place.x, 2 + 3 * part, 1e-12);
        EXPECT_NEAR(s.place.y, 3 + 4 * part + std::max(s.cells - 5, 0.0), 1e-12);
        EXPECT_NEAR(s.value, 2 + 3 * s.place.x - s.place.y, 1e-5);
    }
    // three cells wide along a row: the mean is the middle, the greatest its upper neighbour
    for (const auto& [across, value] :
         {std::pair{AcrossLine::mean, 0.0}, {AcrossLine::greatest, 1.0}, {AcrossLine::sum, 0.0}}) {
        ASSERT_TRUE(takeFrom(cells, {{{4, 8}, {9, 8}}, 3, across}, profile, error));
        const double middle = 2 + 3 * 4 - 8;
        EXPECT_NEAR(profile.samples[0].value,
                    across == AcrossLine::sum ? 3 * middle : middle + value, 1e-5);
    }
    // a strip in any direction holds the sum of its cells as often as it is sampled
    cells.fill(1);
    ASSERT_TRUE(takeFrom(cells, {{{5, 5}, {11, 10}}, 2.6, AcrossLine::sum}, profile, error));
    EXPECT_NEAR(profile.samples[3].value, 2.6, 1e-6);
}

TEST(MapProfile, HasGapsAndRefusals)
{
    Ramp cells(20, 30);
    cells(8, 10) = blank;
    MapProfile profile;
    std::string error;
    ASSERT_TRUE(takeFrom(cells, {{{6, 8}, {14, 8}}}, profile, error));
    for (const MapProfile::Sample& s : profile.samples)
        EXPECT_EQ(std::isfinite(s.value), std::fabs(s.place.x - 10) >= 1) << s.place.x;
    // beside the blank cell, at any slope that rounding has
    ASSERT_TRUE(takeFrom(cells, {{{0.1, 7}, {29 - 0.1, 7}}}, profile, error));
    for (const MapProfile::Sample& s : profile.samples)
        EXPECT_TRUE(std::isfinite(s.value)) << s.place.x;
    ASSERT_TRUE(takeFrom(cells, {{{-4, 2}, {40, 2}}}, profile, error));
    EXPECT_EQ(std::count_if(profile.samples.begin(), profile.samples.end(),
                            [](const auto& s) { return std::isfinite(s.value); }),
              29 * 2 + 1);
    const double nan = MapProfile::none;
    const struct {
        ProfileLine line;
        const char* told;
    } bad[] = {{{{{3, 3}}}, "no length"},
               {{{{3, 3}, {3, 3}}}, "no length"},
               {{{{3, nan}, {4, 4}}}, "not made of places"},
               {{{{3, 3}, {4, 4}}, -1}, "not made of places"},
               {{{{40, 3}, {50, 3}}}, "meets no cell"},
               {{{{10, 8}, {10.2, 8}}}, "meets no cell"},
               {{{{0, 0}, {1e300, 0}}}, "longer than"}};
    for (const auto& [line, told] : bad) {
        EXPECT_FALSE(takeFrom(cells, line, profile, error));
        EXPECT_NE(error.find(told), std::string::npos) << error;
        EXPECT_TRUE(profile.samples.empty());
    }
}

TEST(SkyRuler, MeasuresAlongTheGreatCircle)
{
    // longitude and latitude of both ends, distance and position angle in degrees
    constexpr double table[][6] = {
        {10, 0, 100, 0, 90, 90},      {10, 0, 10, 30, 30, 0},
        {350, 80, 170, 80, 20, 0},    {0, 60, 1e-9, 60, 5e-10, 90},
        {0, -45, 0, -45.5, 0.5, 180}, {0, 89, 90, 89, 1.414178, 45.0087}};
    for (const auto& t : table) {
        double angle = 0;
        EXPECT_NEAR(greatCircle({t[0], t[1]}, {t[2], t[3]}, angle) / t[4], 1, 1e-6);
        EXPECT_NEAR(angle, t[5], 1e-2);
    }
    const MapDistance none = distanceBetween({1, 1}, {4, 5}, SkyCoordinates(), MapFrame());
    EXPECT_EQ(none.cells, 5);
    EXPECT_TRUE(std::isnan(none.arcseconds) && std::isnan(none.positionAngle));
}

TEST(CellHistogram, HoldsEveryCell)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const struct {
        std::vector<float> cells;
        double sigma;
        int bins;  ///< -1: not looked at
    } table[] = {{{1, 1, 1}, 0, 1},         {{0, 0, 0, 0}, 1, 1},
                 {{blank, infinity}, 1, 0}, {{-1, 1, blank}, 0, 100},
                 {{-1, 1, 3}, 2.5f, 8},     {{0, 1e30f, -1e30f}, 1e-30f, -1},
                 {{3e38f, -3e38f}, 0, -1},  {{1e-42f, 3e-42f}, 0, -1}};
    for (const auto& t : table) {
        const AStridedAccess<float> cells(t.cells.data(), 1, int(t.cells.size()), 1);
        CellHistogram histogram;
        ASSERT_TRUE(histogram.take(cells, nullptr, {3, 0, t.sigma}));
        EXPECT_TRUE(t.bins < 0 || histogram.bins() == t.bins) << histogram.bins();
        EXPECT_LE(histogram.bins(), CellHistogram::mostBins);
        std::int64_t sum = 0;
        for (int i = 0; i < histogram.bins(); ++i)
            sum += histogram.count(i);
        EXPECT_EQ(sum, histogram.cells());
        EXPECT_EQ(histogram.cells() + histogram.blank(), std::int64_t(t.cells.size()));
    }
}

TEST(Spectra, ReadOnlyTheRowsThatTheyNeedAndTellFaults)
{
    CubePart part;
    part.rows = 50;
    part.columns = 40;
    part.planes.resize(3);
    std::iota(&part.planes[0].plane, &part.planes[0].plane + 1, 4);
    part.planes[1].plane = 5;
    part.planes[2].plane = 9;
    int firstRow = 0, rows = 0;
    part.read = [&](int plane, int first, int count, float* to, std::string& error) {
        firstRow = first;
        rows = count;
        for (int r = first; r < first + count; ++r)
            for (int c = 0; c < part.columns; ++c)
                *to++ = r == 12 && c == 5 ? blank : float(100 * plane + r);
        return plane == 9 && part.isWhole == 2 ? error = "cut short", 0 : 1;
    };
    std::vector<CellSpectrum> spectra(3);
    ASSERT_TRUE(cellsOfPlace(12, 7, 50, 40, spectra[0].cells));
    ASSERT_TRUE(cellsOfPlace(12, 40, 50, 40, spectra[1].cells));
    ASSERT_TRUE(cellsOfBox(10, -5, 12, 6, 50, 40, spectra[2].cells));
    std::string error;
    for (const int isWhole : {0, 1}) {
        part.isWhole = isWhole;
        ASSERT_TRUE(findSpectra(part, spectra, error));
        EXPECT_EQ(firstRow, isWhole ? 0 : 10);
        EXPECT_EQ(firstRow + rows, 13);
        for (std::size_t i = 0; i < 3; ++i) {
            const float at = float(100 * part.planes[i].plane);
            EXPECT_EQ(spectra[0].numbers[i].mean, double(at + 12));
            EXPECT_EQ(spectra[1].numbers[i].cells, 0);
            EXPECT_EQ(spectra[2].numbers[i].cells, 20);
            EXPECT_EQ(spectra[2].numbers[i].sum,
                      double(7 * (at + 10) + 7 * (at + 11) + 6 * (at + 12)));
            EXPECT_EQ(spectra[2].numbers[i].greatestRow, 12);
        }
    }
    EXPECT_FALSE(findSpectra(part, spectra, error, [](double) { return 0; }));
    part.isWhole = 2;
    EXPECT_FALSE(findSpectra(part, spectra, error));
    EXPECT_EQ(error, "cut short");
    // a row of words that stay the same, and cells without a number
    std::ostringstream text;
    const NumberTable table = spectrumTable({{"a\tb", &spectra[1]}}, part.planes, "", FluxScale());
    ASSERT_TRUE(table.writeTsv(text));
    EXPECT_NE(text.str().find("\na?b\t5\t0\t\t\t"), std::string::npos) << text.str();
}

// Values and axes stand beside numpy and Astropy in tests/apps/position_velocity.py.
TEST(PositionVelocity, ReadsTheRowsThatTheLineCrossesAndTellsFaults)
{
    CubePart part;
    part.rows = 50;
    part.columns = 40;
    part.planes.resize(3);
    for (int i = 0; i < 3; ++i)
        part.planes[std::size_t(i)].plane = 4 + i;
    int firstRow = 0, rows = 0;
    part.read = [&](int plane, int first, int count, float* to, std::string& error) {
        firstRow = first;
        rows = count;
        for (int r = first; r < first + count; ++r)
            for (int c = 0; c < part.columns; ++c)
                *to++ = 2.0f + 3.0f * float(c) - float(r) + 100 * float(plane);
        return plane == 6 ? error = "cut short", 0 : 1;
    };
    MapHeader header;
    header.axes.resize(3);
    PositionVelocity map;
    std::string error;
    const ProfileLine line{{{3, 10}, {3, 12}, {-2, 12}}, 2.8};
    for (const int isWhole : {0, 1}) {
        part.isWhole = isWhole;
        ASSERT_TRUE(map.begin(part, header, line, error)) << error;
        ASSERT_EQ(map.columns(), 15);
        std::vector<float> values(15);
        ASSERT_TRUE(map.read(1, values.data(), error));
        EXPECT_EQ(firstRow, isWhole ? 0 : 8);
        EXPECT_EQ(firstRow + rows, 15);
        for (std::size_t i = 0; i < 15; ++i) {
            const double x = 3 - std::max(double(i) / 2 - 2, 0.0),
                         y = std::min(10 + double(i) / 2, 12.0);
            ASSERT_EQ(std::isfinite(values[i]), x >= 0) << i;
            EXPECT_TRUE(!(x >= 0) || std::fabs(values[i] - (502 + 3 * x - y)) < 1e-4) << i;
        }
        EXPECT_FALSE(map.read(2, values.data(), error));
        EXPECT_EQ(error, "cut short");
        EXPECT_FALSE(map.read(3, values.data(), error));
    }
    EXPECT_EQ(map.header().axes[0].cunit + map.header().axes[1].ctype, "pixelPLANE");
    EXPECT_EQ(map.header().axes[1].crval, 4);
    header.axes[2].ctype = "FREQ";
    for (const double step : {0.0, 1e308 * 10, MapProfile::none}) {
        header.axes[2].cdelt = step;
        EXPECT_FALSE(map.begin(part, header, line, error)) << step;
        EXPECT_EQ(map.rows() + map.columns(), 0);
    }
    for (const ProfileLine& bad : {ProfileLine{{{3, 3}, {3, 3.4}}}, ProfileLine{{{60, 3}, {70, 9}}},
                                   ProfileLine{{{3, 3}, {MapProfile::none, 9}}}})
        EXPECT_FALSE(map.begin(part, {}, bad, error));
    part.planes.clear();
    EXPECT_FALSE(map.begin(part, {}, line, error));
}
