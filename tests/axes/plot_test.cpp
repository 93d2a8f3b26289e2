#include "pavane/axes/A2DAxis.h"

#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/AGraphXYPoint.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/images/ADIBase.h"
#include "platform/message.h"
#include "platform/picture.h"
#include "tessel/AFile.h"
#include "tessel/paths.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

using namespace pavane;

namespace
{

std::string shown;

int keepMessage(const CString& text, unsigned)
{
    shown += text + ";";
    return IDOK;
}

/// A plot of a rising line in a picture of its own; counts how often the graph is drawn.
struct Plot {
    class CountedLine : public AGraphXYLine
    {
    public:
        CountedLine(ABAxis* axis, std::vector<double>& x, int& drawn)
            : AGraphXYLine(axis, x.data(), x.data(), 2, nullptr, PS_SOLID, 1, 0, 0), drawn_(drawn)
        {
        }
        void draw(CDC& dc, CRect& rect, TMinMax& range) override
        {
            ++drawn_;
            AGraphXYLine::draw(dc, rect, range);
        }

    private:
        int& drawn_;
    };

    std::vector<double> x{0, 10};
    int drawn = 0;
    A2DAxis axis;
    CPicture picture{600, 400};
    std::unique_ptr<CDC> dc = picture.dc();

    explicit Plot(int options = 0, int xDirect = 1) : axis(xDirect, 1, nullptr, options)
    {
        shown.clear();
        axis.setMessages(MessageReceiver(keepMessage));
        new CountedLine(&axis, x, drawn);
    }
    void draw(int width = 600, int height = 400)
    {
        CRect rect(0, 0, width, height);
        axis.draw(*dc, rect);
    }
    bool isDark(int px, int py) const { return picture.row(py)[px] != 0xFFFFFF; }
};

}  // namespace

TEST(Layout, LeavesRoomForLabelsTitlesAndHeader)
{
    Plot plot;
    const CRect rect(0, 0, 600, 400);
    ASSERT_TRUE(plot.axis.layOut(*plot.dc, rect));
    EXPECT_EQ(plot.axis.getFHeight(), 16);
    const CRect bare = plot.axis.getGraphRect();
    EXPECT_EQ(bare.bottom, 400 - 2 * 16);
    EXPECT_EQ(bare.top, 8);
    plot.axis.setNameOX("x");
    plot.axis.setNameOY("y");
    ASSERT_TRUE(plot.axis.layOut(*plot.dc, rect));
    EXPECT_EQ(plot.axis.getGraphRect().left, bare.left + 24);
    EXPECT_EQ(plot.axis.getGraphRect().bottom, bare.bottom - 24);
    plot.axis.setBorderRect(CRect(100, 50, 90, 80));
    ASSERT_TRUE(plot.axis.layOut(*plot.dc, rect));
    EXPECT_EQ(plot.axis.getGraphRect(), CRect(100, 50, 510, 320));
    plot.axis.setBorderRect(CRect(-1, -1, 590, -1));
    EXPECT_FALSE(plot.axis.layOut(*plot.dc, rect));
    EXPECT_EQ(plot.axis.dc(), nullptr);
}

TEST(Layout, KeepsLongLabelsInsideThePicture)
{
    for (const int direct : {1, -1}) {
        Plot plot(0, direct);
        plot.axis.setMinMax({1, 1 + 3e-9, 0, 1});
        ASSERT_TRUE(plot.axis.layOut(*plot.dc, CRect(0, 0, 600, 400)));
        const int half = plot.dc->GetTextExtent("1.000000003").cx / 2;
        EXPECT_LE(plot.axis.getGraphRect().right, 600 - half + 3);
        EXPECT_GE(plot.axis.getGraphRect().left, half - 3);
    }
}

TEST(Layout, GivesAFlatPlotFewLabelledTicksButSome)
{
    for (const double low : {0.0, 0.05, -0.07}) {
        Plot plot;
        plot.axis.setMinMax({0, 1, low, low + 0.1});
        plot.axis.setBorderRect(CRect(60, 180, 20, 190));
        plot.draw();
        const CRect g = plot.axis.getGraphRect();
        int ticks = 0;
        for (int y = g.top; y <= g.bottom; ++y)
            ticks += plot.isDark(g.left - 4, y);
        EXPECT_GE(ticks, 1) << low;
        EXPECT_LE(ticks, 3) << low;
    }
}

TEST(Plot, HasAFrameWithTicksOutsideOrInside)
{
    Plot plot;
    plot.draw();
    const CRect g = plot.axis.getGraphRect();
    const int x = plot.axis.RPXtoGPX(4);
    EXPECT_TRUE(plot.isDark(g.left, (g.top + g.bottom) / 2 + 3));
    EXPECT_TRUE(plot.isDark(x, g.bottom + 4));
    EXPECT_FALSE(plot.isDark(x, g.bottom - 4));
    EXPECT_TRUE(plot.isDark(plot.axis.RPXtoGPX(5), plot.axis.RPYtoGPY(5)));  // the curve
    plot.axis.setFlag(axisTicksInside, 1);
    plot.draw();  // over the first
    EXPECT_TRUE(plot.isDark(x, g.bottom - 4) && plot.isDark(x, g.top + 4));
}

