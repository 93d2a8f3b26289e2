#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/trackers/masks/cell_regions.h"
#include "pavane/trackers/masks/mask_outlines.h"
#include "pavane/trackers/masks/scan_fill.h"
#include "pavane/trackers/masks/thin_outline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace pavane;

namespace
{

ABitMatrix fromText(const std::vector<std::string>& rows)
{
    ABitMatrix mask(static_cast<int>(rows.size()), static_cast<int>(rows[0].size()));
    for (int r = 0; r < mask.rows(); ++r)
        for (int c = 0; c < mask.columns(); ++c)
            mask.set(r, c, rows[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)] == '#');
    return mask;
}

/// Blobs, lines, rings and dots; `kind` says how ragged.
ABitMatrix randomMask(int rows, int columns, int kind, std::mt19937& random)
{
    ABitMatrix mask(rows, columns);
    const auto below = [&](int n) {
        return static_cast<int>(random() % static_cast<unsigned>(std::max(n, 1)));
    };
    for (int i = kind == 0 ? 0 : 12; i > 0; --i) {
        const int x = below(columns), y = below(rows), a = 1 + below(columns / 4);
        const int isRing = below(3) == 0, value = below(3) != 0;
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < columns; ++c) {
                const double d = std::hypot(r - y, (c - x) * 0.7);
                if (d <= a && (!isRing || d > a - 2))
                    mask.set(r, c, value);
            }
    }
    for (int i = kind == 1 ? 0 : rows * columns / (kind == 0 ? 2 : 40); i > 0; --i)
        mask.set(below(rows), below(columns), below(2));
    return mask;
}

void expectSame(const ABitMatrix& mask, const OutlineRules& rules)
{
    std::vector<MaskOutline> outlines;
    ASSERT_TRUE(outlinesOfMask(mask, rules, outlines));
    ABitMatrix back(mask.rows(), mask.columns());
    ASSERT_TRUE(fillOutlines(outlines, back));
    EXPECT_TRUE(back == mask);
    for (const MaskOutline& outline : outlines) {
        ASSERT_FALSE(outline.cells.empty());
        EXPECT_LE(outline.cells.size(), static_cast<std::size_t>(rules.mostVertices));
        EXPECT_TRUE(rules.withHoles || !outline.isHole);
        int overflow = 0;
        ABitMatrix own(mask.rows(), mask.columns());
        ASSERT_TRUE(fillPolygon(own, outline.cells.data(), static_cast<int>(outline.cells.size()),
                                rules.mostCrossings, overflow));
        EXPECT_FALSE(overflow);
    }
}

}  // namespace

TEST(MaskOutlines, OfRandomMasksFilledAreTheMaskAgain)
{
    std::mt19937 random(11);
    for (int i = 0; i < 240; ++i) {
        OutlineRules rules;
        rules.withHoles = i % 3 != 0;
        rules.mostVertices = i % 5 == 0 ? 12 : 1000;
        rules.mostCrossings = i % 7 == 0 ? 2 : 30;
        const int rows = 1 + static_cast<int>(random() % 60);
        const int columns = 1 + static_cast<int>(random() % 140);
        SCOPED_TRACE(i);
        expectSame(randomMask(rows, columns, i % 4, random), rules);
    }
    ABitMatrix all(300, 200);
    expectSame(all, {});
    all.setAll(1);
    expectSame(all, {});
    ABitMatrix comb(400, 500);  // one piece of too many corners and crossings
    for (int r = 0; r < 400; ++r)
        for (int c = 0; c < 500; ++c)
            comb.set(r, c, r == 0 || c % 2 == 0);
    expectSame(comb, {});
}

TEST(MaskOutlines, AreFewAndWhatTheyShouldBe)
{
    struct Case {
        std::vector<std::string> rows;
        std::size_t outlines, holes;
    };
    const Case cases[] = {{{"#"}, 1, 0},
                          {{"....", ".##.", "...."}, 1, 0},
                          {{"#.", ".#"}, 2, 0},  // corners do not join
                          {{"#####", "#...#", "#...#", "#####"}, 1, 1},
                          {{"#####", "#...#", "#.#.#", "#...#", "#####"}, 2, 2},
                          {{"###", "#.#", ".##"}, 1, 0}};  // open at a corner: no hole
    for (const Case& c : cases) {
        std::vector<MaskOutline> outlines;
        ASSERT_TRUE(outlinesOfMask(fromText(c.rows), {}, outlines));
        std::size_t holes = 0;
        for (const MaskOutline& outline : outlines)
            holes += outline.isHole != 0;
        EXPECT_EQ(outlines.size() - holes, c.outlines) << c.rows[0];
        EXPECT_GE(holes, c.holes > 0 ? 1U : 0U) << c.rows[0];
        EXPECT_LE(holes, c.holes) << c.rows[0];
    }
}

