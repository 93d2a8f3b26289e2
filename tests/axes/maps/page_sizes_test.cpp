// Lines, texts and marks of figures are as large on pages of any fineness.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/AGraphXYPoint.h"
#include "pavane/axes/AStatHistGraph.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/maps/AAxisLevelOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapPicture.h"
#include "platform/picture.h"
#include "sky_map.h"

#include <cmath>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>

namespace pavane
{

namespace
{

using Drawing = std::function<void(CDC& dc, const CRect& rect)>;

/// What a page has of one kind of size, in its own order, in pixels of 96 per inch.
struct Sizes {
    std::vector<double> strokes, fonts, discs, shortLines;
};

void add(const std::string& line, const char* name, int unit, std::vector<double>& values)
{
    const auto at = line.find(name);
    if (at != std::string::npos)
        values.push_back(std::stod(line.substr(at + std::string(name).size())) / unit);
}

Sizes sizesOf(const Drawing& draw, CSize size, int unit)
{
    const CString file = ::testing::TempDir() + "sizes.svg";
    CPageFile page(CPageFile::Format::svg, size.cx, size.cy, "", unit);
    draw(page.dc(), CRect(0, 0, size.cx * unit, size.cy * unit));
    CString error;
    EXPECT_TRUE(page.Close(file, error)) << error;
    std::ifstream in(file);
    Sizes sizes;
    for (std::string line; std::getline(in, line);) {
        add(line, " stroke-width=\"", unit, sizes.strokes);
        add(line, " font-size=\"", unit, sizes.fonts);
        add(line, " rx=\"", unit, sizes.discs);
        const auto at = line.find(" points=\"");
        double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
        char c = 0;
        std::istringstream ends(at == std::string::npos ? "" : line.substr(at + 9));
        if (!(ends >> x1 >> c >> y1 >> x2 >> c >> y2 >> c) || c != '"')
            continue;
        const double length = std::hypot(x2 - x1, y2 - y1) / unit;
        if (length < 12)  // ticks and markers
            sizes.shortLines.push_back(length);
    }
    return sizes;
}

void compare(const std::vector<double>& fine, const std::vector<double>& other, const char* what)
{
    ASSERT_EQ(fine.size(), other.size()) << what;
    for (std::size_t i = 0; i < fine.size(); ++i)
        EXPECT_NEAR(other[i] / fine[i], 1, 0.05) << what << ' ' << i << ": " << fine[i];
}

}  // namespace

TEST(PageSizes, AreTheSameAtAnyFineness)
{
    MapContent content = skyMap();
    complete(content);
    MapPicture map;
    map.show(content);
    ContourLevels levels;
    ASSERT_TRUE(levels.read("abs:-2"));
    map.graph().contours().setLevels(levels);
    map.graph().contours().setWidth(0);
    std::vector<double> x{1, 2, 3}, y{1, 3, 2};
    A2DAxis points(1, 1, nullptr, axisGridX | axisGridY | axisTicksInside);
    for (int shape = graphPointDot; shape <= graphPointStar; ++shape)
        new AGraphXYPoint(&points, x.data(), y.data(), 3, nullptr, shape, shape, 0, 0);
    for (const int width : {0, 1, 2, 5})
        new AGraphXYLine(&points, x.data(), y.data(), 3, nullptr, PS_DASH, width, 0, 0);
    A2DAxis histogram(1, 1, nullptr, 0);
    AArray<double> bins;
    for (const double bin : {1.0, 4.0, 2.0})
        bins.Add(bin);
    TMnMx range{0, 3};
    (new AStatHistGraph(&histogram, 0))->SetParameters(&bins, range, 1.5, 0.5, 0, 0);
    const Drawing drawings[] = {
        [&](CDC& dc, const CRect& rect) { map.draw(dc, rect); },
        [&](CDC& dc, const CRect& rect) {
            AAxisLevelOP bar(map.graph());
            bar.setFHeight(rect.Width() / 20);
            CRect place = rect;
            bar.draw(dc, place);
        },
        [&](CDC& dc, CRect rect) { points.draw(dc, rect); },
        [&](CDC& dc, CRect rect) { histogram.draw(dc, rect); },
    };
    for (const Drawing& draw : drawings)
        for (const CSize size : {CSize{640, 480}, CSize{300, 240}, CSize{400, 390}}) {
            const Sizes fine = sizesOf(draw, size, 12);
            EXPECT_FALSE(fine.strokes.empty());
            for (const int unit : {1, 3, 6}) {
                SCOPED_TRACE(std::to_string(&draw - drawings) + ", " + std::to_string(size.cx) +
                             " wide, unit " + std::to_string(unit));
                const Sizes sizes = sizesOf(draw, size, unit);
                compare(fine.strokes, sizes.strokes, "stroke");
                compare(fine.fonts, sizes.fonts, "font");
                compare(fine.discs, sizes.discs, "disc");
                if (&draw != &drawings[0])  // contours are thinned by the unit
                    compare(fine.shortLines, sizes.shortLines, "line");
            }
        }
}

}  // namespace pavane
