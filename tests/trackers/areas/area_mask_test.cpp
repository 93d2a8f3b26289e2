#include "pavane/trackers/areas/area_mask.h"
#include "pavane/trackers/masks/mask_bytes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace pavane;

namespace
{

using Kind = AreaShape::Kind;

AreaShape box(Kind kind, APoint<double> centre, double width, double height, double angle = 0)
{
    return {kind, centre, width, height, angle, {}};
}

AreaShape polygon(std::vector<APoint<double>> vertices)
{
    AreaShape shape;
    shape.kind = Kind::polygon;
    shape.vertices = std::move(vertices);
    return shape;
}

ABitMatrix maskOf(const AreaList& areas, int rows, int columns, MaskRule rule)
{
    ABitMatrix mask;
    CString error;
    EXPECT_TRUE(maskOfAreas(areas, rows, columns, rule, mask, error)) << error;
    return mask;
}

/// The rule of centres written down plainly.
int holds(const AreaShape& s, double x, double y)
{
    if (s.kind == Kind::polygon) {
        int crossings = 0;
        for (std::size_t i = 0; i < s.vertices.size(); ++i) {
            const auto a = s.vertices[i];
            const auto b = s.vertices[(i + s.vertices.size() - 1) % s.vertices.size()];
            crossings += (a.y > y) != (b.y > y) && x < (b.x - a.x) * (y - a.y) / (b.y - a.y) + a.x;
        }
        return crossings % 2;
    }
    const double turn = s.kind == Kind::rectangle ? 0 : s.angle;
    const double dx = x - s.centre.x, dy = y - s.centre.y;
    const double u = dx * std::cos(turn) + dy * std::sin(turn);
    const double v = dy * std::cos(turn) - dx * std::sin(turn);
    return s.kind == Kind::ellipse
               ? std::pow(2 * u / s.width, 2) + std::pow(2 * v / s.height, 2) < 1
               : std::abs(u) < s.width / 2 && std::abs(v) < s.height / 2;
}

}  // namespace

TEST(AreaMask, TakesCentresInsideEveryShape)
{
    std::mt19937 random(13);
    std::uniform_real_distribution<double> place(-20, 90), size(0.1, 70), turn(-7, 7);
    constexpr int rows = 61, columns = 67;
    for (int round = 0; round < 200; ++round) {
        AreaShape shape = box(static_cast<Kind>(round % 3), {place(random), place(random)},
                              size(random), size(random), turn(random));
        if (round % 4 == 3) {
            shape = polygon({});
            for (int i = 3 + round % 17; i > 0; --i)  // some on whole and half cells
                shape.vertices.push_back(
                    {round % 8 == 3 ? std::floor(place(random)) : place(random),
                     round % 8 == 3 ? std::floor(2 * place(random)) / 2 : place(random)});
        }
        const ABitMatrix mask = maskOf({shape}, rows, columns, MaskRule::centres);
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < columns; ++c)
                ASSERT_EQ(mask.get(r, c), holds(shape, c, r)) << round << ' ' << r << ' ' << c;
    }
}

TEST(AreaMask, CountsCellsOfShapesWithWholeNumbers)
{
    const struct {
        AreaShape shape;
        int outline, centres;  // -1: not told
    } cases[] = {{box(Kind::rectangle, {10, 10}, 4, 2), 15, 3},
                 {box(Kind::rectangle, {10.5, 10}, 4, 3), 20, 12},
                 {box(Kind::rotatedRectangle, {10, 10}, 4, 2), 15, 3},
                 {box(Kind::ellipse, {10, 10}, 9, 9), -1, 69},
                 {polygon({{2, 2}, {6, 2}, {6, 5}, {2, 5}}), 20, 12},
                 {polygon({{-5, -5}, {40, -5}, {40, 40}, {-5, 40}}), 400, 400},
                 {polygon({{-9e8, -9e8}, {9e8, -9e8}, {9e8, 9e8}, {-9e8, 9e8}}), 400, 400},
                 {polygon({{100, 100}, {200, 100}, {200, 200}}), 0, 0}};
    for (const auto& c : cases) {
        const auto outline = maskOf({c.shape}, 20, 20, MaskRule::outline).count();
        EXPECT_TRUE(c.outline < 0 || outline == c.outline) << outline;
        EXPECT_EQ(maskOf({c.shape}, 20, 20, MaskRule::centres).count(), c.centres);
    }
    AreaShape never = cases[4].shape;
    never.isNeverClean = 1;
    for (const MaskRule rule : {MaskRule::outline, MaskRule::centres}) {
        EXPECT_EQ(maskOf({}, 20, 20, rule).count(), 400);
        const auto own = maskOf({cases[4].shape}, 20, 20, rule).count();
        EXPECT_EQ(maskOf({never}, 20, 20, rule).count(), 400 - own);
        EXPECT_EQ(maskOf({never, cases[5].shape}, 20, 20, rule).count(), 400 - own);
    }
}

