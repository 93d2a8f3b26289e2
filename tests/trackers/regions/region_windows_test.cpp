#include "pavane/trackers/regions/any_region_file.h"
#include "pavane/trackers/regions/region_windows.h"
#include "tests/tessel/sin_map.h"
#include "tests/trackers/shapes/region_shapes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <random>
#include <unistd.h>

using namespace pavane;

namespace
{

/// Cells of 360 mas, the reference in cell (500, 501).
struct Sky {
    SkyCoordinates sky;
    explicit Sky(double turn = 0, double stretch = 1)
    {
        MapHeader header = sinMap(187.7, 60, 1e-4, turn);
        for (auto& part : header.cd)
            part[1] *= stretch;
        std::string error;
        EXPECT_TRUE(sky.init(header, error)) << error;
    }
};

struct Parsed {
    std::vector<AreaShape> shapes;
    RegionNotes notes;
    Parsed(const std::string& text, const SkyCoordinates* sky)
    {
        parseWindowRegions(text, sky, shapes, notes);
    }
};

/// Offsets of a cell from the reference position, mas east and north in the plane of a SIN map,
/// from its position on the sky.
APoint<double> offsetOf(const SkyCoordinates& sky, APoint<double> cell)
{
    constexpr double mas = 180 / std::numbers::pi * 3.6e6;
    double ra = 0;
    double dec = 0;
    EXPECT_TRUE(sky.toSky(cell.x, cell.y, ra, dec));
    const double da = (ra - 187.7) * degree;
    const double d0 = 60 * degree;
    return {mas * std::cos(dec * degree) * std::sin(da),
            mas * (std::sin(dec * degree) * std::cos(d0) -
                   std::cos(dec * degree) * std::sin(d0) * std::cos(da))};
}

}  // namespace

TEST(WindowRegions, AreRectanglesInMasEastAndNorth)
{
    const Sky map;
    const char* const whole = "rect 500.5 501.5 3 3\n";
    const char* const cases[][2] = {
        {"-720 360 -360 720\n", whole},
        {"-720,360,-360,720", whole},
        {"360 -720\t720  -360\r\n", whole},
        {"\xef\xbb\xbf! by hand\n\n-7.2e2, 3.6e+2 ,-360.0 7.2E2 ! core\n", whole},
        // the digits of the file leave open whether the left edge is half way
        {"-180.00 180.0 -180 180\n-539.99999 180.00001 -360 360\n",
         "rect 500 501 1 1\nrect 500.5 501 2 2\n"},
        {"", ""},
        {"! nothing\n", ""},
    };
    for (const auto& c : cases) {
        const Parsed read(c[0], &map.sky);
        EXPECT_EQ(asText(read.shapes), c[1]) << c[0];
        EXPECT_TRUE(read.notes.lines.empty()) << c[0];
    }
    const Parsed bad("1 2 3\n1 2 3 4 5\n1 2 nan 4\n1 2 3 1e400\n1 2 3 x\n1 1 2 3\n1e300 2 3 4\n"
                     "1 2 3 4\n",
                     &map.sky);
    EXPECT_EQ(bad.shapes.size(), 1u);
    EXPECT_EQ(bad.notes.damaged, 7);
    EXPECT_EQ(bad.notes.firstLoss, "line 1: a window has four edges, not 3");
    EXPECT_EQ(Parsed("1 2 3 4\n", nullptr).notes.firstLoss,
              "line 1: the map has no sky coordinates that can be used; left out");
}

