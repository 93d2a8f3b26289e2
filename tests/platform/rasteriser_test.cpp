#include "platform/core/clip_geometry.h"
#include "platform/core/ellipse.h"
#include "platform/core/lines.h"
#include "platform/core/PixelPainter.h"
#include "platform/core/polygon_scan.h"
#include "platform/gdi_constants.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace pavane
{

namespace
{

constexpr int least = std::numeric_limits<int>::min();
constexpr int greatest = std::numeric_limits<int>::max();
using Pixels = std::set<std::pair<int, int>>;

Pixels pixelsOf(const std::vector<Span>& spans)
{
    Pixels pixels;
    for (const Span& s : spans) {
        for (int x = s.a; x < s.b; ++x)
            pixels.insert({x, s.y});
    }
    return pixels;
}

/// Pixel by pixel with exact fractions: minor offset = ceil(i * m / n - 1/2), signed.
Pixels plainLine(CPoint a, CPoint b, const CRect& bounds)
{
    const Wide dx = Wide{b.x} - a.x, dy = Wide{b.y} - a.y;
    const bool flat = (dx < 0 ? -dx : dx) >= (dy < 0 ? -dy : dy);
    const Wide major = flat ? dx : dy, minor = flat ? dy : dx;
    const Wide n = major < 0 ? -major : major;
    Pixels pixels;
    // only the steps that can be inside the bounds' main direction
    const Wide start = flat ? a.x : a.y;
    const Wide low = flat ? bounds.left : bounds.top, high = flat ? bounds.right : bounds.bottom;
    for (Wide p = low; p < high; ++p) {
        const Wide i = major < 0 ? start - p : p - start;
        if (i < 0 || i >= n)
            continue;
        const Wide across = -floorDiv(-(2 * minor * i - n), 2 * n);
        const Wide x = flat ? p : a.x + across, y = flat ? a.y + across : p;
        if (x >= bounds.left && x < bounds.right && y >= bounds.top && y < bounds.bottom)
            pixels.insert({static_cast<int>(x), static_cast<int>(y)});
    }
    return pixels;
}

}  // namespace

TEST(ThinLine, EqualsThePlainRuleWhereverItBeginsAndEnds)
{
    std::mt19937 random(7);
    const CRect bounds(-9, -7, 23, 18);
    const int reaches[] = {12, 60, 4000, 1 << 30, greatest};
    for (int i = 0; i < 4000; ++i) {
        std::uniform_int_distribution<int> at(-reaches[i % 5], reaches[i % 5]);
        const CPoint a(at(random), at(random));
        const CPoint b(at(random), i % 3 == 0 ? a.y : at(random));
        Pixels got;
        thinLine(a, b, bounds, [&](const LineRun& r) {
            for (int k = 0; k < r.count; ++k)
                got.insert(r.horizontal ? std::pair(r.x + k * r.step, r.y)
                                        : std::pair(r.x, r.y + k * r.step));
        });
        ASSERT_EQ(got, plainLine(a, b, bounds)) << a.x << ' ' << a.y << ' ' << b.x << ' ' << b.y;
    }
}

TEST(PolygonScan, AgreesWithTestingEachPointForAnyVertices)
{
    std::mt19937 random(11);
    const CRect bounds(-20, -15, 21, 14);
    const int reaches[] = {15, 40, 100000, greatest};
    for (int i = 0; i < 400; ++i) {
        std::uniform_int_distribution<int> at(-reaches[i % 4], reaches[i % 4]);
        std::vector<CPoint> points(static_cast<std::size_t>(3 + i % 9));
        for (CPoint& p : points)
            p = {at(random), at(random)};
        const bool winding = i % 2 == 1;
        const int count = static_cast<int>(points.size());
        const Region region = polygonRegion(points.data(), count, winding, bounds);
        for (int y = bounds.top; y < bounds.bottom; ++y) {
            for (int x = bounds.left; x < bounds.right; ++x)
                ASSERT_EQ(region.contains(x, y),
                          polygonContains(points.data(), count, winding, x, y))
                    << i << ": " << x << ' ' << y;
        }
    }
}

TEST(RegionAlgebra, EqualsTheAlgebraOfItsPixels)
{
    std::mt19937 random(3);
    std::uniform_int_distribution<int> at(0, 11);
    const auto draw = [&] {
        Region region;
        for (int i = 0; i < 4; ++i) {
            CRect r(at(random), at(random), at(random), at(random));
            r.NormalizeRect();
            region = Region::combined(region, Region(r), i % 2 ? RGN_XOR : RGN_OR);
        }
        return region;
    };
    for (int i = 0; i < 300; ++i) {
        const Region a = draw(), b = draw();
        const Region results[] = {Region::combined(a, b, RGN_AND), Region::combined(a, b, RGN_OR),
                                  Region::combined(a, b, RGN_XOR),
                                  Region::combined(a, b, RGN_DIFF)};
        for (int y = -1; y < 13; ++y) {
            for (int x = -1; x < 13; ++x) {
                const bool p = a.contains(x, y), q = b.contains(x, y);
                const bool wanted[] = {p && q, p || q, p != q, p && !q};
                for (int k = 0; k < 4; ++k)
                    ASSERT_EQ(results[k].contains(x, y), wanted[k]) << k;
            }
        }
        // equal sets have equal rows, so that a rectangle is found to be one
        EXPECT_EQ(Region::combined(results[1], results[0], RGN_XOR).bands().size(),
                  results[2].bands().size());
        EXPECT_EQ(Region::combined(a, a, RGN_DIFF).kind(), NULLREGION);
    }
    const Region parts = Region::combined(Region({0, 0, 5, 5}), Region({0, 5, 5, 9}), RGN_OR);
    EXPECT_EQ(parts.kind(), SIMPLEREGION);
    EXPECT_EQ(parts.box(), CRect(0, 0, 5, 9));
}

TEST(Spans, UniteAndCutOutAsSetsDo)
{
    std::mt19937 random(5);
    std::uniform_int_distribution<int> at(0, 20);
    const auto draw = [&] {
        std::vector<Span> spans;
        for (int i = 0; i < 12; ++i) {
            const int a = at(random);
            spans.push_back({at(random) % 3, a, a + 1 + at(random) % 6});
        }
        return spans;
    };
    for (int i = 0; i < 200; ++i) {
        std::vector<Span> a = draw(), b = draw();
        const Pixels before = pixelsOf(a), holes = pixelsOf(b);
        unite(a);
        unite(b);
        EXPECT_EQ(pixelsOf(a), before);
        std::size_t covered = 0;
        for (const Span& s : a)
            covered += static_cast<std::size_t>(s.b - s.a);
        EXPECT_EQ(covered, before.size()) << "a pixel comes twice";
        Pixels rest;
        std::set_difference(before.begin(), before.end(), holes.begin(), holes.end(),
                            std::inserter(rest, rest.end()));
        EXPECT_EQ(pixelsOf(without(a, b)), rest);
    }
}

TEST(WideLines, AreCutAtTheBoundsWithoutOverflow)
{
    const CRect bounds(0, 0, 8, 8);
    std::vector<Span> spans;
    for (const int width : {2, 3, 7, 40, greatest}) {
        WideLine line(width);
        spans.clear();
        line.body({least, least}, {greatest, greatest}, bounds, spans);
        line.disc({greatest, greatest}, bounds, spans);
        line.disc({least, least}, bounds, spans);
        const Pixels pixels = pixelsOf(spans);
        for (int i = 0; i < 8; ++i)
            EXPECT_TRUE(pixels.count({i, i})) << width;
        for (const auto& [x, y] : pixels)
            EXPECT_TRUE(bounds.PtInRect({x, y}));
    }
}

TEST(LargeEllipses, AreWorkedOutWhereTheyAreSeen)
{
    const CRect bounds(0, 0, 100, 100);
    std::vector<Span> fill, outline;
    // a circle of radius 100000 whose rightmost point is in the middle
    ellipseFill({50 - 200000, 50 - 100000, 51, 51 + 100000}, bounds, fill);
    ellipseOutline({50 - 200000, 50 - 100000, 51, 51 + 100000}, bounds, outline);
    ASSERT_EQ(fill.size(), 100u);
    for (const Span& s : fill)
        EXPECT_EQ(s.b, 51) << s.y;
    EXPECT_EQ(pixelsOf(outline).size(), 100u);
    fill.clear();
    ellipseFill({least, least, greatest, greatest}, bounds, fill);
    EXPECT_EQ(pixelsOf(fill).size(), 100u * 100u);
}

TEST(ClippedCurves, KeepWhatIsInsideAndWhereItBegan)
{
    const BoxF box{0, 0, 10, 10};
    const CPointF zigzag[] = {{-5, 5}, {5, 5}, {5, 25}, {8, 25}, {8, 5}};
    const auto pieces = clippedCurve(zigzag, 5, box);
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pieces[0].points, (std::vector<CPointF>{{0, 5}, {5, 5}, {5, 10}}));
    EXPECT_DOUBLE_EQ(pieces[0].distance, 5);
    EXPECT_EQ(pieces[1].points, (std::vector<CPointF>{{8, 10}, {8, 5}}));
    EXPECT_DOUBLE_EQ(pieces[1].distance, 10 + 20 + 3 + 15);

    const CPointF far[] = {{-1e308, -1e308}, {1e308, 1e308}};
    for (const CurvePiece& piece : clippedCurve(far, 2, box)) {
        for (const CPointF& p : piece.points)
            EXPECT_TRUE(p.x >= 0 && p.x <= 10 && p.y >= 0 && p.y <= 10);
    }

    const CPointF huge[] = {{-1e9, -1e9}, {1e9, -1e9}, {1e9, 1e9}, {-1e9, 1e9}};
    const auto cut = clippedPolygon(huge, 4, box);
    ASSERT_EQ(cut.size(), 4u);
    for (const CPointF& p : cut) {
        EXPECT_NEAR(std::fabs(p.x - 5), 5, 1e-6);
        EXPECT_NEAR(std::fabs(p.y - 5), 5, 1e-6);
    }
}

}  // namespace pavane
