// Curves in smooth pictures beside the area that their whole stroke covers.
#include "pavane/axes/ABAxis.h"
#include "pavane/axes/AGraphXYLine.h"
#include "platform/core/RisingStroke.h"
#include "platform/picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <utility>
#include <vector>

using namespace pavane;

namespace
{

constexpr double gap = std::numeric_limits<double>::quiet_NaN();
constexpr int width = 96;
constexpr int height = 64;
/// Rows that a pixel is cut into; along them the cover is exact.
constexpr int subRows = 32;

struct Curve {
    std::vector<double> x, y;  ///< pixels
};

/// Dark shares of 255 of the pixels that a round pen covers on its way along the unreduced curve.
std::vector<int> coverOf(const Curve& curve, double pen)
{
    const double r = pen / 2;
    std::vector<std::vector<std::pair<double, double>>> rows(height * subRows);
    const auto stroke = [&](CPointF a, CPointF b) {
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        const CPointF side{length > 0 ? (a.y - b.y) / length * r : 0,
                           length > 0 ? (b.x - a.x) / length * r : 0};
        const CPointF corners[] = {{a.x + side.x, a.y + side.y},
                                   {b.x + side.x, b.y + side.y},
                                   {b.x - side.x, b.y - side.y},
                                   {a.x - side.x, a.y - side.y}};
        const int first = std::max(0, static_cast<int>((std::min(a.y, b.y) - r) * subRows) - 1);
        const int last = std::min<int>(height * subRows,
                                       static_cast<int>((std::max(a.y, b.y) + r) * subRows) + 2);
        for (int j = first; j < last; ++j) {
            const double y = (j + 0.5) / subRows;
            double left = 1e9, right = -1e9;
            const auto reach = [&](double from, double to) {
                left = std::min(left, from);
                right = std::max(right, to);
            };
            for (const CPointF& end : {a, b})
                if (const double square = r * r - (y - end.y) * (y - end.y); square > 0)
                    reach(end.x - std::sqrt(square), end.x + std::sqrt(square));
            for (int k = 0; k < 4; ++k) {
                const CPointF p = corners[k], q = corners[(k + 1) % 4];
                if ((p.y <= y) != (q.y <= y)) {
                    const double x = p.x + (y - p.y) / (q.y - p.y) * (q.x - p.x);
                    reach(x, x);
                }
            }
            if (left < right)
                rows[static_cast<std::size_t>(j)].emplace_back(left, right);
        }
    };
    for (std::size_t i = 0; i < curve.x.size(); ++i) {
        const std::size_t next = i + 1 < curve.x.size() && !std::isnan(curve.y[i + 1]) ? i + 1 : i;
        if (!std::isnan(curve.y[i]))
            stroke({curve.x[i] + 0.5, curve.y[i] + 0.5},
                   {curve.x[next] + 0.5, curve.y[next] + 0.5});
    }
    std::vector<double> cover(width * height);
    for (std::size_t j = 0; j < rows.size(); ++j) {
        std::sort(rows[j].begin(), rows[j].end());
        double done = 0;
        for (const auto& [left, right] : rows[j]) {
            const double from = std::max(left, done), to = std::min<double>(right, width);
            for (int x = static_cast<int>(from); from < to && x < to; ++x)
                cover[j / subRows * width + static_cast<std::size_t>(x)] +=
                    std::min(to, x + 1.0) - std::max<double>(from, x);
            done = std::max(done, to);
        }
    }
    std::vector<int> dark;
    for (const double c : cover)
        dark.push_back(static_cast<int>(std::lround(255 * c / subRows)));
    return dark;
}

void drawGraph(CPicture& picture, Curve curve, int pen, bool falls)
{
    const auto dc = picture.dc();
    dc->SetSmooth(1);
    TMinMax range{0, width - 1.0, 0, height - 1.0, 0, 1};
    ABAxis axis(1, -1, &range, 0);
    axis.setGraphRect(CRect(0, 0, width - 1, height - 1));
    axis.setFHeight(12);
    axis.setDc(dc.get());
    if (falls) {
        std::reverse(curve.x.begin(), curve.x.end());
        std::reverse(curve.y.begin(), curve.y.end());
    }
    new AGraphXYLine(&axis, curve.x.data(), curve.y.data(), static_cast<int>(curve.x.size()),
                     nullptr, PS_SOLID, pen, 0, 0);
    CRect rect(0, 0, width, height);
    axis.drawChilds(*dc, rect, range);
}

/// Without x, on a screen of `ratio` pixels to a unit.
void strokeSteps(CPicture& picture, const Curve& curve, double pen, int ratio)
{
    const PixelSurface surface{picture.row(0), width / ratio, height / ratio,
                               picture.row(1) - picture.row(0), ratio};
    const double origin = 0.5 / ratio - 0.5;
    const double scale = 1.0 / ratio;
    RisingStroke stroke(surface, Region(CRect(0, 0, width, height)), pen / ratio);
    ASSERT_NE(stroke.add({nullptr, curve.y.data(), static_cast<std::int64_t>(curve.y.size()),
                          curve.x[0], curve.x[1] - curve.x[0], origin, scale, origin, scale}),
              0);
    stroke.paint(0);
}

}  // namespace

