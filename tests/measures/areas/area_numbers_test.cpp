#include "pavane/axes/maps/MapNumbers.h"
#include "pavane/measures/areas/AreaTable.h"
#include "pavane/measures/areas/number_kernels.h"
#include "pavane/trackers/masks/AAreaBitFill.h"
#include "tessel/value_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>

using namespace pavane;

namespace
{

constexpr float blank = std::numeric_limits<float>::quiet_NaN();

struct Polygon {
    std::vector<CPoint> points;
    int isNeverClean = 0;
};

Polygon box(int left, int top, int right, int bottom, int isNeverClean = 0)
{
    return {{{left, top}, {right, top}, {right, bottom}, {left, bottom}}, isNeverClean};
}

struct Sky : MapContent {
    Sky(int rows, int columns, unsigned seed, const char* unit = "mJy/beam")
    {
        std::mt19937 random(seed);
        std::normal_distribution<float> noise;
        EXPECT_TRUE(map.cells.allocate(rows, columns));
        for (std::int64_t i = 0; i < std::int64_t{rows} * columns; ++i)
            // ties, blanks of both kinds and zeros of both signs among them
            map.cells.data()[i] = random() % 11 == 0   ? blank
                                  : random() % 13 == 0 ? -std::numeric_limits<float>::infinity()
                                  : random() % 3 == 0  ? std::round(noise(random)) * 0.5f
                                                       : noise(random);
        map.header.bunit = unit;
        map.header.axes.resize(2);
        for (int i : {0, 1}) {
            MapAxis& axis = map.header.axes[static_cast<std::size_t>(i)];
            axis.ctype = i ? "DEC--SIN" : "RA---SIN";
            axis.crval = i ? 40 : 83.6;
            axis.crpix = 20;
            axis.cdelt = i ? 1e-4 : -1e-4;
            map.header.cd[i][i] = axis.cdelt;
        }
        map.header.hasCelestialAxes = map.header.hasBeam = 1;
        map.header.bmaj = 6e-4;
        map.header.bmin = 4e-4;
        CString error;
        (void)describeCells(AFloatMatrixAccess(map.cells), map.header, described, error);
        frame = described.frame;
        noise_ = described.noise.sigma;
        MapContent::noise = described.noise;
    }
    MapContent described;
    double noise_ = 0;
};

AreaSource sourceOf(const std::vector<Polygon>& areas)
{
    return [&areas](int i, AArray<CPoint>& points, int& isNeverClean) {
        const Polygon& area = areas[static_cast<std::size_t>(i)];
        points = AArray<CPoint>(0, 0, 16);
        for (const CPoint& point : area.points)
            points.Add(point);
        isNeverClean = area.isNeverClean;
        return 1;
    };
}

/// The numbers of a mask by sorting and plain sums.
CellNumbers plainNumbers(const AMatrix<float>& cells, const ABitMatrix& mask)
{
    CellNumbers n;
    std::vector<float> values;
    long double sum = 0, x = 0, y = 0, squares = 0;
    for (int r = 0; r < cells.rows(); ++r)
        for (int c = 0; c < cells.columns(); ++c) {
            if (!mask.get(r, c))
                continue;
            const float value = cells(r, c);
            if (!std::isfinite(value)) {
                ++n.blank;
                continue;
            }
            values.push_back(value);
            sum += value;
            x += static_cast<long double>(value) * c;
            y += static_cast<long double>(value) * r;
            if (values.size() == 1 || double{value} < n.least)
                n.least = double{value}, n.leastColumn = c, n.leastRow = r;
            if (values.size() == 1 || double{value} > n.greatest)
                n.greatest = double{value}, n.greatestColumn = c, n.greatestRow = r;
        }
    n.cells = static_cast<std::int64_t>(values.size());
    n.sum = static_cast<double>(sum);
    if (values.empty())
        return n;
    const long double mean = sum / static_cast<long double>(n.cells);
    for (const float value : values)
        squares += (value - mean) * (value - mean);
    n.mean = static_cast<double>(mean);
    n.rms = static_cast<double>(std::sqrt(squares / static_cast<long double>(n.cells)));
    std::sort(values.begin(), values.end());
    n.median = (double{values[(values.size() - 1) / 2]} + double{values[values.size() / 2]}) / 2;
    if (sum > 0) {
        n.centroidColumn = static_cast<double>(x / sum);
        n.centroidRow = static_cast<double>(y / sum);
    }
    return n;
}

void expectNear(double is, double expected, double scale)
{
    EXPECT_EQ(std::isnan(is), std::isnan(expected));
    if (!std::isnan(expected)) {
        EXPECT_NEAR(is, expected, 1e-12 * std::max(scale, std::fabs(expected)));
    }
}

void expectSame(const CellNumbers& is, const CellNumbers& expected)
{
    EXPECT_EQ(is.cells, expected.cells);
    EXPECT_EQ(is.blank, expected.blank);
    expectNear(is.sum, expected.sum, static_cast<double>(expected.cells));
    expectNear(is.mean, expected.mean, 1);
    expectNear(is.median, expected.median, 0);
    expectNear(is.rms, expected.rms, 1);
    expectNear(is.least, expected.least, 0);
    expectNear(is.greatest, expected.greatest, 0);
    EXPECT_EQ(is.leastColumn, expected.leastColumn);
    EXPECT_EQ(is.leastRow, expected.leastRow);
    EXPECT_EQ(is.greatestColumn, expected.greatestColumn);
    EXPECT_EQ(is.greatestRow, expected.greatestRow);
    // small sums of both signs magnify roundings
    const double scale = 1e3 * static_cast<double>(expected.cells) / std::max(expected.sum, 1e-3);
    expectNear(is.centroidColumn, expected.centroidColumn, scale);
    expectNear(is.centroidRow, expected.centroidRow, scale);
}

/// Areas by the customary filler, one by one and all.
void expectPlain(const AreaMeasures& measures, const Sky& sky, const std::vector<Polygon>& areas)
{
    const AMatrix<float>& cells = sky.map.cells;
    ABitMatrix all(cells.rows(), cells.columns()), never = all;
    int others = 0;
    for (std::size_t i = 0; i < areas.size(); ++i) {
        SCOPED_TRACE(i);
        ABitMatrix own(cells.rows(), cells.columns());
        std::vector<CPoint> points = areas[i].points;
        AAreaBitFill().FillMatrix(own, points.data(), static_cast<int>(points.size()));
        expectSame(measures.numbers(static_cast<int>(i)), plainNumbers(cells, own));
        AAreaBitFill().FillMatrix(areas[i].isNeverClean ? never : all, points.data(),
                                  static_cast<int>(points.size()));
        others += !areas[i].isNeverClean;
    }
    if (!others)
        all.setAll(1);
    for (int r = 0; r < all.rows(); ++r)
        for (std::int64_t w = 0; w < all.rowWords(); ++w)
            all.row(r)[w] &= ~never.row(r)[w];
    expectSame(measures.allNumbers(), plainNumbers(cells, all));
    // the flux that --stats prints
    const MapNumbers map = mapNumbers(AFloatMatrixAccess(cells), sky, &all);
    expectNear(measures.scale().flux(measures.allNumbers().sum), map.flux,
               static_cast<double>(map.maskCells) * measures.scale().factor);
    EXPECT_EQ(measures.scale().unit, map.fluxUnit);
    EXPECT_EQ(measures.allNumbers().cells + measures.allNumbers().blank, map.maskCells);
    expectNear(measures.scale().beamCells, map.beamCells, 0);
}

}  // namespace

