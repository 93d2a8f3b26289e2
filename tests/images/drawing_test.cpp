#include "platform/picture.h"
#include "tests/images/raster_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <random>
#include <vector>

namespace pavane
{
namespace
{

TEST(Raster, LaysRowsOutBottomUpInWholeWords)
{
    ADIBase dib = blank(CRect(10, 20, 19, 24));
    EXPECT_EQ(dib.width(), 10);
    EXPECT_EQ(dib.height(), 5);
    EXPECT_EQ(dib.scanWidth(), 12);
    dib.SetPixel(10, 24, 7);
    dib.SetPixel(19, 20, 258);  // the lowest byte counts
    EXPECT_EQ(dib.lpArray()[0], 7);
    EXPECT_EQ(dib.lpArray()[4 * 12 + 9], 2);
    for (const CPoint p : {CPoint(9, 24), CPoint(20, 24), CPoint(10, 19), CPoint(10, 25)}) {
        dib.SetPixel(p.x, p.y, 9);
        EXPECT_EQ(dib.GetPixel(p.x, p.y), -1);
        EXPECT_EQ(dib.XYInDIB(p.x, p.y), 0);
    }
    EXPECT_EQ(dib.GetPixel(10, 24), 7);
}

TEST(Raster, DrawsPatternsOfLines)
{
    struct {
        short width;
        int pattern;
        CPoint from, to;
        const char* picture;
    } const cases[] = {
        {1, 0x33333333, {-1, 2}, {6, 2}, "......\n......\n#..##.\n......\n"},
        {2, 0x55555555, {0, 1}, {6, 1}, "##..##\n##..##\n......\n......\n"},
    };
    for (const auto& c : cases) {
        ADIBase dib = blank(CRect(0, 0, 5, 3));
        dib.SetLineWidth(c.width);
        dib.SetLinePattern(c.pattern);
        dib.Line(c.from.x, c.from.y, c.to.x, c.to.y);
        EXPECT_EQ(asText(dib), c.picture);
    }
}

TEST(Raster, RectanglesAndRowsIncludeTheirEdges)
{
    ADIBase dib = blank(CRect(0, 0, 5, 3));
    dib.Rectangle(CRect(1, 0, 3, 2));
    dib.Rectangle(CRect(0, 3, 0, 3));
    dib.FillRect(CRect(5, 2, 90, 90), 1);
    dib.FillRect(CRect(3, 1, 2, 2), 1);  // inverted: empty
    dib.Rectangle(CRect(3, 1, 2, 2));
    EXPECT_EQ(asText(dib), ".###..\n.#.#..\n.###.#\n#....#\n");
    dib = short{0};
    const unsigned char row[] = {1, 1, 0, 1};
    dib.CopyLine(1, -1, row, 4);
    dib.CopyLine(3, 4, row, 4);
    dib.CopyLine(4, 0, row, 4);
    EXPECT_EQ(asText(dib), "......\n#.#...\n......\n....##\n");
}

TEST(Raster, TakesAnyCoordinatesAtOnce)
{
    for (const short width : {short{1}, short{3}, short{SHRT_MAX}})
        for (const int pattern : {-1, 0x0F0F0F0F}) {
            ADIBase dib = blank(CRect(-3, -3, 3, 3));
            dib.SetLineWidth(width);
            dib.SetLinePattern(pattern);
            for (const int a : {INT_MIN, -5, 0, INT_MAX})
                for (const int b : {INT_MIN, 0, INT_MAX}) {
                    dib.Line(a, b, b, a);
                    dib.Rectangle(CRect(a, a, b, b));
                    const CPoint p[] = {{a, b}, {INT_MAX, INT_MIN}, {b, a}};
                    dib.Polygon(p, 3, 2);
                }
        }
    ADIBase dib = blank(CRect(0, 0, 2, 2));
    dib.Line(INT_MIN, INT_MIN, INT_MAX, INT_MAX);
    EXPECT_EQ(asText(dib), "#..\n.#.\n..#\n");
    for (const CRect& none : {CRect(5, 0, 4, 9), CRect(INT_MIN, INT_MIN, INT_MAX, INT_MAX)}) {
        ADIBase empty(none);
        EXPECT_EQ(empty.lpArray(), nullptr);
        empty.SetColor(1);
        empty.Line(0, 0, 9, 9);
        empty.FillRect(none, 1);
        empty = short{3};
        EXPECT_EQ(empty.GetPixel(5, 5), -1);
    }
}

TEST(Raster, IsTheSameAtTheEndsOfTheCoordinates)
{
    const auto drawnAt = [](int left, int top) {
        const auto at = [left, top](int x, int y) { return CPoint(left + x, top + y); };
        ADIBase dib = blank(CRect(left, top, left + 8, top + 6));
        dib.FillRect(CRect(left, top + 5, left + 2, top + 6), 1);
        const CPoint corners[] = {at(4, 0), at(8, 0), at(8, 6), at(6, 6)};
        dib.Polygon(corners, 4, 1);
        dib.Rectangle(dib.rect());
        for (const short width : {short{1}, short{3}}) {
            dib.SetLineWidth(width);
            dib.Line(left + 2, top + 2, left + 5, top + 4);
            dib.Line(left, top + 6, left + 3, top + 6);
            dib.Line(left, top, left, top + 3);
        }
        const unsigned char row[] = {1, 0};
        dib.CopyLine(top + 6, left + 7, row, 2);
        CPicture picture(4, 4);
        const std::unique_ptr<CDC> dc = picture.dc();
        dib.Draw(*dc);
        const PALETTEENTRY white{255, 255, 255, 0};
        const HPALETTE palette = CreatePalette(&white, 1);
        ADIBase(dib).LoadFromDC(*dc, palette);
        DeletePalette(palette);
        return std::string(dib.lpArray(), dib.lpArray() + dib.height() * dib.scanWidth());
    };
    const std::string plain = drawnAt(0, 0);
    for (const int left : {INT_MIN, INT_MAX - 8})
        for (const int top : {INT_MIN, INT_MAX - 6})
            EXPECT_EQ(drawnAt(left, top), plain) << left << " " << top;
}

TEST(Raster, DrawsThePixelsOfADeviceContext)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<int> near(-20, 60);
    for (int round = 0; round < 400; ++round) {
        CPicture picture(40, 40);
        const std::unique_ptr<CDC> dc = picture.dc();
        ADIBase dib = blank(CRect(0, 0, 39, 39));
        std::vector<CPoint> points;
        for (int i = 0; i < 5; ++i)
            points.push_back({near(random), near(random)});
        if (round % 2) {
            dib.Polygon(points.data(), 5, 1);
            dc->SelectStockObject(NULL_PEN);
            dc->SelectStockObject(BLACK_BRUSH);
            dc->Polygon(points.data(), 5);
        } else {
            CPen pen(PS_SOLID, round % 6, 0);  // one pixel for 0, then wide ones
            dc->SelectObject(&pen);
            dib.SetLineWidth(static_cast<short>(round % 6));
            dib.Line(points[0].x, points[0].y, points[1].x, points[1].y);
            dc->MoveTo(points[0].x, points[0].y);
            dc->LineTo(points[1].x, points[1].y);
        }
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 40; ++x)
                ASSERT_EQ(dib.GetPixel(x, y), picture.row(y)[x] != 0xFFFFFF)
                    << "round " << round << " at " << x << ", " << y;
    }
}

}  // namespace
}  // namespace pavane
