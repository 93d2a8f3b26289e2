#include "pavane/images/curve_raster.h"
#include "platform/picture.h"
#include "tests/images/raster_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>
#include <vector>

namespace pavane
{
namespace
{

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double odd[] = {nan, infinity, -infinity, 1e308, -1e308, 1e18, -0.0};

struct Curve {
    std::vector<double> x, y;
    CurveScale xScale, yScale;
    CurvePoints points() const { return {x.data(), y.data(), static_cast<std::int64_t>(x.size())}; }
};

bool exists(double v, const CurveScale& scale)
{
    return std::isfinite(v) && (!scale.logarithmic || v > 0);
}

// Every segment by itself, as an axis without any wit would do.
void drawPlainly(ADIBase& dib, const Curve& c)
{
    const std::size_t n = c.x.size();
    for (std::size_t i = 0; i < n; ++i) {
        if (!exists(c.x[i], c.xScale) || !exists(c.y[i], c.yScale))
            continue;
        const int x = c.xScale.pixel(c.x[i]), y = c.yScale.pixel(c.y[i]);
        if (i + 1 < n && exists(c.x[i + 1], c.xScale) && exists(c.y[i + 1], c.yScale))
            dib.Line(x, y, c.xScale.pixel(c.x[i + 1]), c.yScale.pixel(c.y[i + 1]));
        else if (dib.GetLineWidth() > 1 && dib.GetLinePattern() == -1)
            dib.Line(x, y, x, y);
        else
            dib.SetPixel(x, y, dib.GetColor());
    }
}

// Rising, falling or unordered x, equal ones, steep and flat parts, gaps, huge values, and a view
// on a part of it all.
Curve randomCurve(unsigned seed)
{
    std::mt19937 random(seed);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const auto part = [&] { return std::generate_canonical<double, 53>(random); };
    Curve c;
    const int n = below(2) ? below(40) : 2000;
    const int order = below(4);
    const bool logarithmic = below(4) == 0;
    for (int i = 0; i < n; ++i) {
        double x = order == 0 ? part() : static_cast<double>(order == 1 ? i : n - i) / n;
        double y = below(3) ? part() : std::sin(8 * x) * 0.5 + 0.5;
        if (order == 3)
            x = below(9) / 8.0;
        if (below(60) == 0)
            (below(2) ? x : y) = odd[below(7)];
        if (below(20) == 0)
            y = below(3) - 1.0;
        c.x.push_back(logarithmic ? std::pow(10.0, 3 * x) * (below(90) ? 1 : -1) : x);
        c.y.push_back(y);
    }
    const double from = below(2) ? 0 : part() - 0.4, span = below(2) ? 1 : part() + 1e-3;
    c.xScale = {
        logarithmic ? 3 * from : from, logarithmic ? 3 * span : span, 63, 5, 1, logarithmic};
    if (below(2))
        c.xScale.base = 68, c.xScale.sign = -1;
    c.yScale = {below(2) ? 0.0 : part(), below(5) ? 0.8 : -0.8, 47, 49, -1, 0};
    return c;
}

TEST(Curve, GivesThePixelsOfDrawingEachSegment)
{
    for (unsigned seed = 0; seed < 3000; ++seed) {
        const Curve c = randomCurve(seed);
        ADIBase plain = blank(CRect(5, 2, 68, 49));
        plain.SetLineWidth(seed % 8 == 7 ? 4 : 1);
        plain.SetLinePattern(seed % 16 == 6 ? 0x0F0F0F0F : -1);
        ADIBase fast = plain;
        drawPlainly(plain, c);
        drawCurve(fast, c.points(), c.xScale, c.yScale);
        ASSERT_EQ(asText(fast), asText(plain)) << "seed " << seed;
    }
}

TEST(Curve, IsReducedToFewPointsOfTheSamePixels)
{
    for (unsigned seed = 0; seed < 600; ++seed) {
        const Curve c = randomCurve(seed);
        ADIBase plain = blank(CRect(5, 2, 68, 49));
        drawPlainly(plain, c);
        ADIBase reduced = blank(plain.rect());
        CPicture picture(80, 60);
        const std::unique_ptr<CDC> dc = picture.dc();
        int used = 0;
        reduceCurve(c.points(), c.xScale, c.yScale, CRect(5, 2, 69, 50), 1,
                    [&](const CPoint* p, int count) {
                        used += count;
                        dc->Polyline(p, count);
                        dc->SetPixelV(p[count - 1].x, p[count - 1].y, 0);
                    });
        for (int y = 2; y < 50; ++y)
            for (int x = 5; x < 69; ++x)
                reduced.SetPixel(x, y, picture.row(y)[x] != 0xFFFFFF);
        ASSERT_EQ(asText(reduced), asText(plain)) << "seed " << seed;
        if (c.x.size() > 1000 && std::is_sorted(c.x.begin(), c.x.end())) {
            EXPECT_LE(used, 4 * 66);
        }
    }
}

TEST(Curve, OfEqualStepsIsTheSameWithoutItsX)
{
    for (const double step : {1.0 / 5000, -1.0 / 300, 0.0}) {
        Curve c = randomCurve(4);
        c.y.clear();
        c.x.clear();
        for (int i = 0; i < 5000; ++i) {
            c.x.push_back(0.1 + i * step);
            c.y.push_back(i % 1700 == 0 ? nan : std::cos(0.37 * i) * i / 5000);
        }
        ADIBase one = blank(CRect(0, 0, 80, 60)), other = one;
        drawCurve(one, c.points(), c.xScale, c.yScale);
        drawCurve(other, {nullptr, c.y.data(), 5000, 0.1, step}, c.xScale, c.yScale);
        EXPECT_EQ(asText(one), asText(other));
        EXPECT_NE(asText(one).find('#'), std::string::npos);
    }
}

}  // namespace
}  // namespace pavane
