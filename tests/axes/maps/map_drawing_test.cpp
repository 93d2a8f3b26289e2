#include "pavane/axes/ABAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/AAxisLevelOP.h"
#include "pavane/axes/maps/device_strokes.h"
#include "pavane/images/ADIBase.h"
#include "platform/picture.h"
#include "test_maps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>

namespace pavane
{

namespace
{

/// A map in an axis, drawn into a picture.
struct Plot {
    AMatrix<float> map;
    AFloatMatrixAccess cells{map};
    ABAxis axis;
    CPicture picture{200, 200};
    CRect rect{20, 20, 180, 180};

    Plot(AMatrix<float> matrix, int options = 0)
        : map(std::move(matrix)), axis(-1, 1, nullptr, options)
    {
        axis.setGraphRect(rect);
        axis.setFHeight(12);
    }
    TMinMax centres() const
    {
        return {map.columns() - 1.0, 0, 0, map.rows() - 1.0, unsetMinimum, unsetMaximum};
    }
    void draw(ABMapGraph& graph) { draw(graph, *picture.dc()); }
    void draw(ABMapGraph& graph, CDC& dc)
    {
        TMinMax range;
        graph.getMinMax(range);
        std::swap(range.xMin, range.xMax);
        axis.setMinMax(range);
        graph.draw(dc, rect, range);
    }
    int inked(const CRect& part)
    {
        int count = 0;
        for (int y = part.top; y < part.bottom; ++y)
            count += static_cast<int>(std::count_if(picture.row(y) + part.left,
                                                    picture.row(y) + part.right,
                                                    [](std::uint32_t p) { return p != 0xFFFFFF; }));
        return count;
    }
};

AMatrix<float> gradient(int rows, int columns)
{
    AMatrix<float> map(rows, columns);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c)
            map(r, c) = static_cast<float>(c);
    return map;
}

/// The pixels of one row of a raster: '#' where something was drawn.
std::string rowText(const ADIBase& dib, int y)
{
    std::string text;
    for (int x = dib.rect().left; x <= dib.rect().right; ++x)
        text += dib.GetPixel(x, y) ? '#' : '.';
    return text;
}

}  // namespace

TEST(DeviceStrokes, CarryDashesOnAcrossTheJointsOfALine)
{
    struct Case {
        const char* what;
        std::vector<CPointF> points;
        const char* row;
    };
    const Case cases[] = {
        {"one stretch", {{0, 1}, {19, 1}}, "#####..#####..#####."},
        {"the same in short steps",
         {{0, 1}, {1, 1}, {2, 1}, {9, 1}, {9, 1}, {12, 1}, {19, 1}},
         "#####..#####..#####."},
        {"shorter than a dash", {{3, 1}, {5, 1}}, "...###.............."},
        {"a single point", {{3, 1}}, "...................."},
    };
    for (const Case& c : cases) {
        ABAxis axis(1, 1, nullptr, axisBitmapMode);
        auto* dib = new ADIBase(CRect(0, 0, 19, 2));
        *dib = 0;
        axis.SetDib(dib);
        CDC none;
        {
            DeviceStrokes strokes(none, axis, RGB(255, 0, 0), 1);
            strokes.dashes(c.points.data(), static_cast<int>(c.points.size()), 4, 3);
        }
        EXPECT_EQ(rowText(*dib, 1), c.row) << c.what;
        EXPECT_EQ(rowText(*dib, 0), "....................");
        EXPECT_EQ(axis.getColor(), RGB(0, 0, 0));
    }
}

TEST(MapGraphs, DrawTheBeamInTheLowerLeftCornerUnlessItIsTooLarge)
{
    AMatrix<float> flat(40, 40);
    flat.fill(1);
    for (const int options : {0, static_cast<int>(axisBitmapMode)})
        for (const double size : {6.0, 30.0}) {
            Plot plot(flat, options);
            auto* graph = new ALevelsGraph(&plot.axis, plot.cells, plot.centres(), 0);
            graph->setBeam({size, size / 2, 45});
            auto* dib = new ADIBase(plot.rect);
            *dib = 226;
            plot.axis.SetDib(dib);
            plot.draw(*graph);
            if (options) {
                EXPECT_EQ(dib->GetPixel(24, 175) != 226, size < 10);
                EXPECT_EQ(dib->GetPixel(100, 60), 226);
                continue;
            }
            EXPECT_EQ(plot.inked(CRect(20, 100, 100, 180)) > 50, size < 10);
            EXPECT_EQ(plot.inked(CRect(100, 20, 180, 180)), 0);
        }
}

TEST(MapGraphs, NoticeChangedCellsOnlyWhenTold)
{
    Plot plot(gradient(4, 4));
    auto* graph = new ALevelsColorGraph(&plot.axis, plot.cells, plot.centres(), 0);
    EXPECT_EQ(graph->zRange().max, 3);
    plot.map(1, 1) = 70;
    EXPECT_EQ(graph->zRange().max, 3);
    graph->cellsChanged();
    EXPECT_EQ(graph->zRange().max, 70);
    EXPECT_EQ(graph->scale().high(), 70);
    EXPECT_EQ(graph->cellRange().peakRow, 1);
    TMinMax chosen = plot.centres();
    chosen.zMin = 1;
    chosen.zMax = 2;
    graph->setCentres(chosen);
    EXPECT_EQ(graph->scale().high(), 2);
}

