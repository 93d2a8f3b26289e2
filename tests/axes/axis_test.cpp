#include "pavane/axes/ABAxis.h"
#include "pavane/axes/AGraphXYPoint.h"

#include "pavane/images/ADIBase.h"
#include "platform/picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using namespace pavane;

namespace
{

/// An axis whose set-up steps a test may call.
class OpenAxis : public ABAxis
{
public:
    using ABAxis::ABAxis;
    using ABAxis::createMinMax;
    using ABAxis::setUpLogMnMx;
    using ABAxis::setUpParameters;
};

class FixedGraph : public AGraph
{
public:
    FixedGraph(ABAxis* axis, const TMinMax& range, int* deleted = nullptr)
        : AGraph(axis, 0), range_(range), deleted_(deleted)
    {
    }
    ~FixedGraph() override
    {
        if (deleted_)
            ++*deleted_;
    }
    void getMinMax(TMinMax& range) const override { range = range_; }
    int hasHeaderText(int index) const override { return index == 1; }
    CString getHeaderText(int) const override { return "%s;"; }
    void draw(CDC&, CRect&, TMinMax&) override { drawnIn = axis()->getGraphRect(); }

    CRect drawnIn;

private:
    TMinMax range_;
    int* deleted_;
};

OpenAxis axisOver(const TMinMax& range, int xDirect = 1, int yDirect = 1)
{
    TMinMax copy = range;
    OpenAxis axis(xDirect, yDirect, &copy, 0);
    axis.setGraphRect(CRect(100, 50, 300, 150));
    return axis;
}

/// The marked pixels of a raster or picture as text.
template <typename IsSet>
std::string picture(int width, int height, IsSet isSet)
{
    std::string text;
    for (int y = 0; y < height; ++y, text += '\n')
        for (int x = 0; x < width; ++x)
            text += isSet(x, y) ? '#' : '.';
    return text;
}

}  // namespace

TEST(Conversions, GoBetweenValuesFractionsAndPixels)
{
    const TMinMax range{0, 10, -1, 1, 5, 7};
    const OpenAxis axis = axisOver(range);
    EXPECT_EQ(axis.RPXtoGPX(2.5), 150);
    EXPECT_EQ(axis.RPYtoGPY(-1), 150);
    EXPECT_EQ(axis.RPYtoGPY(0.5), 75);
    EXPECT_EQ(axis.RPXtoGPX(-0.04), 100);  // 0.8 pixels outside, drawn on the edge
    EXPECT_EQ(axis.RPXtoGPX(-0.1), 99);
    EXPECT_DOUBLE_EQ(axis.GPXtoRPX(200), 5);
    EXPECT_DOUBLE_EQ(axis.GPYtoRPY(50), 1);
    EXPECT_DOUBLE_EQ(axis.RPZtoWPZ(5.5), 0.25);
    EXPECT_EQ(axis.RPtoGPF(0.01, 0), (CPointF{100.2, 100}));

    const OpenAxis reversed = axisOver(range, -1, -1);
    EXPECT_EQ(reversed.RPXtoGPX(0), 300);
    EXPECT_EQ(reversed.RPXtoGPX(10), 100);
    EXPECT_DOUBLE_EQ(reversed.GPXtoRPX(300), 0);
    EXPECT_DOUBLE_EQ(reversed.GPYtoWPY(75), 0.25);
}

TEST(Conversions, FollowTheLogarithmInLogarithmicDirections)
{
    OpenAxis axis = axisOver({1, 100, 0, 10}, 0, 0);
    axis.setUpParameters();
    EXPECT_EQ(axis.getXDirect(), 0);
    EXPECT_EQ(axis.getYDirect(), 1);  // reaches 0: linear for good
    EXPECT_EQ(axis.RPXtoGPX(10), 200);
    EXPECT_DOUBLE_EQ(axis.GPXtoRPX(300), 100);
    EXPECT_EQ(axis.RPXtoGPX(-1), 100);  // no logarithm
    axis.setMinMax({1, 1e4, 1, 10});
    axis.setUpParameters();
    EXPECT_EQ(axis.RPXtoGPX(100), 200);  // new range, new logarithms
    EXPECT_EQ(axis.getYDirect(), 1);
}

TEST(Conversions, SaturateWithoutSpanOrRectangle)
{
    OpenAxis flat = axisOver({3, 3, 0, 1});
    EXPECT_EQ(flat.RPXtoGPX(3), 100);
    EXPECT_EQ(flat.RPXtoGPX(4), 100 + (1 << 30));
    EXPECT_EQ(flat.RPXtoGPX(std::numeric_limits<double>::quiet_NaN()), 100);
    flat.setGraphRect(CRect(5, 5, 5, 5));
    EXPECT_TRUE(std::isnan(flat.GPXtoWPX(5)));
    EXPECT_EQ(flat.RPYtoGPY(-1e300), 5);
}

