// Planes of a cube side by side.
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/ChannelMaps.h"
#include "pavane/axes/maps/map_titles.h"
#include "pavane/axes/maps/MapPicture.h"
#include "platform/picture.h"

#include <bit>
#include <cstdint>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace pavane
{

namespace
{

/// A cube of 8 x 6 cells in 5 planes: plane p goes from 10 p to 10 p + 47, plane 4 is blank.
CString writeCube()
{
    std::string bytes;
    for (const char* const card :
         {"SIMPLE  = T", "BITPIX  = -32", "NAXIS   = 3", "NAXIS1  = 8", "NAXIS2  = 6",
          "NAXIS3  = 5", "CTYPE3  = 'VRAD'", "CUNIT3  = 'm/s'", "CRVAL3  = -1500.0", "CRPIX3  = 1",
          "CDELT3  = 500.0", "OBJECT  = 'W3'", "END"}) {
        bytes += card;
        bytes.append(80 - bytes.size() % 80, ' ');
    }
    bytes.append(2880 - bytes.size() % 2880, ' ');
    for (int cell = 0; cell < 5 * 48; ++cell) {
        const auto value = cell < 4 * 48 ? static_cast<float>(cell / 48 * 10 + cell % 48)
                                         : std::bit_cast<float>(0x7FC00000u);
        const auto bits = std::bit_cast<std::uint32_t>(value);
        for (const int shift : {24, 16, 8, 0})
            bytes += static_cast<char>(bits >> shift & 0xFF);
    }
    bytes.append(2880 - bytes.size() % 2880, '\0');
    const CString file = ::testing::TempDir() + "cube.fits";
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
}

int occurrences(const std::string& text, const std::string& part)
{
    int count = 0;
    for (auto at = text.find(part); at != text.npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

}  // namespace

TEST(ChannelMaps, ShowPlanesInOneRangeWithOneBar)
{
    const CString file = writeCube();
    ChannelMaps maps;
    CString error;
    ASSERT_TRUE(maps.open(file, {3, 0, 1, 4}, error)) << error;
    EXPECT_EQ(maps.range(), (TMnMx{0, 77}));
    maps.setGrid(1, 3);
    EXPECT_EQ(maps.pages(), 2);
    std::vector<int> planes;
    maps.setPrepare([&](MapPicture& picture, int plane) {
        planes.push_back(plane);
        picture.graph().setScale(MapScaleKind::equalized);
        EXPECT_EQ(picture.graph().zRange() == maps.range(), plane != 4);
    });
    const struct {
        int rows, page, result, images, xTitles, yTitles;
        const char *has, *hasNot;
    } cases[] = {
        {1, 1, 1, 4, 3, 1, "0\u00a0km/s", "0.5\u00a0km/s"},
        {1, 2, 1, 0, 1, 1, "0.5\u00a0km/s", "-1.5\u00a0km/s"},
        {2, 1, 1, 4, 3, 2, "0.5\u00a0km/s", "2\u00a0km/s"},  // the lowest of a column has the title
        {1, 3, 0, 0, 0, 0, "", "km/s"},
        {1, 0, 0, 0, 0, 0, "", "km/s"},
    };
    for (const auto& c : cases)
        for (const int unit : {1, 12}) {
            SCOPED_TRACE(c.page);
            maps.setGrid(c.rows, 3);
            const CString page = ::testing::TempDir() + "channels.svg";
            CPageFile made(CPageFile::Format::svg, 900, 400, "", unit);
            EXPECT_EQ(maps.draw(made.dc(), CRect(0, 0, 900 * unit, 400 * unit), c.page), c.result);
            ASSERT_TRUE(made.Close(page, error)) << error;
            std::ifstream in(page);
            const std::string text(std::istreambuf_iterator<char>(in), {});
            EXPECT_NE(text.find(c.has), text.npos);
            EXPECT_EQ(text.find(c.hasNot), text.npos);
            // a picture for each map with data, and one of the bar
            EXPECT_EQ(occurrences(text, "<image"), c.images);
            EXPECT_EQ(occurrences(text, ">Column<"), c.xTitles);
            EXPECT_EQ(occurrences(text, ">Row<"), c.yTitles);
            // labels of 12 pixels instead of 20: so are the strokes of a pixel
            EXPECT_EQ(
                occurrences(text, "stroke-width=\"" + std::string(unit == 1 ? "0.6" : "7.2")) > 0,
                c.result);
        }
    EXPECT_EQ(planes, (std::vector<int>{3, 0, 1, 3, 0, 1, 4, 4, 3, 0, 1, 4, 3, 0, 1, 4}));
    maps.setRange({-1, 5});
    EXPECT_EQ(maps.range(), (TMnMx{-1, 5}));
    EXPECT_FALSE(maps.open(file, {}, error));
    EXPECT_FALSE(maps.open(file, {1, 5}, error));
    EXPECT_EQ(maps.count(), 0);
    EXPECT_EQ(maps.pages(), 1);
}

TEST(MapTitles, TellThePlaneOnce)
{
    const struct {
        MapAxis third, fourth;
        int plane;
        const char *text, *line;
    } cases[] = {
        {{3, "FREQ", "Hz", 1.42040575e9, 1, 1e4, 0},
         MapAxis(),
         2,
         "1.420426\u00a0GHz",
         "1.420426\u00a0GHz   Stokes\u00a0Q"},
        {{3, "VELO-LSR", "", -12500, 1, 500, 0},
         MapAxis(),
         1,
         "-12\u00a0km/s",
         "-12\u00a0km/s   1.5\u00a0GHz   Stokes\u00a0Q"},
        {{3, "FREQ-LSR", "", 1.42040575e9, 1, 1e4, 0},
         MapAxis(),
         2,
         "1.420426\u00a0GHz",
         "1.420426\u00a0GHz   Stokes\u00a0Q"},
        {{3, "FREQ", "GHz", 5, 2, 0.5, 0},
         {2, "STOKES", "", 1, 1, 1, 0},
         5,
         "5.5\u00a0GHz   Stokes\u00a0Q",
         "5.5\u00a0GHz   Stokes\u00a0Q"},
        {{2, "STOKES", "", -1, 1, -1, 0},
         MapAxis(),
         1,
         "Stokes\u00a0LL",
         "Stokes\u00a0LL   1.5\u00a0GHz"},
        {{2, "", "", 1, 1, 1, 0},
         MapAxis(),
         1,
         "plane\u00a01",
         "plane\u00a01   1.5\u00a0GHz   Stokes\u00a0Q"},
        {{2, "LAYER", "", 4, 1, 1, 0},
         MapAxis(),
         1,
         "LAYER\u00a05",
         "LAYER\u00a05   1.5\u00a0GHz   Stokes\u00a0Q"},
        {{1, "FREQ", "Hz", 1e9, 1, 1, 0}, MapAxis(), 0, "", "1.5\u00a0GHz   Stokes\u00a0Q"},
    };
    for (const auto& c : cases) {
        MapHeader header;
        header.axes = {MapAxis(), MapAxis(), c.third, c.fourth};
        header.planes = c.third.length * c.fourth.length;
        header.plane = c.plane;
        header.frequency = 1.5e9;
        header.stokes = "Q";
        EXPECT_EQ(mapPlaneText(header), c.text);
        EXPECT_EQ(mapHeaderLine(header, {}, {}), c.line);
    }
}

}  // namespace pavane
