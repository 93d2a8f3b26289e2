#include "pavane/axes/maps/cells/map_picture.h"
#include "pavane/axes/maps/cells/MapRanks.h"

#include "pavane/axes/maps/cells/map_statistics.h"
#include "test_maps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <string>

namespace pavane
{

namespace
{

/// What each pixel shows, cell by cell: "0", "1-2", "." for nothing.
std::string shownCells(const PixelCells& pixels)
{
    std::string text;
    for (int i = 0; i < pixels.pixels(); ++i) {
        const int group = pixels.groupOf(i);
        text += i ? " " : "";
        if (group < 0) {
            text += ".";
            continue;
        }
        const CellSpan span = pixels.span(group);
        text += std::to_string(span.first);
        if (span.end - span.first > 1)
            text += "-" + std::to_string(span.end - 1);
    }
    return text;
}

/// The greatest finite cell of two spans, minus infinity when there is none.
float greatestOf(const AMatrix<float>& map, CellSpan rows, CellSpan columns)
{
    float greatest = -std::numeric_limits<float>::infinity();
    for (int r = rows.first; r < rows.end; ++r)
        for (int c = columns.first; c < columns.end; ++c)
            if (std::isfinite(map(r, c)))
                greatest = std::max(greatest, map(r, c));
    return greatest;
}

/// The finite cells, rising.
std::vector<double> sortedCells(const AMatrix<float>& map)
{
    std::vector<double> cells;
    std::copy_if(map.data(), map.data() + map.cells(), std::back_inserter(cells),
                 [](float cell) { return std::isfinite(cell); });
    std::sort(cells.begin(), cells.end());
    return cells;
}

MapNoise noiseBySorting(const AMatrix<float>& map)
{
    std::vector<double> cells = sortedCells(map);
    const auto middle = [&] {
        return (cells[(cells.size() - 1) / 2] + cells[cells.size() / 2]) / 2;
    };
    const double centre = middle();
    for (double& cell : cells)
        cell = static_cast<double>(static_cast<float>(std::fabs(cell - centre)));
    std::sort(cells.begin(), cells.end());
    return {static_cast<std::int64_t>(cells.size()), centre, 1.4826 * middle()};
}

}  // namespace

TEST(PixelCells, ShowCellsAsBlocksAndShareEachCellWithOnePixelOnly)
{
    struct Case {
        double start, step;
        int pixels, cells;
        const char* shown;
    };
    const Case cases[] = {
        {-0.5, 1, 4, 4, "0 1 2 3"},          {-0.5, 0.5, 6, 3, "0 0 1 1 2 2"},
        {2.5, -0.5, 6, 3, "2 2 1 1 0 0"},     // the direction is reversed
        {-0.75, 0.5, 7, 3, "0 0 1 1 2 2 2"},  // pixel centres on the edges of cells
        {-0.5, 2, 3, 6, "0-1 2-3 4-5"},      {-0.5, 2.5, 2, 5, "0-1 2-4"},
        {4.5, -2.5, 2, 5, "2-4 0-1"},        {1.5, 0.5, 4, 10, "2 2 3 3"},  // a part of the map
        {-3, 1.5, 4, 2, ". . 0-1 ."},
    };
    for (const Case& c : cases) {
        PixelCells pixels;
        pixels.setLinear(c.start, c.step, c.pixels, c.cells);
        EXPECT_EQ(shownCells(pixels), c.shown) << c.start << " " << c.step;
    }
}

TEST(MapReduction, ShowsTheGreatestCellOfEachPixelOnEveryPath)
{
    std::mt19937 random(7);
    for (int round = 0; round < 120; ++round) {
        const int rows = 1 + pick(random, 60);
        const int columns = 1 + pick(random, 300);
        const AMatrix<float> map = randomMap(rows, columns, pick(random, 1 << 20));
        PixelCells x, y;
        const double stepX = (round % 2 ? 1 : -1) * columns / (1.0 + pick(random, 70));
        const double stepY = rows / (1.0 + pick(random, 40));
        x.setLinear(round % 2 ? -0.5 : columns - 0.5, stepX, 40, columns);
        y.setLinear(-0.5, stepY, 30, rows);
        float least = std::numeric_limits<float>::infinity();
        for (int r = y.firstCell(); r < y.endCell(); ++r)
            for (int c = x.firstCell(); c < x.endCell(); ++c)
                least = std::isfinite(map(r, c)) ? std::min(least, map(r, c)) : least;
        // a copying access and one without a copy
        const AFloatMatrixAccess direct(map);
        const AStridedAccess<float> copied(map.data(), rows, columns, columns, 1, 99);
        for (const SimdPath path : simdPaths()) {
            MapReduction reduced;
            ASSERT_TRUE(
                reduced.reduce(round % 3 ? static_cast<const AMatrixAccess&>(direct) : copied, x, y,
                               SharedPixel::greatest, path));
            EXPECT_EQ(reduced.least(), least);
            for (int g = 0; g < y.groups(); ++g)
                for (int h = 0; h < x.groups(); ++h)
                    ASSERT_EQ(reduced.values()(g, h), greatestOf(map, y.span(g), x.span(h)))
                        << round << ": " << g << ", " << h;
        }
    }
}

TEST(MapReduction, AveragesWhenAsked)
{
    AMatrix<float> map(2, 3);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float cells[] = {1, 2, nan, 3, nan, nan};
    std::copy_n(cells, 6, map.data());
    PixelCells x, y;
    x.setLinear(-0.5, 1.5, 2, 3);
    y.setLinear(-0.5, 2, 1, 2);
    MapReduction reduced;
    ASSERT_TRUE(reduced.reduce(AFloatMatrixAccess(map), x, y, SharedPixel::mean));
    EXPECT_EQ(reduced.values()(0, 0), 2);  // columns 0; 1 and 2 share the other pixel
    EXPECT_EQ(reduced.values()(0, 1), 2);
}

/// Colour of the greatest cell of each pixel, one pixel after the other; 250 where the map does not
/// reach.
std::vector<unsigned char> plainPicture(const AMatrix<float>& map, const PixelCells& x,
                                        const PixelCells& y, const MapScale& scale,
                                        const MapColors& colors)
{
    std::vector<unsigned char> picture;
    std::vector<float> changes;  // where the next colour begins
    for (int i = 1; i < colors.count; ++i)
        changes.push_back(static_cast<float>(scale.value(static_cast<double>(i) / colors.count)));
    const float step = static_cast<float>(colors.count / (scale.high() - scale.low()));
    for (int j = 0; j < y.pixels(); ++j)
        for (int i = 0; i < x.pixels(); ++i) {
            if (x.groupOf(i) < 0 || y.groupOf(j) < 0) {
                picture.push_back(250);
                continue;
            }
            const float value = greatestOf(map, y.span(y.groupOf(j)), x.span(x.groupOf(i)));
            int index = 0;
            if (scale.kind() == MapScaleKind::linear)
                index =
                    static_cast<int>(std::clamp((value - static_cast<float>(scale.low())) * step,
                                                0.0f, static_cast<float>(colors.count - 1)));
            else
                index = static_cast<int>(std::upper_bound(changes.begin(), changes.end(), value) -
                                         changes.begin());
            picture.push_back(static_cast<unsigned char>(std::isfinite(value) ? colors.first + index
                                                                              : colors.blank));
        }
    return picture;
}

TEST(MapRanks, PaintThePictureOfTheGreatestCells)
{
    constexpr MapScaleKind kinds[] = {MapScaleKind::linear, MapScaleKind::squareRoot,
                                      MapScaleKind::logarithmic, MapScaleKind::equalized};
    std::mt19937 random(11);
    MapRanks ranks;
    for (int round = 0; round < 84; ++round) {
        const int rows = 1 + pick(random, 60);
        const int columns = 1 + pick(random, 300);
        AMatrix<float> map = randomMap(rows, columns, pick(random, 1 << 20));
        const float offset =
            round % 7 ? 0.0f : 1e3f;  // all values share the upper half of their bits
        for (std::int64_t i = 0; offset > 0 && i < map.cells(); ++i)
            map.data()[i] = offset + 0.01f * map.data()[i];
        const AFloatMatrixAccess cells(map);
        PixelCells x, y;
        // from many cells a pixel to many pixels a cell, also from the middle of the map
        const double stepX = (round % 2 ? 1 : -1) * columns / (1.0 + pick(random, 200));
        x.setLinear(round % 2 ? columns / 3.0 : columns - 0.5, stepX, 90, columns);
        if (round % 5 == 0) {  // pixels of unequal widths, as on a logarithmic axis
            std::vector<double> edges{-0.5};
            while (edges.size() <= 90)
                edges.push_back(
                    -0.5 + columns * std::pow(2.0, static_cast<double>(edges.size()) / 9 - 10));
            x.set(edges, columns);
        }
        y.setLinear(-2.5, (rows + 3) / (1.0 + pick(random, 60)), 30, rows);
        const double width = offset > 0 ? 0.03 : 3;
        const double centre = static_cast<double>(offset);
        MapScale scale(kinds[round % 4],
                       round % 4 == 2 ? std::max(centre - width, 0.25) : centre - width,
                       centre + 2 * width);
        (void)scale.equalize(cells);
        const MapColors colors{0, round % 3 ? 226 : 2 + pick(random, 200), 240};
        const std::vector<unsigned char> expected = plainPicture(map, x, y, scale, colors);
        for (const SimdPath path : simdPaths()) {
            ASSERT_TRUE(ranks.set(cells, scale, colors.count, path));
            for (const int first : {0, round % 5}) {
                std::vector<unsigned char> bits(90 * 30, 250), shifted = expected;
                for (unsigned char& index : shifted)
                    index = static_cast<unsigned char>(index < 226 ? index + first : index);
                ASSERT_TRUE(ranks.paint(x, y, {first, colors.count, 240}, bits.data(), 90, path));
                ASSERT_EQ(bits, shifted) << round;
            }
        }
        MapReduction reduced;
        std::vector<unsigned char> bits(90 * 30, 250);
        ASSERT_TRUE(reduced.reduce(cells, x, y));
        ASSERT_TRUE(paintMap(reduced, x, y, scale, colors, bits.data(), 90));
        ASSERT_EQ(bits, expected) << round;
    }
}

TEST(MapPicture, PaintsTheSamePixelsOnEveryPathAndScale)
{
    const AMatrix<float> map = randomMap(70, 90, 3);
    const AFloatMatrixAccess cells(map);
    PixelCells x, y;
    x.setLinear(89.5, -0.31, 300, 90);
    y.setLinear(-0.5, 1.7, 45, 70);
    for (const MapScaleKind kind : {MapScaleKind::linear, MapScaleKind::squareRoot,
                                    MapScaleKind::logarithmic, MapScaleKind::equalized}) {
        MapScale scale(kind, kind == MapScaleKind::logarithmic ? 0.25 : -3, 6);
        ASSERT_TRUE(kind != MapScaleKind::equalized || scale.equalize(cells));
        std::vector<unsigned char> first;
        for (const SimdPath path : simdPaths()) {
            MapReduction reduced;
            ASSERT_TRUE(reduced.reduce(cells, x, y, SharedPixel::greatest, path));
            std::vector<unsigned char> bits(300 * 45, 250);
            ASSERT_TRUE(paintMap(reduced, x, y, scale, {}, bits.data(), 300, path));
            if (first.empty())
                first = bits;
            EXPECT_EQ(bits, first);
        }
        for (std::size_t i = 0; i < first.size(); ++i) {
            const int column = x.groupOf(static_cast<int>(i % 300));
            const int row = y.groupOf(static_cast<int>(i / 300));
            if (column < 0 || row < 0) {
                ASSERT_EQ(first[i], 250);
                continue;
            }
            const float value = greatestOf(map, y.span(row), x.span(column));
            const double place = scale.position(static_cast<double>(value)) * 226;
            ASSERT_NEAR(first[i], std::isfinite(value) ? std::min(225.0, std::floor(place)) : 229,
                        std::fabs(place - std::round(place)) < 1e-3 ? 1 : 0);
        }
    }
}

TEST(MapScale, PlacesValuesAndFindsThemAgain)
{
    const AMatrix<float> map = randomMap(40, 40, 5);
    struct Case {
        MapScaleKind kind;
        double low, high, value, position;
    };
    const Case cases[] = {
        {MapScaleKind::linear, 0, 4, 1, 0.25},
        {MapScaleKind::linear, 4, 0, 1, 0.25},  // put in order
        {MapScaleKind::linear, 5, 5, 5, 0.5},   // widened to 2.5 .. 7.5
        {MapScaleKind::squareRoot, 0, 4, 1, 0.5},
        {MapScaleKind::logarithmic, 0.01, 1, 0.1, 0.5},
        {MapScaleKind::logarithmic, -1, 1, 0.001, 0},    // starts at a thousandth of the high end
        {MapScaleKind::logarithmic, -2, -1, -1.5, 0.5},  // no logarithm: linear
        {MapScaleKind::linear, -1.7e308, 1.7e308, 0, 0.5},
        {MapScaleKind::equalized, -1e308, 1e308, 0, 0.5},
        {MapScaleKind::logarithmic, 1e-300, 1e300, 1, 0.5},
    };
    for (const Case& c : cases) {
        const MapScale scale(c.kind, c.low, c.high);
        EXPECT_NEAR(scale.position(c.value), c.position, 1e-12) << c.low << " " << c.high;
        EXPECT_NEAR(scale.value(c.position), c.value, 1e-12);
    }
    MapScale equal(MapScaleKind::equalized, -4, 4);
    ASSERT_TRUE(equal.equalize(AFloatMatrixAccess(map)));
    EXPECT_NEAR(equal.position(0), 0.5, 0.06);
    for (double place = 0; place <= 1; place += 1.0 / 64)
        EXPECT_LE(equal.value(place), equal.value(place + 1.0 / 64));
}

TEST(MapScale, GivesEveryColourItsShareOfTheCells)
{
    constexpr int side = 400;
    constexpr int colors = 226;
    std::mt19937 random(3);
    std::normal_distribution<float> normal(0, 1);
    float next = 1000;
    const auto noise = [&](int) { return normal(random); };
    const struct {
        const char* name;
        std::function<float(int)> value;
        double slack;  // of a share
        int leastColors;
    } cases[] = {
        {"neighbours", [&](int) { return next = std::nextafter(next, 2000.0f); }, 0.01, colors},
        {"noise", noise, 0.01, colors},
        {"far clusters",
         [&](int i) { return i % 2 ? 1e-3f * normal(random) : 5000 + 90 * normal(random); }, 0.01,
         colors},
        {"an outlier", [&](int i) { return i ? 1e-4f * normal(random) : 1e30f; }, 0.01, colors},
        {"blanks", [&](int i) { return i % 3   ? normal(random)
                                       : i % 2 ? NAN
                                               : -INFINITY; }, 0.01,
         colors},
        {"offset", [&](int) { return 1000 + 0.01f * normal(random); }, 1, 220},
        {"three values", [](int i) { return static_cast<float>(i % 3); }, 226, 3},
        {"zeros", [](int i) { return i % 2 ? 0.0f : -0.0f; }, 226, 1},
        {"constant", [](int) { return 7.0f; }, 226, 1},
    };
    for (const auto& c : cases) {
        AMatrix<float> map(side, side);
        for (int i = 0; i < side * side; ++i)
            map.data()[i] = c.value(i);
        std::shuffle(map.data(), map.data() + side * side, random);
        const AFloatMatrixAccess cells(map);
        const MapRange range = mapRange(cells);
        MapScale scale(MapScaleKind::equalized, range.least, range.greatest);
        ASSERT_TRUE(scale.equalize(cells));
        PixelCells all;
        all.setLinear(-0.5, 1.0, side, side);
        std::vector<unsigned char> picture(side * side);
        MapReduction reduced;
        ASSERT_TRUE(reduced.reduce(cells, all, all));
        paintMap(reduced, all, all, scale, {}, picture.data(), side);
        std::vector<int> counts(256);
        for (const unsigned char index : picture)
            ++counts[index];
        const double share = (side * side - counts[MapColors().blank]) / double(colors);
        for (int i = 0; i < colors; ++i)
            EXPECT_NEAR(counts[i], share, share * c.slack + 1) << c.name << " " << i;
        EXPECT_GE(colors - std::count(counts.begin(), counts.begin() + colors, 0), c.leastColors)
            << c.name;
    }
    MapScale scale(MapScaleKind::equalized, 0, 1);
    for (const float outside : {NAN, INFINITY, 2.0f})
        EXPECT_FALSE(scale.equalize(AStridedAccess<float>(&outside, 1, 1, 1)));
}

TEST(MapStatistics, FindTheExactRangeAndPeak)
{
    for (int seed = 0; seed < 40; ++seed) {
        const AMatrix<float> map = randomMap(1 + seed % 7, 37, seed);
        const std::vector<double> finite = sortedCells(map);
        for (const SimdPath path : simdPaths()) {
            const MapRange range = mapRange(AFloatMatrixAccess(map), path);
            EXPECT_EQ(range.least, finite.front());
            EXPECT_EQ(range.greatest, finite.back());
            EXPECT_EQ(map(range.peakRow, range.peakColumn), static_cast<float>(finite.back()));
        }
    }
}

TEST(MapStatistics, FindTheExactNoiseWhateverASampleTells)
{
    constexpr float most = std::numeric_limits<float>::max();
    const struct {
        const char* name;
        float (*cell)(int);
    } cases[] = {
        {"spread", [](int i) { return 1e-5f * static_cast<float>(i * 7919LL % 100003) - 0.3f; }},
        {"alike", [](int) { return 1000.0f; }},
        {"two values", [](int i) { return i % 2 ? -1.0f : 1.0f; }},
        {"whole numbers", [](int i) { return static_cast<float>(i * 7919LL % 41) - 20; }},
        {"blanks", [](int i) { return i % 3 ? NAN : static_cast<float>(i * 7919LL % 1000); }},
        {"nearly all blank", [](int i) { return i % 50 ? NAN : static_cast<float>(i); }},
        {"far apart", [](int i) { return i % 3 == 0   ? most
                                         : i % 3 == 1 ? -most
                                                      : INFINITY; }},
        {"about zero", [](int i) { return 1e-42f * static_cast<float>(i * 7919LL % 9 - 4); }}};
    struct MisleadingAccess : AFloatMatrixAccess {  // where single cells are asked for
        using AFloatMatrixAccess::AFloatMatrixAccess;
        void copyRow(int, int, int count, float* to) const override { std::fill_n(to, count, 7); }
    };
    for (const auto& c : cases)
        for (const int rows : {1, 301}) {
            AMatrix<float> map(rows, 300);
            for (int i = 0; i < map.cells(); ++i)
                map.data()[i] = c.cell(i);
            const AFloatMatrixAccess honest(map);
            const MisleadingAccess misleading(map);
            const MapNoise wanted = noiseBySorting(map);
            const AMatrixAccess* const accesses[] = {&honest, &misleading};
            for (const AMatrixAccess* cells : accesses)
                for (const SimdPath path : simdPaths()) {
                    const MapNoise noise = mapNoise(*cells, path);
                    EXPECT_EQ(noise.finiteCells, wanted.finiteCells) << c.name;
                    EXPECT_EQ(noise.median, wanted.median) << c.name;
                    EXPECT_EQ(noise.sigma, wanted.sigma) << c.name;
                }
        }
}

TEST(MapStatistics, HaveNothingToSayAboutABlankOrEmptyMap)
{
    AMatrix<float> blank(3, 4);
    blank.fill(std::numeric_limits<float>::quiet_NaN());
    for (const AMatrix<float>& map : {blank, AMatrix<float>()}) {
        const AFloatMatrixAccess cells(map);
        EXPECT_TRUE(mapRange(cells).isEmpty());
        EXPECT_EQ(mapNoise(cells).finiteCells, 0);
        EXPECT_EQ(mapNoise(cells).sigma, 0);
    }
}

TEST(MatrixAccess, ReadsStridedCellsAndTheirBlanks)
{
    const short cells[] = {1, 2, 3, 4, -32768, 6};
    const AStridedAccess<short> transposed(cells, 3, 2, 1, 3, -32768);
    EXPECT_EQ(transposed.cell(2, 0), 3);
    EXPECT_EQ(transposed.cell(0, 1), 4);
    EXPECT_TRUE(std::isnan(transposed.cell(1, 1)));
    EXPECT_TRUE(std::isnan(transposed.cell(3, 0)));
    const double wide[] = {1e300, -1e300};
    const AStridedAccess<double> doubles(wide, 1, 2, 2);
    EXPECT_EQ(doubles.cell(0, 0), std::numeric_limits<float>::max());
    EXPECT_EQ(doubles.cell(0, 1), -std::numeric_limits<float>::max());
}

}  // namespace pavane
