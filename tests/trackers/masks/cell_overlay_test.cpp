#include "pavane/trackers/masks/CellOverlay.h"

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/trackers/masks/AAreaBitFill.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace pavane;

namespace
{

struct Polygon : std::vector<CPoint> {
    int isNeverClean = 0;
};

ABitMatrix fromNothing(const std::vector<Polygon>& areas, int rows, int columns)
{
    ABitMatrix mask(rows, columns);
    ABitMatrix never(rows, columns);
    int all = 1;
    for (const Polygon& p : areas) {
        AAreaBitFill().FillMatrix(p.isNeverClean ? never : mask, p.data(),
                                  static_cast<int>(p.size()));
        all &= p.isNeverClean;
    }
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c)
            mask.set(r, c, (all || mask.get(r, c)) && !never.get(r, c));
    return mask;
}

/// Non-zero when two masks are the same outside a block.
int sameOutside(const ABitMatrix& a, ABitMatrix b, const AMatrixRect& block)
{
    for (int r = block.firstRow; r <= block.lastRow; ++r)
        for (int c = block.firstColumn; c <= block.lastColumn; ++c)
            b.set(r, c, a.get(r, c));
    return a == b;
}

/// Values of all sizes with blanks, in memory one behind another or every other one.
struct Map {
    std::vector<float> cells;
    AStridedAccess<float> access{nullptr, 0, 0, 0};

    Map(int rows, int columns, int stride, std::mt19937& random)
    {
        std::normal_distribution<float> noise(0.1f, 1);
        for (int i = 0; i < rows * columns * stride; ++i)
            cells.push_back(random() % 50 == 0 ? std::numeric_limits<float>::infinity()
                                               : (random() % 10 ? 1.0f : 1e6f) * noise(random));
        access = AStridedAccess<float>(cells.data(), rows, columns, columns * stride, stride);
    }
};

void expectSums(const ABitMatrix& mask, const AMatrixAccess& map, const CellSum& sum)
{
    long double exact = 0;
    long double magnitudes = 0;
    for (int r = 0; r < mask.rows(); ++r)
        for (int c = 0; c < mask.columns(); ++c)
            if (const float v = map.cell(r, c); mask.get(r, c) && std::isfinite(v)) {
                exact += v;
                magnitudes += std::abs(v);
            }
    EXPECT_EQ(sum.cells, mask.count());
    EXPECT_LE(std::abs(sum.sum - exact), 1e-12L * magnitudes);
}

class RandomAreas
{
public:
    explicit RandomAreas(int rows, int columns) : rows_(rows), columns_(columns) {}
    Polygon next()
    {
        Polygon p;
        const int reach = std::max(rows_, columns_) / (1 + below(4)) + 2;
        const CPoint middle(below(2 * columns_) - columns_ / 2, below(2 * rows_) - rows_ / 2);
        for (int n = below(9); n > 0; --n)  // sometimes none
            p.push_back(middle + CPoint(below(2 * reach) - reach, below(2 * reach) - reach));
        p.isNeverClean = withNever && below(3) == 0;
        return p;
    }
    Polygon moved(Polygon p)
    {
        const CPoint by(below(9) - 4, below(9) - 4);
        for (CPoint& point : p)
            point = point + by;
        return p;
    }
    int withNever = 0;
    int below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }

private:
    int rows_, columns_;
    std::mt19937 random_{11};
};

/// One random edit of the overlay and of the list of what it should hold.
void edit(CellOverlay& overlay, std::vector<Polygon>& areas, RandomAreas& random)
{
    const int n = static_cast<int>(areas.size());
    const auto count = [](const Polygon& p) { return static_cast<int>(p.size()); };
    const int what = n ? random.below(8) : 0;
    const int i = random.below(n + (what < 2));
    if (what < 2) {
        const Polygon p = random.next();
        ASSERT_TRUE(overlay.insert(i, p.data(), count(p), p.isNeverClean));
        areas.insert(areas.begin() + i, p);
    } else if (what == 2) {
        ASSERT_TRUE(overlay.remove(i));
        areas.erase(areas.begin() + i);
    } else if (what == 3 && random.below(8) == 0) {
        ASSERT_TRUE(overlay.clear());
        areas.clear();
    } else {
        Polygon& p = areas[static_cast<std::size_t>(i)];
        for (int steps = what == 4 ? 5 : 1; steps > 0; --steps) {  // several are a drag
            p = what > 5 ? random.next() : random.moved(p);
            ASSERT_TRUE(overlay.replace(i, p.data(), count(p), p.isNeverClean));
        }
    }
}