TEST(AreaNumbers, AreThoseOfSortedAndPlainSums)
{
    constexpr int far = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    const std::vector<std::vector<Polygon>> cases = {
        {},
        {box(3, 4, 40, 30)},
        {box(0, 0, 0, 0), box(63, 1, 64, 2), box(60, 5, 200, 9), box(5, 5, 5, 9)},
        {box(-20, -20, -1, -1), box(400, 0, 500, 10), {}, {{{7, 8}}}},
        {box(-9, -9, 20, 20), box(10, 10, 30, 30, 1), {{{2, 2}, {90, 40}, {5, 90}}}},
        {box(10, 10, 30, 30, 1)},
        {{{{least, least}, {far, 50}, {20, far}}}, {{{least, 3}, {far, 3}}}, box(least, 0, far, 1)},
    };
    for (std::size_t i = 0; i < cases.size(); ++i)
        for (const int columns : {97, 300}) {
            SCOPED_TRACE(std::to_string(i) + " on " + std::to_string(columns));
            const Sky sky(columns == 97 ? 61 : 220, columns, static_cast<unsigned>(i));
            const AFloatMatrixAccess cells(sky.map.cells);
            AreaMeasures measures;
            measures.setMap(&cells, &sky);
            ASSERT_TRUE(measures.update(static_cast<int>(cases[i].size()), sourceOf(cases[i])));
            expectPlain(measures, sky, cases[i]);
        }
}

