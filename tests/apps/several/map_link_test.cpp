// Links between maps of one window, as values: places, ranges, areas, who leads.
#include "apps/view/several/MapLinks.h"

#include "pavane/axes/ranges/RangeView.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

namespace pavane
{

namespace
{

/// A map as a file would give it; `turn` in degrees.
struct TestMap {
    TestMap(const char* projection, double cell, int side, double longitude, double latitude,
            double turn = 0, const char* frame = "ICRS", int isOnSky = 1)
    {
        const std::string kind = projection;
        const int isGalactic = std::string(frame) == "GALACTIC";
        header.axes = {{side, (isGalactic ? "GLON-" : "RA---") + kind, "deg", longitude,
                        side / 2.0 + 1, -cell, 0},
                       {side, (isGalactic ? "GLAT-" : "DEC--") + kind, "deg", latitude,
                        side / 2.0 + 1, cell, turn}};
        header.hasCelestialAxes = isOnSky;
        const double angle = turn * std::numbers::pi / 180;
        header.cd[0][0] = -cell * std::cos(angle);
        header.cd[0][1] = -cell * std::sin(angle);
        header.cd[1][0] = -cell * std::sin(angle);
        header.cd[1][1] = cell * std::cos(angle);
        if (!isOnSky)
            header.axes[0].ctype = header.axes[1].ctype = "";
        std::string error;
        EXPECT_EQ(sky.init(header, error), isOnSky) << error;
        mapFrame = frameOf(header, side, side);
    }
    LinkedMap linked() const { return {&mapFrame, &sky}; }
    double x(double column) const { return mapFrame.xFirst + column * mapFrame.xStep; }
    double y(double row) const { return mapFrame.yFirst + row * mapFrame.yStep; }
    TMinMax range(double column, double row, double columns, double rows) const
    {
        const double width = std::fabs(mapFrame.xStep) * columns / 2;
        const double height = std::fabs(mapFrame.yStep) * rows / 2;
        return {x(column) - width, x(column) + width, y(row) - height, y(row) + height};
    }

