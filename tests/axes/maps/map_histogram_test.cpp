#include "pavane/axes/maps/cells/AMapHistogram.h"
#include "pavane/axes/maps/cells/KeptPixels.h"
#include "pavane/axes/maps/cells/RangeRule.h"
#include "test_maps.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

/// Made from numbers that a reference can make too: noise, peaks over it and blank cells.
AMatrix<float> madeMap(int rows, int columns, unsigned seed, double scale, double offset, int peaks,
                       int blanks)
{
    AMatrix<float> map(rows, columns);
    std::uint32_t state = seed;
    const std::int64_t n = map.cells();
    for (std::int64_t i = 0; i < n; ++i) {
        double sum = 0;
        for (int k = 0; k < 4; ++k) {
            state = state * 1664525u + 1013904223u;
            sum += static_cast<double>(state >> 8) / 16777216;
        }
        map.data()[i] = static_cast<float>((sum - 2) * scale + offset);
    }
    for (std::int64_t k = 0; k < peaks; ++k)
        map.data()[k * 977 % n] =
            static_cast<float>(scale * 50 * static_cast<double>(1 + k % 7) + offset);
    for (std::int64_t k = 0; k < blanks; ++k)
        map.data()[k * 613 % n] = std::numeric_limits<float>::quiet_NaN();
    return map;
}

}  // namespace

TEST(MapHistogram, AnswersAsASortedCopyDoes)
{
    struct Case {
        const char* what;
        AMatrix<float> map;
        MapPart part;
    };
    ABitMatrix mask(20, 70);
    for (int i = 0; i < 1400; i += 3)
        mask.set(i / 70, i % 70);
    AMatrix<float> equal(3, 5), peak(9, 9), blank(4, 4);
    equal.fill(-2.5f);
    peak.fill(1e-30f);
    peak(4, 4) = 1e30f;
    blank.fill(std::numeric_limits<float>::quiet_NaN());
    const Case cases[] = {{"all", randomMap(60, 70, 1), {}},
                          {"a block", randomMap(60, 70, 2), {{-5, 13}, {7, 999}, nullptr}},
                          {"planes under one mask", randomMap(60, 70, 3), {{}, {}, &mask}},
                          {"nothing of the block", randomMap(6, 7, 4), {{50, 60}, {}, nullptr}},
                          {"equal cells", equal, {}},
                          {"one peak", peak, {}},
                          {"all blank", blank, {}},
                          {"one cell", randomMap(1, 1, 5, 0), {}},
                          {"a row", randomMap(1, 999, 6), {}}};
    for (Case c : cases) {
        SCOPED_TRACE(c.what);
        if (c.part.mask)
            c.part.rows = c.part.columns = {0, 999};
        const AFloatMatrixAccess cells(c.map);
        std::vector<double> sorted;
        for (int row = std::max(0, c.part.rows.first);
             row < std::min(c.map.rows(), c.part.rows.end); ++row)
            for (int k = std::max(0, c.part.columns.first);
                 k < std::min(c.map.columns(), c.part.columns.end); ++k)
                if (std::isfinite(c.map(row, k)) && (!c.part.mask || mask.get(row % 20, k)))
                    sorted.push_back(static_cast<double>(c.map(row, k)));
        std::sort(sorted.begin(), sorted.end());
        AMapHistogram histogram;
        const auto n = static_cast<std::int64_t>(sorted.size());
        ASSERT_EQ(histogram.set(cells, c.part), n > 0);
        ASSERT_EQ(histogram.count(), n);
        EXPECT_EQ(histogram.counts(2, 2, 4).size(), 0u);
        if (n < 1) {
            EXPECT_EQ(histogram.percentile(50), 0);
            EXPECT_EQ(histogram.zscale().min, 0);
            EXPECT_EQ(histogram.noise().finiteCells, 0);
            continue;
        }
        EXPECT_EQ(histogram.least(), sorted.front());
        EXPECT_EQ(histogram.greatest(), sorted.back());
        for (const double p : {0.0, 0.5, 10.0, 50.0, 99.5, 99.9, 100.0, 250.0}) {
            std::int64_t place = 1;  // the first place that has p per cent, in thousandths
            while (place < n && place * 100000 < static_cast<std::int64_t>(p * 1000 + 0.5) * n)
                ++place;
            EXPECT_EQ(histogram.percentile(p), sorted[static_cast<std::size_t>(place - 1)]) << p;
        }
        double mean = 0, squares = 0;
        for (const double v : sorted)
            mean += v / static_cast<double>(n);
        for (const double v : sorted)
            squares += (v - mean) * (v - mean) / static_cast<double>(n);
        EXPECT_NEAR(histogram.mean(), mean, 1e-9 * std::fabs(mean) + 1e-12);
        EXPECT_NEAR(histogram.rms(), std::sqrt(squares), 1e-9 * std::sqrt(squares) + 1e-12);
        AMatrix<float> counted(1, static_cast<int>(n));
        std::copy(sorted.begin(), sorted.end(), counted.data());
        const MapNoise noise = mapNoise(AFloatMatrixAccess(counted));
        EXPECT_EQ(histogram.noise().median, noise.median);
        EXPECT_EQ(histogram.noise().sigma, noise.sigma);
        const std::vector<std::int64_t> counts = histogram.counts(-1, 1, 8);
        for (int i = 0; i < 8; ++i)
            EXPECT_EQ(counts[static_cast<std::size_t>(i)],
                      std::count_if(sorted.begin(), sorted.end(), [i](double v) {
                          return v >= -1 + i * 0.25 && (v < -0.75 + i * 0.25 || (i == 7 && v == 1));
                      }));
        const TMnMx range = histogram.percentileRange(50, 50);
        EXPECT_EQ(range.min, sorted.front());
        EXPECT_EQ(range.max, sorted.back());
        EXPECT_EQ(RangeRule().range(histogram), n > 1 && range.min < range.max ? range : TMnMx());
        // bars hold every cell once, and lie at most 1/128 of a value off
        std::int64_t bars = 0, within = 0;
        for (const std::int64_t bar : histogram.bars(range.min, range.max, 16))
            bars += bar;
        EXPECT_EQ(bars, range.min < range.max ? n : 0);
        for (const std::int64_t bar : histogram.bars(-1, 1, 8))
            within += bar;
        constexpr double off = 1 + 1 / 128.0;
        const auto between = [&](double low, double high) {
            return std::count_if(sorted.begin(), sorted.end(),
                                 [=](double v) { return v >= low && v <= high; });
        };
        EXPECT_GE(within, between(-1 / off, 1 / off));
        EXPECT_LE(within, between(-off, off));
    }
}