TEST(MaskOutlines, OfLongContoursAreSmoothedWhereTheyNeedNotBeExact)
{
    ABitMatrix mask(900, 900);
    for (int r = 0; r < 900; ++r)
        for (int c = 0; c < 900; ++c) {
            const double turn = std::atan2(r - 450, c - 450);
            mask.set(r, c, std::hypot(r - 450, c - 450) < 350 + 20 * std::sin(60 * turn));
        }
    OutlineRules rules;
    rules.isExact = 0;
    std::vector<MaskOutline> outlines;
    ASSERT_TRUE(outlinesOfMask(mask, rules, outlines));
    ASSERT_EQ(outlines.size(), 1U);
    EXPECT_LE(outlines[0].cells.size(), 1000U);
    EXPECT_GT(outlines[0].cells.size(), 100U);
    ABitMatrix back(900, 900);
    ASSERT_TRUE(fillOutlines(outlines, back));
    std::int64_t others = 0;
    for (int r = 0; r < 900; ++r)
        for (int c = 0; c < 900; ++c)
            others += back.get(r, c) != mask.get(r, c);
    EXPECT_LT(others, mask.count() / 50);
    EXPECT_EQ(thinOutline({{0, 0}, {9, 0}, {9, 9}, {0, 9}}, 1e9).size(), 3U);
}

TEST(CellRegions, GrowByADiscAndShrinkToWhatWasWhole)
{
    std::mt19937 random(5);
    for (int i = 0; i < 30; ++i) {
        const ABitMatrix mask = randomMask(40, 130, 1 + i % 3, random);
        const int n = 1 + i % 4;
        ABitMatrix grown, shrunk;
        ASSERT_TRUE(growMask(mask, n, grown));
        ASSERT_TRUE(shrinkMask(mask, n, shrunk));
        for (int r = 0; r < 40; ++r)
            for (int c = 0; c < 130; ++c) {
                int any = 0, all = 1;
                for (int y = r - n; y <= r + n; ++y)
                    for (int x = c - n; x <= c + n; ++x) {
                        const int near = (y - r) * (y - r) + (x - c) * (x - c) <= n * n + n;
                        const int inMap = y >= 0 && x >= 0 && y < 40 && x < 130;
                        any |= near && mask.get(y, x);
                        all &= !near || !inMap || mask.get(y, x);
                    }
                ASSERT_EQ(grown.get(r, c), any);
                ASSERT_EQ(shrunk.get(r, c), all);
            }
    }
    ABitMatrix none;
    EXPECT_FALSE(growMask(none, 0, none));
    EXPECT_FALSE(growMask(none, 1001, none));
}

TEST(CellRegions, InsideAContourHangTogetherByTheirSides)
{
    const float blank = std::numeric_limits<float>::quiet_NaN();
    const std::vector<std::vector<float>> rows = {{0, 0, 0, 0, 0, 9},
                                                  {0, 5, 5, 5, 0, 9},
                                                  {0, 5, 1, 5, 0, 0},
                                                  {0, 5, 5, blank, 7, 0},
                                                  {0, 0, 0, 0, 0, -4}};
    std::vector<float> cells;
    for (const std::vector<float>& row : rows)
        cells.insert(cells.end(), row.begin(), row.end());
    const AStridedAccess<float> values(cells.data(), 5, 6, 6);
    struct Case {
        double level;
        int row, column;
        ContourPlace place;
        int count;
    };
    const Case cases[] = {{4, 1, 1, ContourPlace::closed, 7},  {4, 3, 4, ContourPlace::closed, 1},
                          {4, 2, 2, ContourPlace::outside, 0}, {4, 0, 5, ContourPlace::atEdge, 2},
                          {-3, 4, 5, ContourPlace::atEdge, 1}, {-3, 0, 0, ContourPlace::outside, 0},
                          {4, 3, 3, ContourPlace::outside, 0}, {4, -1, 0, ContourPlace::outside, 0},
                          {4, 9, 9, ContourPlace::outside, 0}, {1, 2, 2, ContourPlace::closed, 8}};
    for (const Case& c : cases) {
        ABitMatrix mask;
        EXPECT_EQ(contourMask(values, c.level, c.row, c.column, mask), c.place) << c.row;
        EXPECT_EQ(mask.count(), c.count) << c.row << ' ' << c.column;
    }
}
