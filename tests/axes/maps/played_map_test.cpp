#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapFigure.h"
#include "pavane/images/ADIBase.h"
#include "pavane/images/palettes.h"
#include "platform/picture.h"
#include "test_maps.h"

#include <cstring>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

/// A map with its axis, bar and figure.
struct Plot {
    explicit Plot(const AMatrix<float>& map, int options = 0)
        : cells(map), axis(-1, 1, nullptr, options),
          graph(new ALevelsColorGraph(&axis, cells, centresOf(map), 0)), bar(*graph)
    {
        graph->setShownOften(1);
        figure.setAxis(&axis);
        figure.setMap(graph);
        figure.setBar(&bar);
    }
    static TMinMax centresOf(const AMatrix<float>& map)
    {
        TMinMax centres;
        centres.xMin = map.columns() * 0.5;
        centres.xMax = -map.columns() * 0.5;
        centres.yMin = 0;
        centres.yMax = map.rows();
        return centres;
    }
    std::string pixels(CSize size = {320, 240})
    {
        CPicture picture(size.cx, size.cy);
        const auto dc = picture.dc();
        figure.draw(*dc, figure.layOut(*dc, CRect(0, 0, size.cx, size.cy)));
        std::string text;
        for (int y = 0; y < size.cy; ++y)
            for (int x = 0; x < size.cx; ++x) {
                const COLORREF c = dc->GetPixel(x, y);
                text.append(reinterpret_cast<const char*>(&c), sizeof c);
            }
        return text;
    }
    void setRange(double low, double high)
    {
        TMinMax centres = graph->centres();
        centres.zMin = low;
        centres.zMax = high;
        graph->setCentres(centres);
    }

    AFloatMatrixAccess cells;
    A2DAxis axis;
    ALevelsColorGraph* graph;
    AAxisColorOP bar;
    MapFigure figure;
};

constexpr AColorPlay plays[] = {
    {2, 0.3, 1, 0}, {1, 0.5, 1, 1}, {-3, 0.7, 0.5, 0}, {0, 0, 1, 0}, {1, 0.5, 1, 0}};

}  // namespace

TEST(PlayedMap, LooksLikeOneDrawnAfresh)
{
    LoadBuiltInPalette();
    const AMatrix<float> map = randomMap(70, 90, 1);
    for (const int options : {0, static_cast<int>(axisBitmapMode)}) {
        Plot used(map, options);
        const std::string before = used.pixels();
        int step = 0;
        for (const AColorPlay& play : plays) {
            SCOPED_TRACE(++step);
            Plot fresh(map, options);
            ASSERT_TRUE(fresh.graph->SetColorPlay(play));
            ASSERT_TRUE(used.graph->SetColorPlay(play));
            EXPECT_EQ(used.pixels(), fresh.pixels());
            EXPECT_EQ(used.pixels() == before, play.isNeutral() != 0);
            // another range, scale, size and page by turns; each has to leave nothing behind
            for (Plot* const plot : {&used, &fresh}) {
                plot->setRange(-1 + step, 2 + step);
                plot->graph->setScale(step % 2 ? MapScaleKind::squareRoot : MapScaleKind::linear);
            }
            EXPECT_EQ(used.pixels(), fresh.pixels());
            EXPECT_EQ(used.pixels({200, 260}), fresh.pixels({200, 260}));
            used.setRange(unsetMinimum, unsetMaximum);
            used.graph->setScale(MapScaleKind::linear);
        }
        EXPECT_EQ(used.pixels(), before);
        EXPECT_FALSE(used.graph->SetColorPlay({std::nan(""), 0.5, 1, 0}));
        EXPECT_TRUE(used.graph->GetColorPlay().isNeutral());
    }
}

