#include "pavane/axes/AGraphXYPoint.h"
#include "pavane/axes/AGraphYLine.h"
#include "pavane/axes/axis_curve.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/images/ADIBase.h"
#include "platform/picture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace pavane;

namespace
{

constexpr double gap = std::numeric_limits<double>::quiet_NaN();
constexpr int side = 60;

/// An axis over 0..1 in a raster or a picture of 61 x 61 pixels.
struct Canvas {
    TMinMax range{0, 1, 0, 1, 0, 1};
    ABAxis axis;
    CPicture picture{side + 1, side + 1};
    std::unique_ptr<CDC> dc = picture.dc();
    CRect rect{0, 0, side + 1, side + 1};

    explicit Canvas(int options = 0, int xDirect = 1, int yDirect = 1)
        : axis(xDirect, yDirect, &range, options)
    {
        axis.setGraphRect(CRect(0, 0, side, side));
        axis.setFHeight(12);
        axis.setDc(dc.get());
        axis.SetDib(new ADIBase(CRect(0, 0, side, side)));
        *axis.dib() = short{226};
    }
    bool isSet(int x, int y) const
    {
        return axis.isFlagSet(axisBitmapMode) ? axis.dib()->GetPixel(x, y) != 226
                                              : picture.row(y)[x] != 0xFFFFFF;
    }
    int count() const
    {
        int pixels = 0;
        for (int y = 0; y <= side; ++y)
            for (int x = 0; x <= side; ++x)
                pixels += isSet(x, y);
        return pixels;
    }
};

/// Draws the pieces of a curve segment by segment.
void drawPlainly(ABAxis& axis, const std::vector<double>& x, const std::vector<double>& y)
{
    axis.setColor(0);
    for (std::size_t i = 0; i < x.size(); ++i) {
        if (std::isnan(y[i]))
            continue;
        const int gx = axis.RPXtoGPX(x[i]);
        const int gy = axis.RPYtoGPY(y[i]);
        if (i + 1 < x.size() && !std::isnan(y[i + 1]))
            axis.line(gx, gy, axis.RPXtoGPX(x[i + 1]), axis.RPYtoGPY(y[i + 1]));
        else
            axis.lineV(gx, gy, gx, gy);
    }
}

}  // namespace

TEST(Curves, ShowThePixelsOfAllTheirSegments)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> value(-0.3, 1.3);
    for (int trial = 0; trial < 40; ++trial) {
        std::vector<double> x;
        std::vector<double> y;
        for (int i = 0; i < 200; ++i) {
            x.push_back(trial % 2 ? value(random) : i / 199.0);
            y.push_back(i % 37 == 5 ? gap : value(random));
        }
        for (const int options : {0, static_cast<int>(axisBitmapMode)}) {
            Canvas drawn(options, trial % 3 ? 1 : -1);
            new AGraphXYLine(&drawn.axis, x.data(), y.data(), 200, nullptr, PS_SOLID, 0, 0, 0);
            drawn.axis.drawChilds(*drawn.dc, drawn.rect, drawn.range);
            Canvas plain(options, trial % 3 ? 1 : -1);
            drawPlainly(plain.axis, x, y);
            for (int py = 0; py <= side; ++py)
                for (int px = 0; px <= side; ++px)
                    ASSERT_EQ(drawn.isSet(px, py), plain.isSet(px, py)) << px << " " << py;
        }
    }
}

TEST(Curves, KeepDashesGoingAcrossShortSegments)
{
    std::vector<double> y(61, 0.5);
    Canvas canvas(axisBitmapMode);
    new AGraphYLine(&canvas.axis, y.data(), 61, nullptr, PS_DASH, 0, 1.0 / side, 0, 0, 0);
    canvas.axis.drawChilds(*canvas.dc, canvas.rect, canvas.range);
    for (int x = 0; x < side; ++x)
        EXPECT_EQ(canvas.isSet(x, 30), x % 8 < 4) << x;
    EXPECT_EQ(canvas.axis.getLineStyle(), PS_SOLID);
    EXPECT_EQ(canvas.axis.dib()->GetLinePattern(), -1);
}

