#include "pavane/axes/maps/cells/contour_lines.h"

#include "test_maps.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

namespace pavane
{

namespace
{

/// A piece of contour in one square, from a plain implementation that knows no neighbours; ends in
/// units of 1e-6 cell, in order.
using Piece = std::array<long long, 4>;

long long micro(double v) { return std::llround(v * 1e6); }

void addPiece(std::map<Piece, int>& pieces, CPointF a, CPointF b)
{
    std::array<long long, 2> from{micro(a.x), micro(a.y)}, to{micro(b.x), micro(b.y)};
    if (to < from)
        std::swap(from, to);
    if (from != to)
        ++pieces[{from[0], from[1], to[0], to[1]}];
}

std::map<Piece, int> plainPieces(const AMatrix<float>& map, double level)
{
    std::map<Piece, int> pieces;
    const int dx[] = {0, 1, 1, 0, 0}, dy[] = {0, 0, 1, 1, 0};
    for (int r = 0; r + 1 < map.rows(); ++r)
        for (int c = 0; c + 1 < map.columns(); ++c) {
            double v[5], sum = 0;
            for (int i = 0; i < 5; ++i)
                v[i] = static_cast<double>(map(r + dy[i], c + dx[i]));
            for (int i = 0; i < 4; ++i)
                sum += v[i];
            if (!std::isfinite(sum))
                continue;
            std::vector<CPointF> cuts;
            for (int i = 0; i < 4; ++i) {
                if ((v[i] >= level) == (v[i + 1] >= level))
                    continue;
                const double t = (level - v[i]) / (v[i + 1] - v[i]);
                cuts.push_back(
                    {c + dx[i] + t * (dx[i + 1] - dx[i]), r + dy[i] + t * (dy[i + 1] - dy[i])});
            }
            // of four cuts, those around a corner belong together: corner 1 and 3 when these differ
            // from the centre, else corner 0 and 2
            const int shift = cuts.size() == 4 && (v[1] >= level) == (sum / 4 >= level) ? 3 : 0;
            for (std::size_t i = 0; i + 1 < cuts.size(); i += 2)
                addPiece(pieces, cuts[(i + static_cast<std::size_t>(shift)) % cuts.size()],
                         cuts[(i + 1 + static_cast<std::size_t>(shift)) % cuts.size()]);
        }
    return pieces;
}

std::map<Piece, int> tracedPieces(const ContourLines& lines, int level)
{
    std::map<Piece, int> pieces;
    for (const ContourLine& line : lines.lines()) {
        const CPointF* p = lines.points(line);
        for (std::int64_t i = 0; line.level == level && i + 1 < line.count + line.closed; ++i)
            addPiece(pieces, p[i], p[(i + 1) % line.count]);
    }
    return pieces;
}

/// Non-zero when a square beside the point, which lies between two centres, is missing.
int isBorder(const AMatrix<float>& map, CPointF p)
{
    const int alongRow = p.y == std::floor(p.y);
    for (const int side : {-1, 0}) {
        const int r = static_cast<int>(std::floor(p.y)) + (alongRow ? side : 0);
        const int c = static_cast<int>(std::floor(p.x)) + (alongRow ? 0 : side);
        if (r < 0 || c < 0 || r + 1 >= map.rows() || c + 1 >= map.columns())
            return 1;
        if (!std::isfinite(map(r, c) + map(r, c + 1) + map(r + 1, c) + map(r + 1, c + 1)))
            return 1;
    }
    return 0;
}

}  // namespace

TEST(ContourLines, HaveEveryPieceOnceAndEndOnlyAtBordersAndBlanks)
{
    std::mt19937 random(11);
    for (int round = 0; round < 60; ++round) {
        // values are multiples of 1/4, so that many cells equal a level
        const AMatrix<float> map =
            randomMap(2 + pick(random, 30), 2 + pick(random, 60), pick(random, 1 << 20), round % 2);
        const std::vector<double> levels{1.1, -0.5, 0.25, 0, 2.3, -1.7, 1e300};
        std::vector<ContourLine> first;
        for (const SimdPath path : simdPaths()) {
            ContourLines lines;
            ASSERT_TRUE(lines.trace(AFloatMatrixAccess(map), levels, path));
            for (std::size_t k = 0; k < levels.size(); ++k)
                EXPECT_TRUE(tracedPieces(lines, static_cast<int>(k)) == plainPieces(map, levels[k]))
                    << "round " << round << " level " << levels[k];
            for (const ContourLine& line : lines.lines()) {
                const CPointF* p = lines.points(line);
                const double level = levels[static_cast<std::size_t>(line.level)];
                // a crossing on a cell's centre belongs to an edge that the point alone does not
                // tell
                if (!line.closed && level * 4 != std::floor(level * 4)) {
                    EXPECT_TRUE(isBorder(map, p[0]) && isBorder(map, p[line.count - 1]));
                }
            }
            EXPECT_EQ(lines.pointCount() > 0, !lines.lines().empty());
        }
    }
}

TEST(ContourLines, KeepTheHigherSideOnTheLeft)
{
    AMatrix<float> peak(5, 5);
    peak.fill(0);
    peak(2, 2) = 1;
    for (const double sign : {1.0, -1.0}) {
        AMatrix<float> map = peak;
        map(2, 2) = static_cast<float>(sign);
        ContourLines lines;
        ASSERT_TRUE(lines.trace(AFloatMatrixAccess(map), {0.5 * sign}));
        ASSERT_EQ(lines.lines().size(), 1u);
        const ContourLine& ring = lines.lines()[0];
        EXPECT_TRUE(ring.closed);
        ASSERT_EQ(ring.count, 4);
        const CPointF* p = lines.points(ring);
        double area = 0;
        for (int i = 0; i < 4; ++i)
            area += (p[i].x * p[(i + 1) % 4].y - p[(i + 1) % 4].x * p[i].y) / 2;
        EXPECT_DOUBLE_EQ(area, 0.5 * sign);
    }
}

TEST(ContourLines, StayWithinTheirMemoryAndTellWhatTheyLeaveOut)
{
    const AMatrix<float> map = randomMap(150, 150, 4);
    const AFloatMatrixAccess cells(map);
    constexpr int count = 80;
    std::vector<double> levels;
    for (int i = 0; i < count; ++i)
        levels.push_back(0.1 * ((i * 37) % count) - 3.98);  // any order
    const auto pointsOf = [](const ContourLines& lines) {
        std::vector<std::int64_t> points(count);
        for (const ContourLine& line : lines.lines())
            points[static_cast<std::size_t>(line.level)] += line.count;
        return points;
    };
    ContourLines whole;
    ASSERT_TRUE(whole.trace(cells, levels));
    const std::vector<std::int64_t> all = pointsOf(whole);
    const struct {
        std::int64_t memory;
        int fewest, most;  // levels left out
    } cases[] = {{512 << 20, 0, 0}, {24 << 20, 1, 70}, {4 << 20, 20, 79}, {1 << 10, 80, 80}};
    for (const auto& c : cases) {
        SetContourMemory(c.memory);
        ContourLines lines;
        ASSERT_TRUE(lines.trace(cells, levels));
        const std::vector<std::int64_t> found = pointsOf(lines);
        std::int64_t leastLeftOut = std::int64_t{1} << 60, mostDrawn = 0;
        int leftOut = 0;
        for (std::size_t k = 0; k < count; ++k) {
            const int isOut = lines.isLeftOut(static_cast<int>(k));
            leftOut += isOut;
            EXPECT_EQ(found[k], isOut ? 0 : all[k]) << c.memory << " " << levels[k];
            (isOut ? leastLeftOut = std::min(leastLeftOut, all[k])
                   : mostDrawn = std::max(mostDrawn, all[k]));
        }
        EXPECT_TRUE(leftOut >= c.fewest && leftOut <= c.most) << c.memory << " " << leftOut;
        EXPECT_LE(mostDrawn, leastLeftOut + leastLeftOut / 10);  // the longest go first
        EXPECT_LE(lines.lines().capacity() * sizeof(ContourLine) +
                      sizeof(CPointF) * static_cast<std::size_t>(lines.pointCount()),
                  static_cast<std::size_t>(c.memory));
        EXPECT_TRUE(lines.isLeftOut(0) || tracedPieces(lines, 0) == tracedPieces(whole, 0));
    }
    SetContourMemory(0);
    EXPECT_EQ(GetContourMemory(), 256 << 20);
}

TEST(ContourLines, AreGivenUpInTheirMiddle)
{
    AMatrix<float> map(40, 40);
    for (int i = 0; i < 1600; ++i)
        map.data()[i] = static_cast<float>(i % 7);
    ContourLines lines;
    double last = -1;
    const auto goesOn = [&](double done) { return last = done, done < 0.5; };
    EXPECT_FALSE(lines.trace(AFloatMatrixAccess(map), {2.5, 4.5}, bestSimdPath(), goesOn));
    EXPECT_EQ(last, 0.5);
    EXPECT_TRUE(lines.lines().empty());
}

TEST(ContourLines, AreEmptyWhereNothingCrosses)
{
    AMatrix<float> flat(4, 4), row(1, 6), blank(4, 4);
    flat.fill(1);
    row.fill(1);
    blank.fill(std::numeric_limits<float>::quiet_NaN());
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const AMatrix<float>* map : {&flat, &row, &blank}) {
        ContourLines lines;
        EXPECT_TRUE(lines.trace(AFloatMatrixAccess(*map), {nan, 1, 0.5, 2}));
        EXPECT_TRUE(lines.lines().empty());
    }
    ContourLines lines;
    EXPECT_FALSE(lines.trace(AFloatMatrixAccess(flat), std::vector<double>(251, 0.5)));
}

}  // namespace pavane
