#include "measures/maps/header_cards.h"
#include "pavane/axes/maps/MapContent.h"
#include "pavane/axes/maps/RgbImage.h"
#include "pavane/measures/maps/rgb_maps.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <unistd.h>

namespace pavane
{

namespace
{

constexpr float blank = std::numeric_limits<float>::quiet_NaN();
constexpr int columns = 12, rows = 9;

MapHeader headerAt(double crpix, const std::string& more = {})
{
    MapHeader header;
    std::string error;
    EXPECT_TRUE(readMapHeader(
        cardsOf("CTYPE1='RA---SIN';CTYPE2='DEC--SIN';CRVAL1=187;CRVAL2=12;CDELT1=-1e-4;CDELT2=1e-4;"
                "CRPIX1=" +
                std::to_string(crpix) + ";CRPIX2=4;BUNIT='Jy/beam';BMAJ=4e-4;BMIN=4e-4;BPA=0" +
                more),
        rows, columns, header, error))
        << error;
    return header;
}

/// 1 in column `column`, 0 elsewhere, times `peak`.
AMatrix<float> lineAt(int column, float peak)
{
    AMatrix<float> cells(rows, columns);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < columns; ++c)
            cells(r, c) = c == column ? peak : 0;
    return cells;
}

struct TestMaps {
    MapHeader headers[rgbBands] = {headerAt(5), headerAt(5), headerAt(5)};
    AMatrix<float> cells[rgbBands] = {lineAt(2, 1), lineAt(5, 4), lineAt(8, 0.5F)};
    MapOfRgb maps[rgbBands];
    std::vector<std::string> notes;
    std::string error;
    std::size_t at = 0;
    RgbMap made;

    PairFault combine(int regrid = 0)
    {
        notes.clear();
        for (std::size_t i = 0; i < rgbBands; ++i) {
            maps[i].cells = &cells[i];
            maps[i].header = &headers[i];
            maps[i].name = rgbNames[i] + std::string(".fits");
        }
        return combineRgb(maps, regrid, made, notes, at, error);
    }
};

}  // namespace

TEST(RgbMaps, GoOntoTheCellsOfTheFirst)
{
    TestMaps t;
    ASSERT_EQ(t.combine(), PairFault::none) << t.error;
    EXPECT_TRUE(t.notes.empty());
    EXPECT_EQ(t.made.cells[2](3, 8), 0.5F);

    t.headers[1] = headerAt(7);  // its column 5 lies where the first has 3
    EXPECT_EQ(t.combine(), PairFault::cells);
    EXPECT_EQ(t.at, 1U);
    ASSERT_EQ(t.combine(1), PairFault::none) << t.error;
    EXPECT_NEAR(t.made.cells[1](4, 3), 4, 1e-5);
    EXPECT_TRUE(std::isnan(t.made.cells[1](4, 11)));  // beyond its edge
    EXPECT_NEAR(t.made.cells[2](4, 8), 0.5, 1e-6);

    t.maps[2].moved = {2e-4, 0};  // two cells east, where columns fall
    ASSERT_EQ(t.combine(1), PairFault::none) << t.error;
    EXPECT_NEAR(t.made.cells[2](4, 6), 0.5, 1e-5);
}

TEST(RgbMaps, AreRefusedWithTheMapAtFault)
{
    struct Case {
        const char* what;
        PairFault fault;
        std::size_t at;
        void (*spoil)(TestMaps&);
    };
    for (const Case& c : {
             Case{"blank", PairFault::memory, 2,
                  [](TestMaps& t) { std::fill_n(t.cells[2].data(), t.cells[2].cells(), blank); }},
             Case{"upside down", PairFault::units, 1,
                  [](TestMaps& t) { t.maps[1].low = 3, t.maps[1].high = 2; }},
             Case{"not finite", PairFault::units, 0,
                  [](TestMaps& t) { t.maps[0].high = std::numeric_limits<double>::infinity(); }},
             Case{"size", PairFault::cells, 1,
                  [](TestMaps& t) {
                      t.cells[1] = AMatrix<float>(rows, columns + 1), t.cells[1](0, 0) = 1;
                  }},
         }) {
        TestMaps t;
        c.spoil(t);
        EXPECT_EQ(t.combine(), c.fault) << c.what;
        EXPECT_EQ(t.at, c.at) << c.what;
        EXPECT_FALSE(t.error.empty()) << c.what;
    }
    TestMaps t;
    t.headers[1] = headerAt(5, ";BUNIT='K'");
    t.headers[1].bunit = "K";
    t.headers[2].bmaj = 9e-4;
    EXPECT_EQ(t.combine(), PairFault::none);
    ASSERT_EQ(t.notes.size(), 2U);
    EXPECT_EQ(t.notes[0], "green.fits has values in 'K', red.fits in 'Jy/beam'");
}

