#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/FigureLayer.h"
#include "pavane/axes/maps/MapPicture.h"
#include "platform/picture.h"
#include "sky_map.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

namespace pavane
{

namespace
{

/// Where the plot was when it was asked to draw.
struct PlotLayer : FigureLayer {
    CRect plot;
    void draw(CDC&, const ABAxis& axis) override { plot = axis.getGraphRect(); }
};

int isInside(const CRect& inner, const CRect& outer)
{
    return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

}  // namespace

TEST(MapFigure, FitsIntoAnyRoomOfAnyContextAsItWasLaidOut)
{
    MapContent maps[4] = {skyMap(), skyMap(), skyMap(), skyMap()};
    maps[1].map.header = MapHeader();
    maps[2].map.header.hasBeam = 0;
    maps[3].map.cells.fill(std::nanf(""));
    for (MapContent& content : maps) {
        complete(content);
        for (const CSize size :
             {CSize{0, 0}, CSize{1, 1}, CSize{15, 15}, CSize{150, 90}, CSize{640, 480}})
            for (const int unit : {1, 12, 13}) {  // 96, 1152 and 1248 units per inch
                const std::string what = std::to_string(&content - maps) + ": " +
                                         std::to_string(size.cx) + " x " + std::to_string(unit);
                CPageFile page(CPageFile::Format::svg, 800, 600, "", unit);
                const CRect all(7, 5, 7 + size.cx * unit, 5 + size.cy * unit);
                MapPicture picture;
                picture.show(content);
                PlotLayer layer;
                picture.figure().addLayer(&layer);
                const FigureLayout layout = picture.figure().layOut(page.dc(), all);
                picture.figure().draw(page.dc(), layout);
                EXPECT_EQ(layout.all, all) << what;
                EXPECT_EQ(picture.axis().getBorderRect(), CRect(-1, -1, -1, -1)) << what;
                if (layout.isEmpty())
                    continue;
                EXPECT_GE(size.cx, 15) << what;
                EXPECT_EQ(layer.plot, layout.plot) << what;
                EXPECT_TRUE(isInside(layout.axis, all) && isInside(layout.plot, layout.axis))
                    << what;
                EXPECT_EQ(layout.bar.IsRectEmpty(), size.cx < 150) << what;
                if (layout.bar.IsRectEmpty())
                    continue;
                EXPECT_TRUE(isInside(layout.bar, all)) << what;
                EXPECT_EQ(layout.bar.left - layout.plot.right, 14 * unit) << what;
                EXPECT_NEAR(layout.plot.Width() * 40.0 / 60, layout.plot.Height(), unit) << what;
            }
    }
}

TEST(MapFigure, StandsOnPagesWhereItStandsInPictures)
{
    MapContent content = skyMap();
    complete(content);
    MapPicture picture;
    picture.show(content);
    CPicture pixels(640, 480);
    for (const CRect& border : {CRect(-1, -1, -1, -1), CRect(120, 60, -1, 90)}) {
        picture.axis().setBorderRect(border);
        const FigureLayout shown = picture.figure().layOut(*pixels.dc(), CRect(0, 0, 640, 480));
        for (const int unit : {12, 13}) {
            CPageFile page(CPageFile::Format::pdf, 640, 480, "", unit);
            const CRect all(0, 0, 640 * unit, 480 * unit);
            const FigureLayout drawn = picture.figure().layOut(page.dc(), all);
            const double near = 0.2 / 25.4 * 96;  // 0.2 mm in pixels
            for (const auto& [a, b] : {std::pair{shown.plot, drawn.plot}, {shown.bar, drawn.bar}}) {
                EXPECT_NEAR(a.left, b.left / double(unit), near) << unit;
                EXPECT_NEAR(a.top, b.top / double(unit), near) << unit;
                EXPECT_NEAR(a.right, b.right / double(unit), near) << unit;
                EXPECT_NEAR(a.bottom, b.bottom / double(unit), near) << unit;
            }
            // a plot whose margins are known keeps them
            const CRect margins(99 * unit, 88 * unit, 77 * unit, 66 * unit);
            const CRect kept = picture.figure().layOut(page.dc(), all, &margins).margins;
            EXPECT_TRUE(kept.left >= margins.left && kept.top >= margins.top &&
                        kept.right >= margins.right && kept.bottom >= margins.bottom);
        }
    }
}

TEST(MapPicture, ReadsAMapWithItsTitlesAndKeepsItWhenTheNextCannotBeRead)
{
    const MapContent content = skyMap();
    const CString file = ::testing::TempDir() + "figure.fits";
    CString error;
    ASSERT_TRUE(writeFitsMap(file, content.map.cells, content.map.header, error)) << error;
    MapPicture picture;
    ASSERT_TRUE(picture.open(file, error)) << error;
    EXPECT_EQ(picture.content().map.cells.columns(), 60);
    EXPECT_FALSE(picture.open(file + ".none", error));
    EXPECT_NE(error.find("figure.fits.none: "), error.npos) << error;
    picture.setHeaderNote("and more");
    EXPECT_EQ(picture.graph().getHeaderText(0).substr(0, 3), "jet");
    EXPECT_NE(picture.graph().getHeaderText(0).find("   and more   "), CString::npos);
    picture.graph().setHeaderText(0, "Mine");
    picture.contentChanged();
    EXPECT_EQ(picture.graph().getHeaderText(0), "Mine");
    picture.graph().dropHeaderText();
    EXPECT_EQ(picture.graph().getHeaderText(0).substr(0, 3), "jet");
    CPicture pixels(640, 480);
    picture.draw(*pixels.dc(), CRect(0, 0, 640, 480));
    EXPECT_EQ(picture.axis().getNameOX(), frameOf(content.map.header, 40, 60).xTitle);
}

}  // namespace pavane