TEST(AreaNumbers, FollowAnyChangeOfTheAreas)
{
    Sky sky(120, 140, 3);
    const AFloatMatrixAccess cells(sky.map.cells);
    AreaMeasures measures;
    measures.setMap(&cells, &sky);
    std::mt19937 random(5);
    std::vector<Polygon> areas;
    for (int step = 0; step < 60; ++step) {
        const auto any = [&](int n) {
            return static_cast<int>(random() % static_cast<unsigned>(n));
        };
        const int at = areas.empty() ? 0 : any(static_cast<int>(areas.size()));
        const Polygon made = box(any(140) - 9, any(120) - 9, any(140), any(120), any(4) == 0);
        switch (areas.empty() ? 0 : any(4)) {
        case 0:
            areas.insert(areas.begin() + at, made);
            break;
        case 1:
            areas.erase(areas.begin() + at);
            break;
        case 2:
            areas[static_cast<std::size_t>(at)] = made;
            break;
        default:
            for (std::int64_t i = step; i < std::int64_t{120} * 140; i += 7)
                sky.map.cells.data()[i] += 1;
            measures.setMap(&cells, &sky);
        }
        ASSERT_TRUE(measures.update(static_cast<int>(areas.size()), sourceOf(areas)));
        if (step % 6 == 0)
            expectPlain(measures, sky, areas);
    }
}

TEST(AreaNumbers, ErrorsOfFluxesFollowTheBeamsTheCellsOrNothing)
{
    // beam: pi / (4 ln 2) * 6 * 4 cells = 27.194...
    const double beam = std::acos(-1.0) / (4 * std::log(2.0)) * 24;
    const double noise = 0.002;
    struct Case {
        const char* unit;
        int hasBeam;
        std::int64_t cells;
        double error;
    };
    for (const Case& c :
         std::initializer_list<Case>{{"JY/BEAM", 1, 10, noise * 10 / beam},
                                     {"mJy/beam", 1, 272, noise * 1e-3 * std::sqrt(272 / beam)},
                                     {"K", 1, 272, noise * std::sqrt(272 / beam)},
                                     {"Jy/pixel", 1, 400, noise * 20},
                                     {"Jy/pixel", 0, 400, noise * 20},
                                     {"Jy/beam", 0, 400, CellNumbers::none},
                                     {"K", 0, 1, CellNumbers::none}}) {
        SCOPED_TRACE(std::string(c.unit) + " " + std::to_string(c.cells));
        Sky sky(20, 20, 1, c.unit);
        sky.map.header.hasBeam = c.hasBeam;
        const FluxScale scale = FluxScale::of(sky.map.header, frameOf(sky.map.header, 20, 20));
        expectNear(scale.error(noise, c.cells), c.error, 0);
        expectNear(scale.beams(c.cells),
                   c.hasBeam ? static_cast<double>(c.cells) / beam : CellNumbers::none, 0);
    }
}

TEST(AreaNumbers, NoiseIsThatOfTheMapOrOfAnEmptyArea)
{
    const Sky sky(90, 90, 8);
    const AFloatMatrixAccess cells(sky.map.cells);
    AreaMeasures measures;
    measures.setMap(&cells, &sky);
    const std::vector<Polygon> areas = {box(0, 0, 9, 9), box(20, 20, 60, 59)};
    ASSERT_TRUE(measures.update(2, sourceOf(areas)));
    EXPECT_EQ(measures.noise(), sky.noise_);
    measures.setNoiseArea(1);
    ASSERT_TRUE(measures.update(2, sourceOf(areas)));
    std::vector<float> values;
    for (int r = 20; r < 60; ++r)
        for (int c = 20; c < 61; ++c)
            if (std::isfinite(sky.map.cells(r, c)))
                values.push_back(sky.map.cells(r, c));
    for (const int wantsDeviations : {0, 1}) {
        std::sort(values.begin(), values.end());
        const double median =
            (double{values[(values.size() - 1) / 2]} + double{values[values.size() / 2]}) / 2;
        if (wantsDeviations) {
            EXPECT_NEAR(measures.noise(), 1.4826 * median, 1e-7);
        }
        for (float& value : values)
            value = static_cast<float>(std::fabs(double{value} - median));
    }
    measures.setNoiseArea(-1);
    EXPECT_EQ(measures.noise(), sky.noise_);
}