TEST(WindowRegions, LieWhereTheSkyIsAndComeBack)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> mas(-50000, 50000);
    for (const auto& [turn, stretch] : {std::pair{0., 1.}, {0., 2.5}, {90., 1.}, {33., 1.}}) {
        const Sky map(turn, stretch);
        std::string text;
        std::vector<double> edges;
        for (int i = 0; i < 50; ++i) {
            for (int k = 0; k < 4; ++k) {
                edges.push_back(mas(random));
                text.append(std::to_string(edges.back())).append(k < 3 ? " " : "\n");
            }
            for (const std::size_t k : {edges.size() - 4, edges.size() - 2})
                if (edges[k] > edges[k + 1])
                    std::swap(edges[k], edges[k + 1]);
        }
        const Parsed read(text, &map.sky);
        ASSERT_EQ(read.shapes.size(), 50u) << turn;
        EXPECT_TRUE(read.notes.lines.empty());
        for (std::size_t i = 0; i < read.shapes.size(); ++i) {
            double least[2] = {1e9, 1e9};
            double greatest[2] = {-1e9, -1e9};
            for (const APoint<double>& corner : outlineOf(read.shapes[i])) {
                const APoint<double> at = offsetOf(map.sky, corner);
                least[0] = std::min(least[0], at.x);
                least[1] = std::min(least[1], at.y);
                greatest[0] = std::max(greatest[0], at.x);
                greatest[1] = std::max(greatest[1], at.y);
            }
            for (std::size_t axis = 0; axis < 2; ++axis) {
                EXPECT_NEAR(least[axis], edges[4 * i + 2 * axis], 1e-3) << turn;
                EXPECT_NEAR(greatest[axis], edges[4 * i + 2 * axis + 1], 1e-3) << turn;
            }
        }
        RegionNotes notes;
        const std::string written = windowRegionText(read.shapes, &map.sky, notes);
        EXPECT_EQ(notes.leftOut, 0) << turn;
        const Parsed back(written, &map.sky);
        ASSERT_EQ(back.shapes.size(), 50u);
        for (std::size_t i = 0; i < back.shapes.size(); ++i)
            for (std::size_t k = 0; k < 4; ++k) {
                const APoint<double> was = outlineOf(read.shapes[i])[k];
                const APoint<double> is = outlineOf(back.shapes[i])[k];
                EXPECT_NEAR(std::hypot(was.x - is.x, was.y - is.y), 0, 1e-8) << turn;
            }
    }
    // cells that are turned and oblong: the window is oblique
    const Sky oblique(33, 2);
    const Parsed read("-720 360 -360 720\n", &oblique.sky);
    ASSERT_EQ(read.shapes.size(), 1u);
    EXPECT_EQ(read.shapes[0].kind, AreaShape::Kind::polygon);
    EXPECT_EQ(read.notes.changed, 1);
    RegionNotes notes;
    (void)windowRegionText(read.shapes, &oblique.sky, notes);
    EXPECT_EQ(notes.leftOut, 0) << "four corners along the sky are a window";
}

TEST(WindowRegions, RefuseWhatIsNoWindow)
{
    const Sky map;
    std::vector<AreaShape> shapes(6);
    for (AreaShape& shape : shapes) {
        shape.centre = {480, 510};
        shape.width = 6;
        shape.height = 4;
    }
    shapes[1].kind = AreaShape::Kind::ellipse;
    shapes[2].kind = AreaShape::Kind::rotatedRectangle;
    shapes[2].angle = 0.1;
    shapes[3].isNeverClean = 1;
    shapes[4].kind = AreaShape::Kind::polygon;
    shapes[4].vertices = {{1, 1}, {5, 1}, {5, 3}, {2, 3}};
    shapes[5].label.name = "core";
    RegionNotes notes;
    EXPECT_EQ(windowRegionText(shapes, &map.sky, notes),
              "! CLEAN windows: xmin xmax ymin ymax, mas east and north\n! 2 areas\n"
              "6120 8280 2520 3960\n6120 8280 2520 3960\n");
    EXPECT_EQ(notes.leftOut, 4);
    EXPECT_EQ(notes.changed, 1);
    EXPECT_EQ(notes.firstLoss,
              "area 2: is no rectangle along east and north, as windows are; left out");
    std::string error;
    const std::string name = testing::TempDir() + "windows-" + std::to_string(::getpid()) + ".win";
    EXPECT_FALSE(writeWindowRegions(name, shapes, nullptr, notes, error));
    EXPECT_NE(error.find("places on the sky"), std::string::npos);
    // files as users have them: what may be cut is told, and what promises more than it holds
    const struct {
        const char* text;
        const char* fault;
        int read;
    } cases[] = {
        {"", "the region file is empty", 0},
        {"! a comment alone\n",
         "the region file holds no area, and does not begin as one that means to", 0},
        {"garbage\n", "not a region file: line 1: \"garbage\" is not understood", 0},
        {"1 2 3 4\n5 6 7 8", "line 2: the file may be cut here: the line has no end", 1},
        {"! CLEAN windows\n! 2 areas\n1 2 3 4\n",
         "the file promises 2 areas and ends before the last", 1},
        {"! CLEAN windows\n! 0 areas\n", "", 0},
        {"! by Difmap\n1 2 3 4\n", "", 1},
    };
    for (const auto& c : cases) {
        std::ofstream(name, std::ios::binary) << c.text;
        EXPECT_EQ(areaKindOfFile(name), AreaKind::windows);
        int promised = 0;
        std::string loss;
        if (readRegionFile(name, AreaKind::windows, &map.sky, shapes, notes, promised, loss))
            loss = notes.firstLoss;
        EXPECT_EQ(loss, c.fault) << c.text;
        EXPECT_EQ(static_cast<int>(shapes.size()), c.read) << c.text;
    }
    std::remove(name.c_str());
}