TEST(Range, IsGatheredFromTheGraphsAndRepaired)
{
    OpenAxis axis(1, 1, nullptr, 0);
    new FixedGraph(&axis, {3, 1, -2, -2, 0, 0});  // a reversed range is tolerated
    new FixedGraph(&axis, {2, 5, std::nan(""), -2, 0, 0});
    new FixedGraph(&axis, TMinMax());  // nothing to show
    EXPECT_EQ(axis.createMinMax(), (TMinMax{1, 5, -3, -1, -1, 1}));
    EXPECT_EQ(axis.getHeaderString(1), "%s;%s;%s;");

    OpenAxis set = axisOver({0, 1, 4, 2, 7, 7});
    new FixedGraph(&set, {0, 100, 0, 100});
    EXPECT_EQ(set.createMinMax(), (TMinMax{0, 1, 2, 4, 3.5, 10.5}));
}

TEST(Range, TakesEndsThatAreNotFiniteFromTheGraphs)
{
    constexpr double inf = std::numeric_limits<double>::infinity();
    const struct {
        TMinMax asked, made;
    } cases[] = {
        {{2, inf, -inf, 4, 0, 1}, {2, 5, -3, 4, 0, 1}},
        {{-inf, NAN, NAN, NAN, -inf, inf}, {1, 5, -3, -1, -1, 1}},
        {{8, inf, -inf, -20, 0, 1}, {4, 12, -30, -10, 0, 1}},  // all data lies below
        {{0, 1, 1e38, -1e38, NAN, 1}, {0, 1, -3, -1, 0, 1}},
    };
    for (const auto& c : cases) {
        OpenAxis axis = axisOver(c.asked);
        new FixedGraph(&axis, {1, 5, -3, -1, 0, 0});
        EXPECT_EQ(axis.createMinMax(), c.made);
        OpenAxis empty = axisOver(c.asked, 0, 0);
        empty.setUpParameters();
        EXPECT_TRUE(std::isfinite(empty.RPXtoWPX(3)));
    }
}

TEST(AxisCopy, HasItsOwnRasterSharesGraphsAndHasNoFile)
{
    int deleted = 0, deletedByCopy = 0;
    CRect rect;
    TMinMax range;
    {
        OpenAxis axis = axisOver({0, 1, 0, 1});
        new FixedGraph(&axis, {0, 1, 0, 1}, &deleted);
        axis.SetDib(new ADIBase(CRect(0, 0, 3, 3)));
        axis.setTempFileName("/nonexistent/raster");
        axis.setNameOX("x");
        {
            OpenAxis copy(axis);
            EXPECT_NE(copy.dib(), axis.dib());
            EXPECT_EQ(copy.dib()->width(), 4);
            EXPECT_EQ(copy.childs()(0), axis.childs()(0));
            EXPECT_EQ(copy.getTempFileName(), "");
            EXPECT_EQ(copy.getNameOX(), "x");
            copy = axis;
            EXPECT_EQ(copy.childs().count(), 1);
            new FixedGraph(&copy, {0, 1, 0, 1}, &deletedByCopy);
            OpenAxis third(copy);
            EXPECT_EQ(third.childs().count(), 2);
            third.setGraphRect(CRect(0, 0, 7, 7));
            third.drawChilds(*CPicture(1, 1).dc(), rect, range);
            for (int i = 0; i < 2; ++i)
                EXPECT_EQ(static_cast<FixedGraph*>(third.childs()(i))->drawnIn, CRect(0, 0, 7, 7));
            EXPECT_EQ(axis.childs()(0)->axis(), &axis);
            EXPECT_EQ(deletedByCopy, 0);
        }
        EXPECT_EQ(deletedByCopy, 1);
        EXPECT_EQ(deleted, 0);
        OpenAxis owner = axisOver({0, 1, 0, 1});
        new FixedGraph(&owner, {0, 1, 0, 1}, &deleted);
        owner = axis;  // its own graph goes
        EXPECT_EQ(deleted, 1);
    }
    EXPECT_EQ(deleted, 2);
}