TEST(AreaTable, TellsPixelsFromOneAndPositions)
{
    Sky sky(40, 50, 2);
    std::fill_n(sky.map.cells.data(), 40 * 50, 0.0f);
    sky.map.cells(10, 19) = 3;
    sky.map.cells(10, 21) = 1;
    const AFloatMatrixAccess cells(sky.map.cells);
    AreaMeasures measures;
    measures.setMap(&cells, &sky);
    const std::vector<Polygon> areas = {box(15, 5, 25, 15), box(0, 0, 2, 2, 1)};
    ASSERT_TRUE(measures.update(2, sourceOf(areas)));
    AreaTable table;
    table.setMap(sky.map.header, sky.frame);
    table.add(measures, -1, [](int area, AreaRow& row) {
        row.kind = "rectangle";
        if (area == 1)
            row.label.name = "a\tb\n";
    });
    std::ostringstream tsv;
    ASSERT_TRUE(table.writeTsv(tsv));
    const auto split = [](const std::string& line, char by) {
        std::vector<std::string> parts(1);
        for (const char c : line)
            c == by ? (void)parts.emplace_back() : parts.back().push_back(c);
        return parts;
    };
    const std::vector<std::string> lines = split(tsv.str(), '\n');
    ASSERT_EQ(lines.size(), 5u);  // the last one is empty
    const std::vector<std::string> titles = split(lines[0], '\t');
    struct Case {
        std::size_t line;
        const char* title;
        const char* text;
    };
    for (const Case& c :
         std::initializer_list<Case>{{1, "Name", "Area 1"},
                                     {2, "Name", "a?b?"},
                                     {3, "Name", "All areas"},
                                     {2, "Kind", "rectangle, never clean"},
                                     {1, "Cells", "121"},
                                     {1, "Sum [mJy/beam]", "4"},
                                     {1, "Greatest pixel_x", "20"},
                                     {1, "Greatest pixel_y", "11"},
                                     {1, "Greatest east [mas]", "0"},
                                     {1, "Greatest north [mas]", "-3240"},
                                     {1, "Centroid pixel_x", "20.500"},
                                     {2, "Centroid pixel_x", ""},
                                     {1, "Centroid east [mas]", "-180"},
                                     {1, "Centroid declination [ICRS]", "+39:59:56.760"}}) {
        SCOPED_TRACE(c.title);
        const auto at = std::find(titles.begin(), titles.end(), c.title);
        ASSERT_NE(at, titles.end()) << lines[0];
        EXPECT_EQ(split(lines[c.line], '\t')[static_cast<std::size_t>(at - titles.begin())],
                  c.text);
    }
}

TEST(NumberKernels, GiveTheSameOnEveryPath)
{
    const Sky sky(1, 4000, 8);
    const NumberKernels plain = numberKernels(SimdPath::plain);
    for (const SimdPath path : {SimdPath::avx2, SimdPath::avx512}) {
        if (path > bestSimdPath())
            continue;
        const NumberKernels kernels = numberKernels(path);
        std::mt19937 random(5);
        for (int i = 0; i < 300; ++i) {
            const int first = static_cast<int>(random() % 3900);
            const int count = static_cast<int>(random() % (i % 2 ? 12 : 100));
            const float* const values = sky.map.cells.data() + first;
            std::vector<float> to(116), beside(116);
            RowSums sums, besideSums;
            const int isFinite = kernels.addFinite(values, count, first, to.data(), sums);
            ASSERT_EQ(isFinite, plain.addFinite(values, count, first, beside.data(), besideSums));
            if (!isFinite)
                continue;
            const auto number = static_cast<std::size_t>(count);
            EXPECT_EQ(sums.sum, besideSums.sum);
            EXPECT_EQ(sums.byColumn, besideSums.byColumn);
            EXPECT_EQ(sums.least, besideSums.least);
            EXPECT_EQ(sums.greatest, besideSums.greatest);
            EXPECT_EQ(kernels.squares(values, number, 0.1), plain.squares(values, number, 0.1));
            std::size_t below = 0, besideBelow = 0;
            const std::size_t found =
                kernels.between(values, number, -0.5f, 0.5f, below, to.data());
            ASSERT_EQ(found,
                      plain.between(values, number, -0.5f, 0.5f, besideBelow, beside.data()));
            EXPECT_EQ(below, besideBelow);
            EXPECT_TRUE(std::equal(to.begin(), to.begin() + static_cast<std::ptrdiff_t>(found),
                                   beside.begin()));
        }
    }
}
