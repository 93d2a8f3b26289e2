#include "pavane/axes/ABAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/AAxisLevelOP.h"
#include "pavane/axes/maps/device_strokes.h"
#include "pavane/images/ADIBase.h"
#include "pavane/images/palettes.h"
#include "platform/picture.h"
#include "test_maps.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>

namespace pavane
{

namespace
{

constexpr float nan = std::numeric_limits<float>::quiet_NaN();

AMatrix<float> mapOf(int rows, int columns, const std::vector<float>& cells)
{
    AMatrix<float> map(rows, columns);
    std::copy_n(cells.data(), map.cells(), map.data());
    return map;
}

/// Colours of the cells as letters: 'a' for the first to 'i' for the last, '.' for blank, ' ' where
/// nothing was drawn; top row first.
std::string asText(const ADIBase& dib)
{
    std::string text;
    for (int y = dib.rect().top; y <= dib.rect().bottom; ++y) {
        for (int x = dib.rect().left; x <= dib.rect().right; ++x) {
            const short index = dib.GetPixel(x, y);
            text += index == 255 ? ' ' : index == 229 ? '.' : static_cast<char>('a' + index / 28);
        }
        text += '\n';
    }
    return text;
}

}  // namespace

TEST(ColorsGraph, ShowsCellsWhereTheAxisHasThemOnBothSignsOfTheStep)
{
    struct Case {
        const char* what;
        int xDirect;
        double first, last;  // of the columns
        const char* picture;
    };
    // row 0 is 0 1 2, row 1 is 3 . 8
    const char* const upright = "dd..iii\ndd..iii\ndd..iii\naabbccc\naabbccc\n";
    const Case cases[] = {
        {"rising to the right", 1, 0, 2, upright},
        {"falling, on a reversed axis", -1, 2, 0, upright},
        {"rising, on a reversed axis", -1, 0, 2, "iii..dd\niii..dd\niii..dd\ncccbbaa\ncccbbaa\n"},
    };
    const AMatrix<float> map = mapOf(2, 3, {0, 1, 2, 3, nan, 8});
    const AFloatMatrixAccess cells(map);
    for (const Case& c : cases) {
        TMinMax centres;
        centres.xMin = c.first;
        centres.xMax = c.last;
        centres.yMin = 10;
        centres.yMax = 11;
        ABAxis axis(c.xDirect, 1, nullptr, axisBitmapMode);
        auto* graph = new AColorsGraph(&axis, cells, centres, 0);
        TMinMax range;
        graph->getMinMax(range);
        EXPECT_EQ(std::min(range.xMin, range.xMax), -0.5);
        EXPECT_EQ(range.yMax, 11.5);
        EXPECT_EQ(range.zMax, 8);
        axis.setMinMax({-0.5, 2.5, 9.5, 11.5, 0, 8});
        // the centres of the outermost pixels lie on the edges of the map
        CRect rect(0, 0, 6, 4);
        axis.setGraphRect(rect);
        auto* dib = new ADIBase(CRect(0, 0, 6, 4));
        *dib = 255;
        axis.SetDib(dib);
        CDC none;
        graph->draw(none, rect, range);
        EXPECT_EQ(asText(*dib), c.picture) << c.what;
    }
}

TEST(ColorsGraph, DrawsTheSameColoursIntoAContextAsIntoARaster)
{
    ASSERT_TRUE(*GetGlobalPalette() || LoadBuiltInPalette());
    const AMatrix<float> map = randomMap(30, 40, 9);
    const AFloatMatrixAccess cells(map);
    const TMinMax centres{39, 0, 0, 29, -3, 3};
    AArray<COLORREF> palette;
    ASSERT_EQ(GetGlobalPaletteColors(0, 256, palette) >= 236, true);
    CPicture picture(100, 80);
    ADIBase raster;
    for (const int options : {static_cast<int>(axisBitmapMode), 0}) {
        ABAxis axis(-1, 1, nullptr, options);
        auto* graph = new AColorsGraph(&axis, cells, centres, 0);
        axis.setMinMax({10, 30.5, -0.5, 29.5, 0, 0});  // a part of the map
        axis.setGraphRect(CRect(10, 10, 90, 70));
        TMinMax range = axis.getMinMax();
        CRect rect(0, 0, 100, 80);
        axis.SetDib(new ADIBase(CRect(10, 10, 90, 70)));
        const auto dc = picture.dc();
        graph->draw(*dc, rect, range);
        if (options) {
            raster = *axis.dib();
            continue;
        }
        for (int y = 10; y <= 70; ++y)
            for (int x = 10; x <= 90; ++x) {
                const COLORREF color = raster.GetPixel(x, y) == 229
                                           ? RGB(192, 192, 192)
                                           : palette(raster.GetPixel(x, y));
                ASSERT_EQ(dc->GetPixel(x, y), color) << x << ", " << y;
            }
        EXPECT_EQ(dc->GetPixel(9, 40), RGB(255, 255, 255));
    }
}

TEST(MapGraphs, AcceptAnyShapeOfMap)
{
    struct Case {
        const char* what;
        AMatrix<float> map;
        int words;
    };
    const Case cases[] = {
        {"constant", mapOf(2, 2, {5, 5, 5, 5}), 0},
        {"one cell", mapOf(1, 1, {-2}), 0},
        {"one row", mapOf(1, 3, {1, 2, 3}), 0},
        {"one column", mapOf(3, 1, {1, 2, 3}), 0},
        {"all blank", mapOf(2, 2, {nan, nan, nan, nan}), 1},
        {"no cells", AMatrix<float>(), 1},
    };
    for (const Case& c : cases)
        for (const int options : {0, static_cast<int>(axisBitmapMode)}) {
            const AFloatMatrixAccess cells(c.map);
            CPicture picture(120, 120);
            const auto dc = picture.dc();
            ABAxis axis(-1, 1, nullptr, options);
            auto* graph = new ALevelsColorGraph(&axis, cells, {3, 3, 3, 3, 0, 0}, 0);
            graph->setBeam({0.1, 0.05, 30});
            TMinMax range;
            graph->getMinMax(range);
            EXPECT_EQ(range.zMin > range.zMax, c.words != 0) << c.what;
            axis.setMinMax({0, 6, 0, 6, 0, 0});
            axis.setFHeight(12);
            CRect rect(10, 10, 110, 110);
            axis.setGraphRect(rect);
            axis.SetDib(new ADIBase(rect));
            graph->draw(*dc, rect, range);
            AAxisColorOP colorBar(*graph);
            AAxisLevelOP levelBar(*graph, 1);
            colorBar.setFHeight(8);
            levelBar.setFHeight(8);
            CRect barRect(112, 10, 120, 110);
            colorBar.draw(*dc, barRect);
            levelBar.draw(*dc, rect);
            // the words leave something near the middle of an otherwise white picture
            std::set<COLORREF> colors;
            for (int x = 20; x < 100; ++x)
                colors.insert(dc->GetPixel(x, 60));
            EXPECT_TRUE(colors.size() > 1 || !c.words || options) << c.what;
        }
}

TEST(LevelsGraph, DashesNegativeLevelsOnly)
{
    for (const float sign : {1.0f, -1.0f}) {
        AMatrix<float> map(21, 21);
        for (int r = 0; r < 21; ++r)
            for (int c = 0; c < 21; ++c)
                map(r, c) = static_cast<float>(r - 10) * sign + 0.0f;
        const AFloatMatrixAccess cells(map);
        ABAxis axis(1, 1, nullptr, axisBitmapMode);
        auto* graph = new ALevelsGraph(&axis, cells, {0, 20, 0, 20, 0, 0}, 0);
        ContourLevels levels;
        ASSERT_TRUE(levels.read(sign > 0 ? "abs:4.5" : "abs:-4.5"));
        graph->contours().setLevels(levels);
        EXPECT_EQ(graph->getNLevels(), 1);
        axis.setMinMax({0, 20, 0, 20, 0, 0});
        axis.setFHeight(10);
        CRect rect(0, 0, 100, 100);
        axis.setGraphRect(rect);
        auto* dib = new ADIBase(rect);
        *dib = 0;
        axis.SetDib(dib);
        CDC none;
        TMinMax range = axis.getMinMax();
        graph->draw(none, rect, range);
        int drawn = 0;
        const int y = 100 - 5 * 29 / 2;  // row 14.5
        for (int x = 0; x <= 100; ++x)
            drawn += dib->GetPixel(x, y) != 0 || dib->GetPixel(x, y - 1) != 0;
        EXPECT_EQ(drawn == 101, sign > 0);
        EXPECT_GT(drawn, 50);
    }
}

TEST(MapContours, DrawLinesThatWereTracedBefore)
{
    AMatrix<float> map(9, 9);
    for (int i = 0; i < 81; ++i)
        map.data()[i] = static_cast<float>(i / 9);
    const AFloatMatrixAccess cells(map);
    ABAxis axis(1, 1, nullptr, 0);
    auto& graph = *new ALevelsGraph(&axis, cells, {0, 8, 0, 8, 0, 0}, 0);
    CRect rect(0, 0, 80, 80);
    axis.setMinMax({0, 8, 0, 8, 0, 0});
    axis.setFHeight(10);
    axis.setGraphRect(rect);
    const ContourLevels levels{LevelUnit::absolute, {3.5}};
    ContourLines lines;
    ASSERT_TRUE(lines.trace(cells, {5.5}));
    const struct {
        std::function<void(MapContours&)> give;
        int row;  ///< of the line, 0 for none
        const char* note;
    } cases[] = {{[](MapContours&) {}, 45, ""},
                 {[&](MapContours& c) { c.setLines(lines, 1); }, 25, ""},
                 {[](MapContours& c) { c.setLines({}, 1, "given up"); }, 0, "given up"},
                 {[&](MapContours& c) { c.setLevels(levels); }, 45, ""}};
    for (const auto& c : cases) {
        graph.contours().setLevels(levels);
        c.give(graph.contours());
        CPicture picture(81, 81);
        const auto dc = picture.dc();
        dc->FillSolidRect(CRect(0, 0, 81, 81), RGB(255, 255, 255));
        TMinMax range = axis.getMinMax();
        graph.draw(*dc, rect, range);
        EXPECT_EQ(graph.contours().leftOutText(), c.note);
        for (const int row : {25, 45})
            EXPECT_EQ(dc->GetPixel(70, row) != RGB(255, 255, 255), row == c.row) << row;
    }
}

TEST(ContourLevels, ReadListsAndTurnThemIntoValues)
{
    struct Case {
        const char* text;
        std::vector<double> values;  // for a peak of 2 and a noise of 0.1; empty: not a list
    };
    const Case cases[] = {
        {"peak:-1,1,50", {-0.02, 0.02, 1}},
        {"sigma:3,-3, 6", {-0.3, 0.3, 0.6}},
        {"abs:0.5,0.5,0.1", {0.1, 0.5}},
        {"abs:", {}},
        {"abs:1,,2", {}},
        {"abs:1,nan", {}},
        {"sigma:3;6", {}},
        {"levels:1", {}},
        {"1,2,3", {}},
        {"", {}},
    };
    for (const Case& c : cases) {
        ContourLevels levels;
        ASSERT_EQ(levels.read(c.text), !c.values.empty()) << c.text;
        const std::vector<double> values = levels.values(2, 0.1);
        for (std::size_t i = 0; i < c.values.size(); ++i)
            EXPECT_NEAR(values.at(i), c.values[i], 1e-15) << c.text;
    }
    const std::vector<double> chosen{-0.3, 0.3, 0.6, 1.2};
    const std::vector<double> made = ContourLevels().values(2, 0.1);
    ASSERT_EQ(made.size(), chosen.size());
    for (std::size_t i = 0; i < made.size(); ++i)
        EXPECT_NEAR(made[i], chosen[i], 1e-12);
    EXPECT_EQ(ContourLevels().values(2, 0).size(), 8u);
    for (const double peak : {0.3, 0.2, -1.0}) {  // not above 3 times the noise
        EXPECT_EQ(ContourLevels().values(peak, 0.1), (std::vector<double>{-3 * 0.1, 3 * 0.1}));
        EXPECT_TRUE(ContourLevels().isAbovePeak(peak, 0.1));
    }
    EXPECT_FALSE(ContourLevels().isAbovePeak(2, 0.1) || ContourLevels().isAbovePeak(0.2, 0));
}

TEST(ScaleTicks, LieWhereTheScaleHasTheirValues)
{
    struct Case {
        MapScaleKind kind;
        double low, high;
        const char* labels;
        double second;  // position of the second tick
    };
    const Case cases[] = {
        {MapScaleKind::linear, 0, 1, "0.0 0.2 0.4 0.6 0.8 1.0", 0.2},
        {MapScaleKind::squareRoot, 0, 1, "0.0 0.2 0.4 0.6 0.8 1.0", std::sqrt(0.2)},
        {MapScaleKind::logarithmic, 1e-6, 1e-3, "0.001 0.01 0.1 1", 1.0 / 3},
        {MapScaleKind::logarithmic, 0.01, 0.1, "0.01 0.02 0.05 0.1", std::log10(2.0)},
    };
    for (const Case& c : cases) {
        const ScaleTicks ticks = scaleTicks(MapScale(c.kind, c.low, c.high), "I [%sJy]", 5);
        std::string labels;
        for (const ScaleTick& tick : ticks.ticks)
            labels += (labels.empty() ? "" : " ") + tick.label;
        EXPECT_EQ(labels, c.labels);
        EXPECT_NEAR(ticks.ticks.at(1).position, c.second, 1e-9);
        EXPECT_EQ(ticks.title, c.high < 0.01 ? "I [mJy]" : "I [Jy]");
    }
    // a power stands before the unit, and nothing before a title without one
    for (const auto& [high, title] :
         {std::pair(1.0, "[km/s]"), {1e-5, "\u20221e-05 [km/s]"}, {1e5, "\u2022100000 [km/s]"}})
        EXPECT_EQ(scaleTicks(MapScale(MapScaleKind::linear, 0, high), "~ [km/s]", 5).title, title);
}

TEST(BeamMark, TurnsFromNorthThroughEastWithEastAtTheLeft)
{
    const std::vector<CPointF> outline = beamOutline(
        {
            4,
            2,
            90 - 30,
        },
        10, 10, 360);
    EXPECT_NEAR(outline[0].x, -20 * std::sin(M_PI / 3), 1e-9);  // half of 4 in units of 10
    EXPECT_NEAR(outline[0].y, 20 * std::cos(M_PI / 3), 1e-9);
    EXPECT_NEAR(std::hypot(outline[90].x, outline[90].y), 10, 1e-9);
}

}  // namespace pavane