TEST(WorkColors, ComeFromTheTableOrThePalette)
{
    ABAxis axis(1, 1, nullptr, 0);
    EXPECT_EQ(axis.workColor(4), 0x00FFFFU);
    HPALETTE palette = nullptr;
    axis.setPalette(&palette);
    EXPECT_EQ(axis.workColor(1), 0x010000E3U);
    EXPECT_EQ(axis.paletteIndex(0x010000E3U), 227);
    EXPECT_EQ(axis.paletteIndex(0x0000FF), 233);
    const PALETTEENTRY colors[] = {{255, 255, 255, 0}, {0, 200, 0, 0}, {20, 0, 0, 0}};
    palette = CreatePalette(colors, 3);
    EXPECT_EQ(axis.paletteIndex(RGB(1, 0, 0)), 2);  // a colour, not an index
    axis.setFlag(axisBitmapMode, 1);
    axis.SetDib(new ADIBase(CRect(0, 0, 8, 8)));
    for (int i = 0; i < 2; ++i) {
        double at = 0.5;
        *axis.dib() = short{0};
        axis.setGraphRect(CRect(0, 0, 8, 8));
        axis.setMinMax({0, 1, 0, 1, 0, 1});
        AGraphXYPoint dot(nullptr, &at, &at, 1, nullptr, 0, 0, RGB(1, 0, 0), 0);
        CPicture picture(9, 9);
        CRect rect(0, 0, 9, 9);
        if (i == 0)
            axis.point(4, 4, 1);  // a marker by index
        else
            dot.drawIn(axis, *picture.dc(), rect, axis.getMinMax());
        EXPECT_EQ(axis.dib()->GetPixel(4, 4), 1 + i);
    }
    DeletePalette(palette);
}

TEST(Markers, CoverTheSamePixelsInRasterAndPicture)
{
    const struct {
        void (ABAxis::*mark)(const int&, const int&, const unsigned long&);
        const char* text;
    } cases[] = {
        {&ABAxis::pointCross, "...#...\n...#...\n...#...\n#######\n...#...\n...#...\n...#...\n"},
        {&ABAxis::pointCrossInv, "#.....#\n.#...#.\n..#.#..\n...#...\n..#.#..\n.#...#.\n#.....#\n"},
        {&ABAxis::pointBar, "..###..\n..###..\n..###..\n..###..\n..###..\n..###..\n..###..\n"},
        {&ABAxis::point, ".......\n.......\n..###..\n..###..\n..###..\n.......\n.......\n"},
    };
    for (const auto& c : cases) {
        ABAxis axis(1, 1, nullptr, axisBitmapMode);
        axis.setFHeight(16);  // crosses reach 3 pixels to each side
        axis.SetDib(new ADIBase(CRect(0, 0, 6, 6)));
        *axis.dib() = short{0};
        axis.setColor(axis.workColor(8));
        axis.setLineStyle(PS_DOT);
        (axis.*c.mark)(3, 3, 5UL);
        EXPECT_EQ(picture(7, 7, [&](int x, int y) { return axis.dib()->GetPixel(x, y) == 5; }),
                  c.text);
        EXPECT_EQ(axis.dib()->GetColor(), 234);  // the pen of the lines is as it was

        CPicture canvas(7, 7);
        const auto dc = canvas.dc();
        axis.setFlag(axisBitmapMode, 0);
        axis.setDc(dc.get());
        (axis.*c.mark)(3, 3, 0xFF0000UL);
        EXPECT_EQ(picture(7, 7, [&](int x, int y) { return canvas.row(y)[x] == 0x0000FF; }),
                  c.text);
    }
}

TEST(Lines, LeaveTheEndPixelToLineV)
{
    CPicture canvas(6, 2);
    const auto dc = canvas.dc();
    ABAxis axis(1, 1, nullptr, 0);
    axis.line(0, 0, 3, 0);  // without a context nothing happens
    axis.setDc(dc.get());
    axis.setColor(0);
    axis.line(0, 0, 3, 0);
    axis.lineV(0, 1, 3, 1);
    EXPECT_EQ(picture(6, 2, [&](int x, int y) { return canvas.row(y)[x] == 0; }),
              "###...\n####..\n");
}

TEST(FontHeight, FollowsThePictureUpToTheDeviceFont)
{
    CPicture canvas(4, 4);
    const auto dc = canvas.dc();
    const ABAxis axis(1, 1, nullptr, 0);
    CRect flat(0, 0, 900, 200);
    EXPECT_EQ(axis.calcFontHeight(*dc, flat), 8);  // 240 / 30
    CRect large(0, 0, 3000, 3000);
    EXPECT_EQ(axis.calcFontHeight(*dc, large), 20);  // 1.25 times a device font of 16
}