TEST(MapHistogram, IsBrokenOffOnAnyWayAndCountsBarsOnce)
{
    struct Read : AFloatMatrixAccess {
        using AFloatMatrixAccess::AFloatMatrixAccess;
        mutable int rowsRead = 0;
        const float* floatRow(int row) const override
        {
            return ++rowsRead, AFloatMatrixAccess::floatRow(row);
        }
    };
    const AMatrix<float> map = randomMap(60, 70, 1);
    const Read cells(map);
    AMapHistogram histogram;
    int left = 1000;
    histogram.setGoing([&](double done) {
        EXPECT_TRUE(done >= 0 && done < 1);
        return left-- > 0;
    });
    ASSERT_TRUE(histogram.set(cells));
    EXPECT_EQ(histogram.bars(-1, 1, 9).size(), 9u);
    const int once = cells.rowsRead;
    EXPECT_EQ(histogram.bars(0, 0.25, 99).size(), 99u);
    EXPECT_EQ(cells.rowsRead, once);
    using Kind = RangeRule::Kind;
    const RangeRule rules[] = {
        {Kind::cells, 0, 0}, RangeRule::middle(90), RangeRule::ofNoise(), {Kind::zscale, 0, 0}};
    for (const RangeRule& rule : rules)
        for (const int rows : {1000, 30, 70, 130}) {  // in set, or on the first or a later way
            left = rows;
            (void)histogram.set(cells);
            const TMnMx range = rule.range(histogram);
            EXPECT_EQ(range.min < range.max, !histogram.isBrokenOff()) << rows;
            EXPECT_EQ(histogram.isBrokenOff(), left < 0) << rows;
        }
}