    MapHeader header;
    SkyCoordinates sky;
    MapFrame mapFrame;
};

}  // namespace

/// Three windows, one after the other leads with a random zoom: the middles agree on the sky, the
/// scales too, and whoever led gets its own range back from any other.
TEST(MapLinks, AgreeUnderRandomZoomsOfThreeMaps)
{
    const std::array<TestMap, 3> maps = {
        TestMap("SIN", 1e-7, 512, 187.7059, 12.3911),
        TestMap("TAN", 3e-7, 300, 187.70593, 12.39112, 40),
        TestMap("STG", 2e-7, 256, 283.7777, 74.4912, 0, "GALACTIC")};
    std::mt19937 random(7);
    std::uniform_real_distribution<double> part(0, 1);
    for (int step = 0; step < 300; ++step) {
        const auto leader = static_cast<std::size_t>(step % 3);
        const TestMap& from = maps.at(leader);
        const double span = std::exp(part(random) * 4) + 2;
        const TMinMax shown = from.range(200 + 40 * part(random), 230 + 40 * part(random), span,
                                         span * (0.5 + part(random)));
        for (std::size_t other = 0; other < maps.size(); ++other) {
            const TestMap& to = maps.at(other);
            if (other == leader)
                continue;
            TMinMax range;
            TMinMax back;
            ASSERT_TRUE(linkedRange(LinkBy::sky, from.linked(), to.linked(), shown, range));
            ASSERT_TRUE(linkedRange(LinkBy::sky, to.linked(), from.linked(), range, back));
            // the positions of both middles, by WCSLIB
            const auto middle = [](const TestMap& map, const TMinMax& of, double& ra, double& dec) {
                return map.sky.toSky(
                    ((of.xMin + of.xMax) / 2 - map.mapFrame.xFirst) / map.mapFrame.xStep,
                    ((of.yMin + of.yMax) / 2 - map.mapFrame.yFirst) / map.mapFrame.yStep,
                    SkyFrame{SkyFrame::System::icrs, 2000}, ra, dec);
            };
            double ra[2], dec[2];
            ASSERT_TRUE(middle(from, shown, ra[0], dec[0]) && middle(to, range, ra[1], dec[1]));
            EXPECT_NEAR(ra[0], ra[1], 1e-9);
            EXPECT_NEAR(dec[0], dec[1], 1e-9);
            // as wide on the sky: cells of these maps are squares of a stated size
            const double wide = (shown.xMax - shown.xMin) * from.mapFrame.arcseconds;
            EXPECT_NEAR((range.xMax - range.xMin) * to.mapFrame.arcseconds / wide, 1, 1e-6);
            const double tremble = 1e-5 * (shown.xMax - shown.xMin);
            EXPECT_NEAR(back.xMin, shown.xMin, tremble);
            EXPECT_NEAR(back.xMax, shown.xMax, tremble);
            EXPECT_NEAR(back.yMin, shown.yMin, tremble);
            EXPECT_NEAR(back.yMax, shown.yMax, tremble);
        }
    }
}

TEST(MapLinks, GoByCellWhereAMapHasNoPositions)
{
    const TestMap sky("SIN", 1e-7, 64, 10, 20);
    const TestMap plain("SIN", 1, 100, 0, 0, 0, "", 0);
    const TestMap far("SIN", 1e-7, 64, 190, -20);
    EXPECT_EQ(linkBetween(LinkBy::sky, sky.linked(), plain.linked()), LinkBy::cell);
    EXPECT_EQ(linkBetween(LinkBy::sky, sky.linked(), far.linked()), LinkBy::sky);
    EXPECT_EQ(linkBetween(LinkBy::nothing, sky.linked(), plain.linked()), LinkBy::nothing);
    TMinMax range;
    ASSERT_TRUE(
        linkedRange(LinkBy::cell, sky.linked(), plain.linked(), sky.range(20, 30, 8, 4), range));
    const TMinMax wanted = plain.range(20, 30, 8, 4);
    EXPECT_NEAR(range.xMin, wanted.xMin, 1e-9);
    EXPECT_NEAR(range.yMax, wanted.yMax, 1e-9);
    // the other side of the sky does not show on a SIN map, and nothing changes
    const TMinMax before = range;
    EXPECT_FALSE(
        linkedRange(LinkBy::sky, sky.linked(), far.linked(), sky.range(20, 30, 8, 4), range));
    EXPECT_FALSE(linkedRange(LinkBy::nothing, sky.linked(), plain.linked(), before, range));
    EXPECT_EQ(range, before);
}

/// Areas land where their places on the sky are, and come back as they were.
TEST(MapLinks, CarryAreasOverTheSky)
{
    const TestMap from("SIN", 1e-7, 512, 187.7, 12.4);
    const TestMap to("SIN", 2e-7, 512, 187.70001, 12.40001, 30);
    AreaShape ellipse;
    ellipse.kind = AreaShape::Kind::ellipse;
    ellipse.centre = {200, 300};
    ellipse.width = 40;
    ellipse.height = 20;
    ellipse.angle = 0.4;
    ellipse.isNeverClean = 1;
    ellipse.label.name = "core";
    AreaShape box = ellipse;
    box.kind = AreaShape::Kind::rectangle;
    box.angle = 0;
    AreaShape polygon;
    polygon.kind = AreaShape::Kind::polygon;
    polygon.vertices = {{10, 10}, {60, 20}, {30, 90}};
    const std::vector<AreaShape> shapes = {ellipse, box, polygon};
    std::vector<AreaShape> there;
    std::vector<AreaShape> back;
    ASSERT_EQ(linkedShapes(LinkBy::sky, from.linked(), to.linked(), shapes, there), 0);
    ASSERT_EQ(linkedShapes(LinkBy::sky, to.linked(), from.linked(), there, back), 0);
    ASSERT_EQ(there.size(), 3U);
    EXPECT_EQ(there[0].label.name, "core");
    EXPECT_TRUE(there[0].isNeverClean);
    EXPECT_NEAR(there[0].width, 20, 1e-4);  // cells twice as large
    EXPECT_EQ(there[1].kind, AreaShape::Kind::rotatedRectangle);
    for (std::size_t i = 0; i < 2; ++i) {
        double column = shapes[i].centre.x;
        double row = shapes[i].centre.y;
        ASSERT_TRUE(linkedCell(LinkBy::sky, from.linked(), to.linked(), column, row));
        EXPECT_NEAR(there[i].centre.x, column, 1e-6);
        EXPECT_NEAR(there[i].centre.y, row, 1e-6);
        EXPECT_EQ(back[i].kind, shapes[i].kind);
        EXPECT_NEAR(back[i].centre.x, shapes[i].centre.x, 1e-4);
        EXPECT_NEAR(back[i].width, shapes[i].width, 1e-4);
        EXPECT_NEAR(back[i].angle, shapes[i].angle, 1e-6);
    }
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(back[2].vertices[i].x, polygon.vertices[i].x, 1e-4);
    EXPECT_TRUE(sameShapes(shapes, shapes));
    EXPECT_FALSE(sameShapes(shapes, there));
    const TestMap far("SIN", 1e-7, 64, 7.7, -12);
    EXPECT_EQ(linkedShapes(LinkBy::sky, from.linked(), far.linked(), shapes, there), 3);
}

TEST(MapLinks, EndWhereTheyBegan)
{
    int isLed = 0;
    {
        const LinkLead first(isLed);
        EXPECT_TRUE(first.leads());
        {
            const LinkLead answer(isLed);
            EXPECT_FALSE(answer.leads());
        }
        EXPECT_FALSE(LinkLead(isLed).leads());  // the answer has ended, the first one leads still
    }
    EXPECT_TRUE(LinkLead(isLed).leads());
    MapLinks links;
    EXPECT_EQ(links.text(1), "Linked by sky: zoom, pointer; by cell where a map has no positions");
    links.next();
    links.toggle(linkAreas);
    EXPECT_EQ(links.text(0), "Linked by cell: zoom, pointer, areas");
    links.next();
    EXPECT_FALSE(links.has(linkZoom));
    EXPECT_TRUE(links.wants(linkZoom));
    EXPECT_EQ(links.text(0), "Maps are not linked");
}

}  // namespace pavane