TEST(AreaMask, RefusesAndStopsAndKeepsWhatItWas)
{
    ABitMatrix mask(2, 2);
    mask.set(1, 1);
    const ABitMatrix before = mask;
    CString error;
    AreaShape far = polygon({{0, 0}, {3e9, 0}, {0, 1}});
    for (const AreaShape& bad : {far, polygon({{0, 0}, {1, 1}}), box(Kind::ellipse, {0, 0}, 0, 1),
                                 box(Kind::rectangle, {NAN, 0}, 1, 1)}) {
        EXPECT_FALSE(maskOfAreas({box(Kind::rectangle, {1, 1}, 1, 1), bad}, 2, 2, MaskRule::outline,
                                 mask, error));
        EXPECT_NE(error.find("area 2"), CString::npos) << error;
    }
    EXPECT_FALSE(maskOfAreas({}, 0, 2, MaskRule::outline, mask, error));
    StopFlag stop;
    stop.stop();
    AreaList areas(1);
    EXPECT_FALSE(maskOfAreas({far}, 2, 2, MaskRule::outline, mask, error, &stop));
    EXPECT_FALSE(areasOfMask(before, areas, error, &stop));
    EXPECT_EQ(error, "stopped");
    EXPECT_FALSE(areasOfMask(ABitMatrix(), areas, error));
    EXPECT_EQ(areas.size(), 1u);
    EXPECT_TRUE(mask == before);
}

TEST(AreaMask, ComesBackFromItsAreasAndItsBytes)
{
    std::mt19937 random(7);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    for (int round = 0; round < 80; ++round) {
        const int rows = 1 + below(round % 4 ? 40 : 3), columns = 1 + below(round % 3 ? 150 : 3);
        ABitMatrix mask(rows, columns);
        if (round % 5)  // blocks with holes and dots, lines and cells at every edge
            for (int i = below(30); i > 0; --i) {
                const int r = below(rows), h = 1 + below(rows), c = below(columns);
                const int value = below(3) != 0, w = below(columns);
                for (int k = r; k < std::min(r + h, rows); ++k)
                    for (int x = c; x < std::min(c + w, columns); ++x)
                        mask.set(k, x, value);
            }
        else
            for (int i = rows * columns / 2; i > 0; --i)
                mask.set(below(rows), below(columns));
        AreaList areas;
        CString error;
        ASSERT_TRUE(areasOfMask(mask, areas, error)) << error;
        for (const MaskRule rule : {MaskRule::outline, MaskRule::centres})
            ASSERT_TRUE(maskOf(areas, rows, columns, rule) == mask) << round;
        const std::int64_t step = columns + 3;
        std::vector<unsigned char> bytes(static_cast<std::size_t>(rows * step), 9);
        unpackMask(mask, bytes.data(), step);
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < step; ++c)
                ASSERT_EQ(bytes[static_cast<std::size_t>(r * step + c)],
                          c < columns ? mask.get(r, c) : 9);
        ABitMatrix back(rows, columns);
        packMask(bytes.data() + (rows - 1) * step + columns - 1, -step, -1, back);
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < columns; ++c)
                ASSERT_EQ(back.get(rows - 1 - r, columns - 1 - c), mask.get(r, c));
    }
}