TEST(MapHistogram, FindsTheRangeThatAstropyFinds)
{
    struct Case {
        const char* what;
        int rows, columns;
        unsigned seed;
        double scale, offset;
        int peaks, blanks;
        double low, high;  // ZScaleInterval of Astropy 5.2.1
    };
    const Case cases[] = {
        {"noise", 100, 120, 1, 1, 0, 0, 0, -1.6517384052276611, 1.6222684383392334},
        {"noise with sources", 200, 150, 2, 0.001, 0, 300, 0, -0.0016382099129259586,
         0.0035986671217135835},
        {"blanks", 97, 131, 3, 2, -5, 50, 4000, -8.4790258407592773, 2.0149556407823006},
        {"few cells", 7, 9, 4, 1, 3, 2, 0, 1.4843976497650146, 7.3336137296073014},
        {"four cells", 2, 2, 5, 1, 0, 0, 0, -0.85262614488601685, 0.13594865798950195},
        {"mostly sources", 60, 60, 6, 1, 0, 2500, 0, -1.4587581157684326, 350},
        {"999 cells", 27, 37, 7, 5, 100, 20, 0, 92.178192138671875, 117.0258091798017},
    };
    for (const Case& c : cases) {
        const AMatrix<float> map =
            madeMap(c.rows, c.columns, c.seed, c.scale, c.offset, c.peaks, c.blanks);
        const AFloatMatrixAccess cells(map);
        AMapHistogram histogram;
        ASSERT_TRUE(histogram.set(cells));
        const TMnMx range = histogram.zscale();
        EXPECT_NEAR(range.min, c.low, 1e-6 * (c.high - c.low)) << c.what;
        EXPECT_NEAR(range.max, c.high, 1e-6 * (c.high - c.low)) << c.what;
    }
}

TEST(MapHistogram, StacksPlanesOfOneSize)
{
    const AMatrix<float> first = randomMap(5, 8, 1), second = randomMap(5, 8, 2), odd(2, 8);
    const AFloatMatrixAccess a(first), b(second), other(odd);
    const AStackedAccess planes({&a, nullptr, &other, &b});
    ASSERT_EQ(planes.rows(), 10);
    float copied[3];
    planes.copyRow(7, 2, 3, copied);
    EXPECT_EQ(std::memcmp(copied, &second(2, 2), sizeof copied), 0);
    EXPECT_EQ(planes.floatRow(4), first.row(4));
    EXPECT_EQ(AStackedAccess({}).columns(), 0);
}

TEST(KeptPixels, PaintsAnotherScaleWithoutTheCells)
{
    AMatrix<float> map = randomMap(40, 50, 7);
    const AFloatMatrixAccess cells(map);
    PixelCells x, y, moved;
    x.setLinear(-3.5, 2.5, 23, 50);
    y.setLinear(39.5, -3, 14, 40);
    moved.setLinear(-2.5, 2.5, 23, 50);
    KeptPixels kept;
    for (const auto& [scale, view] : {std::pair(MapScale(MapScaleKind::linear, -1, 2), &x),
                                      std::pair(MapScale(MapScaleKind::squareRoot, 0, 1), &x),
                                      std::pair(MapScale(MapScaleKind::linear, 0, 3), &moved)}) {
        ASSERT_TRUE(kept.show(*view, y));
        EXPECT_EQ(kept.isSameView(), scale.kind() == MapScaleKind::squareRoot);
        kept.forgetIndices();
        ASSERT_TRUE(kept.paint(cells, SharedPixel::greatest, scale, {}));
        MapReduction reduced;
        ASSERT_TRUE(reduced.reduce(cells, *view, y));
        std::vector<unsigned char> expected(23 * 14, 255), shown(23 * 14, 255);
        ASSERT_TRUE(paintMap(reduced, *view, y, scale, {}, expected.data(), 23));
        kept.copy(shown.data(), 23);
        EXPECT_EQ(shown, expected);
    }
    EXPECT_EQ(kept.reductions(), 2);
    kept.forget();
    ASSERT_TRUE(kept.show(moved, y));
    EXPECT_FALSE(kept.isPainted());
}

}  // namespace pavane