TEST(SmoothCurves, CoverWhatTheirWholeStrokeCovers)
{
    struct Kind {
        const char* name;
        double fewest;  ///< points to a column
        double (*y)(double x, int i, double noise);
    };
    const Kind kinds[] = {
        {"smooth", 2.5, [](double x, int, double) { return 32 + 24 * std::sin(x / 8); }},
        {"noise", 6, [](double x, int, double n) { return 32 + 10 * std::sin(x / 20) + 6 * n; }},
        {"arcs", 2.5,
         [](double x, int, double) {
             return std::fmod(x + 20, 13.37) > 9 ? gap : 32 + 24 * std::sin(x / 8);
         }},
        {"gaps", 6, [](double, int i, double n) { return i % 37 > 33 ? gap : 32 + 6 * n; }},
        {"single points", 6, [](double x, int i, double) { return i % 4 ? gap : 32 + x / 7; }},
        {"spikes", 6, [](double, int i, double) { return i % 23 == 9 ? 8.3 : 50.0; }},
        {"steps", 6, [](double x, int, double) { return std::fmod(x, 14.6) < 7.3 ? 15.0 : 45.4; }},
        {"beyond", 6, [](double x, int, double n) { return 32 + 90 * std::sin(x / 5) + n; }},
    };
    for (const Kind& kind : kinds)
        for (const double perColumn : {kind.fewest, 20.0})
            for (const int pen : {1, 2, 3, 5}) {
                if (pen > 2 && perColumn > kind.fewest)
                    continue;
                std::mt19937_64 random(7);
                std::normal_distribution<double> noise(0, 1);
                Curve curve;
                for (int i = 0; i < perColumn * (width + 20); ++i) {
                    curve.x.push_back(i / perColumn - 10);
                    curve.y.push_back(kind.y(curve.x.back(), i, noise(random)));
                }
                const std::vector<int> cover = coverOf(curve, pen);
                CPicture picture(width, height);
                if (pen < 3)
                    drawGraph(picture, curve, pen, pen == 2);
                else
                    strokeSteps(picture, curve, pen, pen == 5 ? 2 : 1);
                int worst = 0;
                double sum = 0;
                int inked = 0;
                for (int y = 0; y < height; ++y)
                    for (int x = 0; x < width; ++x) {
                        const int is = 255 - static_cast<int>(picture.row(y)[x] & 0xFF);
                        const int should = cover[static_cast<std::size_t>(y * width + x)];
                        worst = std::max(worst, std::abs(is - should));
                        sum += std::abs(is - should);
                        inked += should > 0;
                    }
                EXPECT_LE(worst, 8) << kind.name << " " << perColumn << " pen " << pen;
                // thin lines with thin gaps between them are all edge
                EXPECT_LE(sum, (std::strcmp(kind.name, "spikes") ? 1.0 : 1.2) * inked)
                    << kind.name << " " << perColumn << " pen " << pen;
            }
}