TEST(MapGraphs, TellTheirTitlesAndHeaderLines)
{
    Plot plot(gradient(2, 2));
    auto* graph = new AColorsGraph(&plot.axis, plot.cells, plot.centres(), 0);
    graph->setNames("x", "y", "%n [%sJy]");
    graph->setHeaderText(0, "3C %s%n");
    graph->setHeaderText(-1, "nowhere");
    EXPECT_EQ(graph->GetOZName(), "%n [%sJy]");
    EXPECT_TRUE(graph->hasHeaderText(0));
    EXPECT_FALSE(graph->hasHeaderText(1) || graph->hasHeaderText(-1));
    EXPECT_EQ(plot.axis.getHeaderString(0), "3C %s%n");
}

TEST(ColorsGraph, SpreadsItsOwnColoursOverTheMap)
{
    Plot plot(gradient(3, 8));
    auto* graph = new AColorsGraph(&plot.axis, plot.cells, plot.centres(), 0);
    AArray<COLORREF> colors;
    colors.Add(RGB(1, 2, 3));
    colors.Add(RGB(4, 5, 6));
    graph->setColors(colors);
    plot.draw(*graph);
    EXPECT_EQ(graph->mapColor(112), RGB(1, 2, 3));
    EXPECT_EQ(graph->mapColor(113), RGB(4, 5, 6));
    const auto dc = plot.picture.dc();
    EXPECT_EQ(dc->GetPixel(30, 100), RGB(1, 2, 3));
    EXPECT_EQ(dc->GetPixel(170, 100), RGB(4, 5, 6));
}

TEST(ColorsGraph, StartsALogarithmicScaleAtTheNoise)
{
    AMatrix<float> map = randomMap(50, 50, 4, 0);
    map(25, 25) = 1000;
    Plot plot(map);
    auto* graph = new AColorsGraph(&plot.axis, plot.cells, plot.centres(), 0);
    graph->setScale(MapScaleKind::logarithmic);
    EXPECT_NEAR(graph->scale().low(), 2, 0.6);  // the noise has a width of 2
    EXPECT_EQ(graph->scale().high(), 1000);
}

TEST(MapGraphs, DrawContoursAsWideOnPagesOfAnyUnit)
{
    Plot plot(gradient(8, 8));
    auto* graph = new ALevelsGraph(&plot.axis, plot.cells, plot.centres(), 0);
    ContourLevels levels;
    ASSERT_TRUE(levels.read("abs:2,5"));
    graph->contours().setLevels(levels);
    graph->contours().setWidth(2);
    const CString file = ::testing::TempDir() + "contours.svg";
    for (const int unit : {1, 12}) {
        CPageFile page(CPageFile::Format::svg, 200, 200, "", unit);
        plot.draw(*graph, page.dc());
        CString error;
        ASSERT_TRUE(page.Close(file, error)) << error;
        std::ifstream in(file);
        const std::string text(std::istreambuf_iterator<char>(in), {});
        EXPECT_NE(text.find("stroke-width=\"" + std::to_string(2 * unit) + '"'), text.npos) << text;
    }
}

TEST(ScaleBars, PutTicksBesideTheirValuesAndKeepLabelsApart)
{
    Plot plot(gradient(3, 101));
    auto* graph = new ALevelsColorGraph(&plot.axis, plot.cells, plot.centres(), 0);
    graph->setNames("", "", "[%sJy]");
    ContourLevels levels;
    ASSERT_TRUE(levels.read("abs:-20,20,50,90"));
    graph->contours().setLevels(levels);
    for (const int horizontal : {0, 1}) {
        const auto dc = plot.picture.dc();
        AAxisColorOP colors(*graph, horizontal);
        AAxisLevelOP marks(*graph, horizontal);
        for (AAxisScaleBar* bar :
             {static_cast<AAxisScaleBar*>(&colors), static_cast<AAxisScaleBar*>(&marks)}) {
            bar->setFHeight(10);
            dc->FillSolidRect(CRect(0, 0, 200, 200), RGB(255, 255, 255));
            CRect rect(20, 20, 180, 180);
            bar->draw(*dc, rect);
            EXPECT_GT(bar->neededBreadth(*dc, 160), 20);
            EXPECT_LT(bar->neededBreadth(*dc, 160), 80);
            // nothing reaches beyond the room asked for
            const int end = 20 + bar->neededBreadth(*dc, 160) + 2;
            EXPECT_EQ(plot.inked(horizontal ? CRect(0, end, 200, 200) : CRect(end, 0, 200, 200)),
                      0);
        }
        colors.draw(*dc, plot.rect);
        // the tick of 0, where the range starts, just outside the frame
        EXPECT_EQ(horizontal ? dc->GetPixel(20, 32) : dc->GetPixel(32, 180), RGB(0, 0, 0));
    }
}

TEST(ScaleTicks, RoundTheValuesOfAnEqualizedScaleAsFarAsTheirNeighboursAllow)
{
    const AMatrix<float> map = randomMap(80, 80, 2);
    MapScale scale(MapScaleKind::equalized, -8, 100);
    ASSERT_TRUE(scale.equalize(AFloatMatrixAccess(map)));
    const ScaleTicks ticks = scaleTicks(scale, "I", 6);
    ASSERT_GE(ticks.ticks.size(), 4u);
    for (std::size_t i = 1; i < ticks.ticks.size(); ++i) {
        EXPECT_GT(ticks.ticks[i].value, ticks.ticks[i - 1].value);
        EXPECT_LT(ticks.ticks[i].label.size(), 7u) << ticks.ticks[i].label;
    }
}

}  // namespace pavane