TEST(PlayedMap, LeavesTheModuleAndOtherMapsAlone)
{
    LoadBuiltInPalette();
    AArray<COLORREF> module, after;
    GetGlobalPaletteColors(0, 226, module);
    const AMatrix<float> map = randomMap(30, 40, 2);
    Plot played(map, axisBitmapMode), other(map, axisBitmapMode);
    const std::string plain = other.pixels();
    EXPECT_EQ(played.axis.getPalette(), nullptr);
    EXPECT_EQ(played.pixels(), plain);
    EXPECT_TRUE(played.axis.hasPaletteOfColors());
    const AColorPlay inverted{1, 0.5, 1, 1};
    ASSERT_TRUE(played.graph->SetColorPlay(inverted));
    EXPECT_FALSE(played.axis.hasPaletteOfColors());
    const std::string turned = played.pixels();
    EXPECT_NE(turned, plain);
    EXPECT_EQ(played.axis.dib()->GetPixel(played.axis.getGraphRect().left, 100),
              other.axis.dib()->GetPixel(other.axis.getGraphRect().left, 100));
    EXPECT_EQ(other.pixels(), plain);
    GetGlobalPaletteColors(0, 226, after);
    EXPECT_EQ(std::memcmp(module.lpArray(), after.lpArray(), 226 * sizeof(COLORREF)), 0);
    // another palette of the module goes through the play where it is followed; an own one of the
    // map stays
    ASSERT_TRUE(LoadPalette("grey"));
    EXPECT_EQ(played.pixels(), turned);
    played.figure.followModule();
    Plot grey(map, axisBitmapMode);
    ASSERT_TRUE(grey.graph->SetColorPlay(inverted));
    EXPECT_EQ(played.pixels(), grey.pixels());
    grey.graph->setColors(module);
    EXPECT_EQ(grey.pixels(), turned);
    LoadBuiltInPalette();
    for (const Plot* const plot : {&grey, &played})
        plot->figure.followModule();
    EXPECT_EQ(grey.pixels(), turned);
    EXPECT_EQ(played.pixels(), turned);
    // a copy of an axis shows what the axis shows
    A2DAxis copy(played.axis);
    CPicture picture(200, 150);
    const auto dc = picture.dc();
    CRect rect(0, 0, 200, 150);
    copy.draw(*dc, rect);
    EXPECT_EQ(copy.getPalette(), played.axis.getPalette());
}

// Pictures of several threads and a host that sets the module's values meanwhile.
TEST(PlayedMap, KeepsWhatTheModuleHadWhenItWasMade)
{
    const AMatrix<float> map = randomMap(30, 40, 4);
    SharedPalette heat;
    ASSERT_TRUE(ReadPalette("heat", heat));
    for (const int options : {0, static_cast<int>(axisBitmapMode)}) {
        SCOPED_TRACE(options);
        LoadBuiltInPalette();
        Plot kept(map, options), own(map, options), follower(map, options);
        const std::string before = kept.pixels();
        ASSERT_TRUE(LoadPalette("heat"));
        SetPartFontHeight(12);
        SetPartCrossHeight(3);
        Plot later(map, options);
        EXPECT_EQ(kept.pixels(), before);
        follower.figure.followModule();
        EXPECT_EQ(follower.pixels(), later.pixels());
        EXPECT_NE(follower.pixels(), before);
        own.axis.setPaletteColors(heat);
        own.axis.setParts(GetAxisParts());
        own.bar.setParts(GetAxisParts());
        SetPartFontHeight(30);
        SetPartCrossHeight(6);
        LoadBuiltInPalette();
        own.figure.followModule();
        EXPECT_EQ(own.pixels(), later.pixels());
        own.axis.setPaletteColors(nullptr);
        own.axis.setParts(AxisParts());
        own.bar.setParts(AxisParts());
        EXPECT_EQ(own.pixels(), before);
    }
}

TEST(PlayedMap, ContoursKeepTheirColoursWhileADragGoesOn)
{
    LoadBuiltInPalette();
    const AMatrix<float> map = randomMap(30, 40, 3);
    Plot plot(map);
    const double high = plot.graph->zRange().max;
    const MapContours& contours = plot.graph->contours();
    const COLORREF before = contours.color(high, plot.graph);
    plot.graph->setPlayGoing(1);
    plot.graph->SetColorPlay({1, 0.5, 1, 1});
    EXPECT_EQ(contours.color(high, plot.graph), before);
    plot.graph->setPlayGoing(0);
    EXPECT_NE(contours.color(high, plot.graph), before);
}

}  // namespace pavane