TEST(CellOverlay, EqualsAMaskFilledFromNothingAfterEveryEdit)
{
    const struct {
        int rows, columns, stride;
    } maps[] = {{90, 200, 1}, {65, 64, 2}, {1, 300, 1}, {300, 1, 1}, {40, 129, 2}};
    std::mt19937 values(2);
    for (const auto& size : maps) {
        SCOPED_TRACE(size.columns);
        const Map map(size.rows, size.columns, size.stride, values);
        const AMatrixAccess& access = map.access;
        RandomAreas random(size.rows, size.columns);
        CellOverlay overlay;
        ASSERT_TRUE(overlay.setMap(access));
        std::vector<Polygon> areas;
        ABitMatrix before = overlay.mask();
        (void)overlay.takeChanged();
        for (int round = 0; round < 600; ++round) {
            random.withNever = round >= 300;
            const bool several = random.below(4) == 0;
            if (several)
                overlay.begin();
            for (int edits = several ? 6 : 1; edits > 0; --edits)
                edit(overlay, areas, random);
            ASSERT_TRUE(!several || overlay.end());
            const ABitMatrix fresh = fromNothing(areas, size.rows, size.columns);
            ASSERT_TRUE(overlay.mask() == fresh) << round;
            expectSums(fresh, access, overlay.total());
            ASSERT_TRUE(sameOutside(fresh, before, overlay.takeChanged()));
            before = fresh;
        }
        // the way here leaves nothing behind: not a bit of the sum
        CellOverlay other;
        ASSERT_TRUE(other.setMap(access));
        other.begin();
        for (const Polygon& p : areas)
            ASSERT_TRUE(other.append(p.data(), static_cast<int>(p.size()), p.isNeverClean));
        ASSERT_TRUE(other.end());
        EXPECT_EQ(other.total().sum, overlay.total().sum);
        for (std::size_t i = 0; i < areas.size(); ++i) {
            Polygon own = areas[i];
            own.isNeverClean = 0;
            expectSums(fromNothing({own}, size.rows, size.columns), access,
                       overlay.ofArea(static_cast<int>(i)));
        }
    }
}

TEST(CellOverlay, TakesNewValuesAndMapsWithoutCells)
{
    std::vector<float> cells(130, 1);
    const AStridedAccess<float> map(cells.data(), 1, 130, 130);
    CellOverlay overlay;
    ASSERT_TRUE(overlay.setMap(map));
    EXPECT_EQ(overlay.total().sum, 130);
    cells[129] = 3;
    overlay.valuesChanged();
    EXPECT_EQ(overlay.total().sum, 132);
    const CPoint corner[] = {{1, 0}, {2, 0}, {2, 5}};
    ASSERT_TRUE(overlay.append(nullptr, 0) && overlay.append(corner, 3));
    (void)overlay.takeChanged();
    ASSERT_TRUE(overlay.remove(1));
    EXPECT_EQ(overlay.takeChanged().firstColumn, 1);
    EXPECT_EQ(overlay.takeChanged().lastRow, -1);
    const CPoint square[] = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};
    for (const int rows : {0, 6}) {
        ASSERT_TRUE(overlay.setSize(rows, 7));
        ASSERT_TRUE(overlay.append(square, 4));
        for (int moves = 0; moves < 3; ++moves)
            ASSERT_TRUE(overlay.replace(0, square, 4));
        EXPECT_EQ(overlay.total().cells, rows ? 25 : 0);
        EXPECT_EQ(overlay.ofArea(0).sum, 0);
    }
}

}  // namespace