TEST(RgbMaps, AreWrittenAndReadBack)
{
    TestMaps t;
    t.maps[0].low = -0.125;
    t.maps[0].high = 0.75;
    t.headers[1].bunit = "K";
    t.cells[1](0, 0) = blank;
    ASSERT_EQ(t.combine(), PairFault::none);
    const std::string file = (std::filesystem::temp_directory_path() /
                              ("pavane-rgb-" + std::to_string(getpid()) + ".fits"))
                                 .string();
    ASSERT_TRUE(writeRgbMap(file, t.made, t.headers[0], {"pavane: three maps"}, t.error))
        << t.error;
    RgbMap back;
    ASSERT_TRUE(readRgbMap(file, back, t.error)) << t.error;
    for (std::size_t i = 0; i < rgbBands; ++i) {
        const RgbBand &a = t.made.bands[i], &b = back.bands[i];
        EXPECT_EQ(a.name, b.name);
        EXPECT_EQ(a.unit, b.unit);
        EXPECT_EQ(a.hasRange(), b.hasRange());
        EXPECT_EQ(a.low, b.low);
        EXPECT_EQ(a.high, b.high);
        EXPECT_TRUE(std::equal(back.cells[i].data(), back.cells[i].data() + back.cells[i].cells(),
                               t.made.cells[i].data(), [](float x, float y) {
                                   return x == y || (std::isnan(x) && std::isnan(y));
                               }));
    }
    FitsMap plane;
    ASSERT_TRUE(readFitsMap(file, 0, plane, t.error)) << t.error;
    EXPECT_TRUE(isOfRgb(plane.header));
    EXPECT_FALSE(isOfRgb(t.headers[0]));
    EXPECT_EQ(plane.header.bunit, "");  // they differ
    EXPECT_EQ(plane.header.axes[0].crpix, 5);
    std::filesystem::remove(file);
}

/// Each pixel of the plot beside what the values say.
TEST(RgbMaps, AreDrawnInTheirColours)
{
    TestMaps t;
    t.maps[1].high = 8;  // green is half as bright as it could be
    t.cells[0](4, 5) = t.cells[1](4, 5) = t.cells[2](4, 5) = blank;
    t.cells[1](4, 8) = blank;
    ASSERT_EQ(t.combine(), PairFault::none);
    MapContent content;
    content.map.header = t.headers[0];
    CString error;
    ASSERT_TRUE(describeCells(AFloatMatrixAccess(t.made.cells[0]), t.headers[0], content, error));
    content.map.cells = t.made.cells[0];
    RgbImage image(std::move(t.made));
    PixelCells x, y;
    x.setLinear(-0.5, 1, columns, columns);
    y.setLinear(rows - 0.5, -1, rows, rows);
    std::vector<std::uint32_t> bits;
    struct Case {
        int row, column;
        std::uint32_t color;
    };
    for (const auto kind : {MapScaleKind::linear, MapScaleKind::squareRoot}) {
        ASSERT_TRUE(image.paint(x, y, SharedPixel::greatest, kind, RGB(1, 2, 3), nullptr, bits));
        const int half = kind == MapScaleKind::linear ? 128 : 180;
        for (const Case& c : {Case{0, 2, 0xFF0000}, Case{0, 8, 0x0000FF}, Case{0, 0, 0},
                              Case{4, 8, 0x0000FF}, Case{4, 5, 0x010203}})
            EXPECT_EQ(bits[static_cast<std::size_t>(c.row * columns + c.column)], c.color)
                << c.row << ", " << c.column;
        const std::uint32_t green = bits[static_cast<std::size_t>(5)];
        EXPECT_EQ(green & 0xFF00FF, 0U);
        EXPECT_NEAR(static_cast<int>(green >> 8), half, 1.5);
    }
    image.setRange(1, 0, 4);
    ASSERT_TRUE(image.paint(x, y, SharedPixel::greatest, MapScaleKind::linear, 0, nullptr, bits));
    EXPECT_EQ(bits[5], 0x00FF00U);
}

}  // namespace pavane