TEST(Plot, ShowsWhatLiesAtTheEndsOfItsRangeWhole)
{
    constexpr COLORREF blue = RGB(0, 0, 255);
    double ends[] = {0, 10};
    double low[] = {0, 0};
    TMinMax range{0, 10, 0, 10, 0, 1};
    const struct {
        int options, width, pixels;  // a line shows so many rows
        int cross;                   // and two crosses so many pixels
    } cases[] = {{0, 0, 1, 26}, {0, 3, 4, 50}, {axisBitmapMode, 0, 1, 14}};
    for (const auto& c : cases) {
        for (const bool points : {false, true}) {
            A2DAxis axis(1, 1, &range, c.options);
            if (points)
                new AGraphXYPoint(&axis, ends, ends, 2, nullptr, graphPointCross, 0, blue, 0);
            else
                new AGraphXYLine(&axis, ends, low, 2, nullptr, PS_SOLID, c.width, blue, 0);
            CPicture picture(600, 400);
            CRect rect(0, 0, 600, 400);
            axis.draw(*picture.dc(), rect);
            int count = 0;
            for (int y = 0; y < 400; ++y)
                count += static_cast<int>(std::count(picture.row(y), picture.row(y) + 600, 0xFF));
            const int along = axis.getGraphRect().Width() + 1;
            const int wanted = points ? c.width ? count : c.cross : c.pixels * along;
            EXPECT_NEAR(count, wanted, c.width * 3) << c.options << " " << c.width << points;
        }
    }
}

TEST(Plot, DrawsAnyRangeIntoAnyRectangle)
{
    std::mt19937_64 random(9);
    const double values[] = {0,       1,      -1,   1e-300, 1e300, -1.7e308,
                             1.7e308, 5e-324, 1e38, 86400,  NAN,   INFINITY};
    const int sizes[] = {1, 2, 31, 64, 600, -5};
    const auto pick = [&random](const auto& from) { return from[random() % std::size(from)]; };
    for (int trial = 0; trial < 300; ++trial) {
        A2DAxis axis(static_cast<int>(random() % 4) - 1, static_cast<int>(random() % 3) - 1,
                     nullptr,
                     static_cast<int>(random() & (axisGridX | axisGridY | axisBitmapMode)));
        axis.setMinMax({pick(values), pick(values), pick(values), pick(values), 0, 1});
        axis.setXIntervals(trial % 10 == 0 ? 2147483647 : 5);
        axis.setNameOX("%s%n%1000d ~");
        CPicture picture(200, 100);
        const auto dc = picture.dc();
        CRect rect(0, 0, pick(sizes), pick(sizes));
        axis.draw(*dc, rect);
    }
}

TEST(Plot, SaysSoWhenItHasNoData)
{
    Plot plot;
    plot.x = {NAN, NAN};
    plot.draw();
    EXPECT_TRUE(plot.axis.isWithoutData());
    plot.x = {1, 2};
    plot.axis.setMinMax(TMinMax());
    plot.draw();
    EXPECT_FALSE(plot.axis.isWithoutData());
}

TEST(Raster, ShowsWhatAPictureShows)
{
    Plot plain;
    plain.draw();
    Plot raster(axisBitmapMode);
    raster.draw();
    ASSERT_NE(raster.axis.dib(), nullptr);
    EXPECT_EQ(raster.axis.dib()->rect(), raster.axis.getGraphRect());
    const CRect g = raster.axis.getGraphRect();
    for (int y = g.top; y <= g.bottom; ++y)
        for (int x = g.left; x <= g.right; ++x)
            ASSERT_EQ(raster.isDark(x, y), plain.isDark(x, y)) << x << " " << y;
}

TEST(RasterCache, SavesDrawingTheGraphsAgain)
{
    std::string file;
    {
        Plot plot(axisBitmapMode | axisBitmapCache);
        plot.draw();
        file = plot.axis.getTempFileName();
        ASSERT_TRUE(IsFileExists(file));
        plot.draw();
        EXPECT_EQ(plot.drawn, 1);
        plot.draw(500, 300);  // another size: drawn and kept anew
        EXPECT_EQ(plot.drawn, 2);
        plot.draw(500, 300);
        EXPECT_EQ(plot.drawn, 2);
        EXPECT_EQ(shown, "");
    }
    EXPECT_FALSE(IsFileExists(file));
}

TEST(RasterCache, ThatCannotBeReadIsReportedAndDrawnAround)
{
    Plot plot(axisBitmapMode | axisBitmapCache);
    plot.draw();
    const std::string file = plot.axis.getTempFileName();
    AFile cut(file, AFile::writeOnly | AFile::create);
    ASSERT_TRUE(cut.write("short", 5) && cut.close());
    plot.draw();
    EXPECT_EQ(plot.drawn, 2);
    EXPECT_NE(shown.find("Error load DIB;"), std::string::npos);
    plot.axis.dropCache();
    EXPECT_FALSE(IsFileExists(file));
    shown.clear();
    plot.axis.setTempFileName("/nonexistent/folder/raster");
    plot.draw();
    EXPECT_EQ(plot.drawn, 3);
    EXPECT_EQ(shown, "Error load DIB;");
    EXPECT_EQ(plot.axis.getTempFileName(), "");  // could not be kept there either
}