TEST(Curves, SurviveAnyValues)
{
    constexpr double big = std::numeric_limits<double>::max();
    std::vector<double> x{0, 0.5, big, -big, gap, INFINITY, 0.1, 0.2, 5e-324};
    std::vector<double> y{0.5, 0.5, big, 0.5, 0.5, 0.5, -INFINITY, -big, 0.5};
    for (const int direct : {1, -1, 0})
        for (const int options : {0, static_cast<int>(axisBitmapMode)}) {
            Canvas canvas(options, direct, direct);
            canvas.axis.setMinMax({1e-3, 1, 1e-3, 1, 0, 1});
            for (const int style : {PS_SOLID, PS_DOT})
                new AGraphXYLine(&canvas.axis, x.data(), y.data(), 9, nullptr, style, 3, 0, 0);
            new AGraphXYPoint(&canvas.axis, x.data(), y.data(), 9, nullptr, graphPointStar, 1, 0,
                              0);
            canvas.axis.drawChilds(*canvas.dc, canvas.rect, canvas.range);
            EXPECT_TRUE(canvas.count() > 0);
        }
}

TEST(Points, OutsideThePlotAreLeftOut)
{
    std::vector<double> x{0.5, 1.01, gap, 0.5};
    std::vector<double> y{0.5, 0.5, 0.5, -0.01};
    Canvas canvas;
    new AGraphXYPoint(&canvas.axis, x.data(), y.data(), 4, nullptr, graphPointCross, 0, 0, 0);
    canvas.axis.drawChilds(*canvas.dc, canvas.rect, canvas.range);
    EXPECT_EQ(canvas.count(), 9);  // one cross of 5 + 4 pixels
    EXPECT_TRUE(canvas.isSet(30, 30) && canvas.isSet(32, 30) && canvas.isSet(30, 28));
}

TEST(Points, OfAnyNumberMarkThePixelsThatEachMarksAlone)
{
    std::mt19937 random(4);
    std::uniform_real_distribution<double> place(-0.05, 1.05);
    std::vector<double> x(1200), y(1200);
    std::generate(x.begin(), x.end(), [&] { return place(random); });
    std::generate(y.begin(), y.end(), [&] { return place(random); });
    for (std::size_t i = 900; i < 1200; ++i)  // on the borders between pixels
        x[i] = static_cast<double>(i % 121) / 120, y[i] = static_cast<double>(7 * i % 121) / 120;
    x[1] = gap, y[2] = INFINITY, x[3] = -1e300, y[4] = 1, x[4] = 0, y[5] = 1e-3, x[5] = 1;
    for (const int shape : {graphPointDot, graphPointCross, graphPointBar, graphPointStar})
        for (const int direct : {1, -1, 0})
            for (const int options : {0, static_cast<int>(axisBitmapMode)}) {
                Canvas all(options, direct, -direct);
                Canvas each(options, direct, -direct);
                for (Canvas* canvas : {&all, &each})
                    canvas->axis.setMinMax({1e-3, 1, 1e-3, 1, 0, 1});
                new AGraphXYPoint(&all.axis, x.data(), y.data(), 1200, nullptr, shape, 0, 0, 0);
                for (std::size_t i = 0; i < 1200; i += 400)
                    new AGraphXYPoint(&each.axis, &x[i], &y[i], 400, nullptr, shape, 0, 0, 0);
                all.axis.drawChilds(*all.dc, all.rect, all.range);
                each.axis.drawChilds(*each.dc, each.rect, each.range);
                int different = 0;
                for (int i = 0; i < side * side; ++i)
                    different += all.isSet(i % side, i / side) != each.isSet(i % side, i / side);
                EXPECT_EQ(different, 0) << shape << ' ' << direct << ' ' << options;
            }
}

TEST(GraphRange, IsThatOfTheFinitePointsUnlessOneIsGiven)
{
    std::vector<double> x{3, 1, gap, 7, 9};
    std::vector<double> y{5, 6, 100, INFINITY, -2};
    const AGraphXYLine data(nullptr, x.data(), y.data(), 5, nullptr, PS_SOLID, 1, 0, 0);
    TMinMax range;
    data.getMinMax(range);
    EXPECT_EQ(range, (TMinMax{1, 9, -2, 6}));
    TMinMax own{9, 8, 7, 6, 5, 4};
    AGraphXYLine(nullptr, x.data(), y.data(), 5, &own, PS_SOLID, 1, 0, 0).getMinMax(range);
    EXPECT_EQ(range, own);
    AGraphXYLine(nullptr, x.data() + 2, y.data(), 1, nullptr, PS_SOLID, 1, 0, 0).getMinMax(range);
    EXPECT_EQ(range, TMinMax());
    AGraphYLine line(nullptr, y.data(), 5, nullptr, PS_SOLID, 10, -2, 1, 0, 0);
    line.getMinMax(range);
    EXPECT_EQ(range, (TMinMax{2, 10, -2, 100}));
}
