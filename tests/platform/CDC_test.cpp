#include "platform/image_list.h"
#include "platform/picture.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"

#include "text_picture.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

namespace pavane
{

namespace
{

constexpr int least = std::numeric_limits<int>::min();
constexpr int greatest = std::numeric_limits<int>::max();

/// A 32-bit bitmap header with `count` colours after it.
std::vector<unsigned char> dibHeader(int width, int height, int bitCount, int count = 0)
{
    std::vector<unsigned char> h(40 + 4 * static_cast<std::size_t>(count));
    const auto put = [&](std::size_t at, int v) {
        for (std::size_t i = 0; i < 4; ++i)
            h[at + i] = static_cast<unsigned char>(static_cast<unsigned>(v) >> (8 * i));
    };
    put(0, 40);
    put(4, width);
    put(8, height);
    h[14] = static_cast<unsigned char>(bitCount);
    put(32, count);
    return h;
}

}  // namespace

TEST(DeviceContext, GivesBackThePointersThatWereSelected)
{
    CPicture picture(4, 4);
    const auto dc = picture.dc();
    CPen pen(PS_SOLID, 1, RGB(255, 0, 0));
    CPen* const before = dc->SelectObject(&pen);
    ASSERT_NE(before, nullptr);
    EXPECT_EQ(dc->SelectObject(before), &pen);
    CBrush brush(RGB(0, 255, 0));
    EXPECT_NE(dc->SelectObject(&brush), nullptr);
    EXPECT_EQ(dc->SelectObject(static_cast<CFont*>(nullptr)), nullptr);
    for (const int stock : {WHITE_BRUSH, GRAY_BRUSH, NULL_BRUSH, BLACK_PEN, NULL_PEN,
                            DEVICE_DEFAULT_FONT, DEFAULT_GUI_FONT})
        EXPECT_TRUE(dc->SelectStockObject(stock)) << stock;
    EXPECT_FALSE(dc->SelectStockObject(99));
}

TEST(CPicture, SaysThatItsTextIsLeftOut)
{
    CString why;
    EXPECT_FALSE(CPicture::CanDrawText(&why));
    EXPECT_NE(why.find("InitPlatform"), CString::npos);
    testing::FLAGS_gtest_death_test_style = "threadsafe";  // a process that has not said it yet
    const auto draw = [] {
        CPicture picture(40, 20);
        for (int i = 0; i < 3; ++i)
            picture.dc()->TextOut(2, 2, "Jy");
        std::exit(0);
    };
    EXPECT_EXIT(draw(), testing::ExitedWithCode(0), "^pavane: Text[^\n]*InitPlatform[^\n]*\n$");
}

TEST(DeviceContext, RestoresEverythingToAnyDepth)
{
    CPicture picture(8, 2);
    const auto dc = picture.dc();
    dc->MoveTo(1, 1);
    EXPECT_EQ(dc->SaveDC(), 1);
    dc->SetROP2(R2_NOT);
    dc->MoveTo(5, 1);
    dc->IntersectClipRect({0, 0, 2, 2});
    EXPECT_EQ(dc->SaveDC(), 2);
    dc->SetTextColor(RGB(9, 9, 9));
    EXPECT_FALSE(dc->RestoreDC(3));
    EXPECT_FALSE(dc->RestoreDC(0));
    EXPECT_TRUE(dc->RestoreDC(1));
    EXPECT_EQ(dc->GetROP2(), R2_COPYPEN);
    EXPECT_EQ(dc->GetTextColor(), 0u);
    EXPECT_FALSE(dc->RestoreDC(-1));
    dc->LineTo(7, 1);
    EXPECT_EQ(asText(picture), "........\n.######.\n");
}

TEST(DeviceContext, WithoutADeviceAnswersAndDrawsNothing)
{
    CDC dc;
    const CPoint p[3] = {{0, 0}, {5, 5}, {0, 9}};
    EXPECT_FALSE(dc.Polyline(p, 3));
    EXPECT_FALSE(dc.Polygon(p, 3));
    EXPECT_FALSE(dc.TextOut(0, 0, "text"));
    EXPECT_FALSE(dc.BitBlt(0, 0, 3, 3, &dc, 0, 0, SRCCOPY));
    dc.FillSolidRect({0, 0, 9, 9}, 0);
    EXPECT_EQ(dc.GetPixel(0, 0), CLR_INVALID);
    CRect box;
    EXPECT_EQ(dc.GetClipBox(box), NULLREGION);
    EXPECT_GT(dc.GetTextExtent("text").cx, 0);
}

TEST(DeviceContext, TakesCoordinatesAtTheEndsOfAnInt)
{
    CPicture picture(16, 16);
    const auto dc = picture.dc();
    CBrush brush(HS_CROSS, RGB(0, 0, 255));
    dc->SelectObject(&brush);
    const CPoint corners[] = {{least, least}, {greatest, least}, {greatest, greatest}, {least, 3}};
    const CRect all(least, least, greatest, greatest);
    for (const int width : {0, 1, 5, greatest}) {
        for (const int style : {PS_SOLID, PS_DASHDOT, PS_NULL, PS_INSIDEFRAME}) {
            for (const int mode : {R2_COPYPEN, R2_XORPEN}) {
                CPen pen(style, width, RGB(255, 0, 0));
                dc->SelectObject(&pen);
                dc->SetROP2(mode);
                dc->Polygon(corners, 4);
                dc->Polyline(corners, 4);
                dc->Rectangle(all);
                dc->Ellipse(least, least, greatest, greatest);
                dc->Rectangle(greatest, greatest, least, least);
            }
        }
    }
    dc->FillRect(all, &brush);
    dc->FrameRect(all, &brush);
    dc->InvertRect(all);
    dc->DrawFocusRect(all);
    dc->PatBlt(greatest, greatest, greatest, greatest, PATINVERT);
    dc->SetPixel(greatest, least, 0);
    dc->StretchBlt(least, least, greatest, greatest, dc.get(), least, greatest, greatest, least,
                   SRCCOPY);
    CRgn region;
    CRect box;
    dc->ScrollDC(least, greatest, &all, nullptr, &region, &box);
    dc->SetMapMode(MM_ANISOTROPIC);
    dc->SetViewportExt(greatest, least);
    dc->SetWindowOrg(least, greatest);
    dc->Rectangle(all);
    dc->TextOut(greatest, least, "far");
    CRect text(least, least, greatest, greatest);
    dc->DrawText("a b c", text, DT_CENTER | DT_WORDBREAK);
    const CPointF odd[] = {{1e308, -1e308}, {0, 0}, {std::nan(""), 1}, {3, 3}, {1e18, 4}};
    EXPECT_TRUE(dc->PolylineF(odd, 5));
    EXPECT_TRUE(dc->PolygonF(odd, 5));
}

TEST(ScrollDC, MovesInPlaceWhatACopyWouldMove)
{
    const auto shade = [](int x, int y) { return RGB(x * 7, y * 11, x * y); };
    CRgn corner;
    const CPoint points[] = {{3, 2}, {28, 9}, {12, 29}};
    corner.CreatePolygonRgn(points, 3, ALTERNATE);
    const CRect scroll(2, 3, 27, 26), clip(5, 1, 30, 24);
    for (const CRgn* region : {static_cast<CRgn*>(nullptr), &corner}) {
        for (const auto& [dx, dy] :
             {std::pair{0, -5}, {0, 4}, {3, 0}, {-6, 0}, {2, 3}, {-3, 2}, {40, 0}, {0, 0}}) {
            CPicture picture(32, 32);
            const auto dc = picture.dc();
            for (int y = 0; y < 32; ++y)
                for (int x = 0; x < 32; ++x)
                    dc->SetPixelV(x, y, shade(x, y));
            dc->SelectClipRgn(region);
            dc->ScrollDC(dx, dy, &scroll, &clip, nullptr, nullptr);
            CRect from;
            from.IntersectRect(scroll, clip);
            for (int y = 0; y < 32; ++y) {
                for (int x = 0; x < 32; ++x) {
                    const bool moves = from.PtInRect({x - dx, y - dy}) && clip.PtInRect({x, y}) &&
                                       (!region || region->PtInRegion(x, y));
                    ASSERT_EQ(dc->GetPixel(x, y), moves ? shade(x - dx, y - dy) : shade(x, y))
                        << x << ' ' << y << " by " << dx << ' ' << dy;
                }
            }
        }
    }
}

TEST(ImageList, DrawsItsRowsSharplyAtEveryRatio)
{
    static const char* const rows[] = {"#..", " # ", "  #"};
    CImageList list;
    ASSERT_TRUE(list.Create(3, 4));
    ASSERT_EQ(list.Add(rows, 3), 0);
    list.SetColors(0, RGB(1, 2, 3), RGB(1, 2, 3));
    CPicture picture(5, 6);
    EXPECT_TRUE(list.Draw(*picture.dc(), 0, {1, 1}));
    EXPECT_FALSE(ImageList_Draw(list, 1, *picture.dc(), 0, 0, ILD_NORMAL));
    EXPECT_EQ(asText(picture), ".....\n.#++.\n..#..\n...#.\n.....\n.....\n");
    for (const int ratio : {2, 3, 8}) {
        CBitmap fine;
        fine.CreateBitmap(5, 6, ratio);
        CMemoryDC dc(fine);
        dc.FillSolidRect({0, 0, 5, 6}, RGB(9, 9, 9));
        list.Draw(dc, 0, {1, 1}, ILD_TRANSPARENT);
        const auto at = [&](int x, int y) { return fine.bits()[y * 5 * ratio + x]; };
        int soft = 0;
        for (int i = 0; i < 30 * ratio * ratio; ++i) {
            const std::uint32_t p = fine.bits()[i];
            soft += p != 0 && p != 0x090909 && p != 0x010203;
        }
        EXPECT_EQ(soft, 0) << ratio;
        EXPECT_EQ(at(ratio + ratio / 2, ratio + ratio / 2), 0u);  // the middle of the first dot
        EXPECT_EQ(at(2 * ratio + ratio / 2, 2 * ratio + ratio / 2), 0u);
        EXPECT_EQ(at(0, 0), 0x090909u);
    }
}

TEST(SystemColors, ShiftLuminanceAndSaturationAndKeepTheHue)
{
    const struct {
        COLORREF color;
        int luminance, saturation;
        COLORREF result;
    } cases[] = {{RGB(12, 200, 99), 0, 0, RGB(12, 200, 99)},
                 {RGB(0, 0, 200), 100, 0, RGB(255, 255, 255)},
                 {RGB(0, 0, 200), -100, 7, RGB(0, 0, 0)},
                 {RGB(255, 0, 0), 50, 0, RGB(255, 128, 128)},
                 {RGB(200, 100, 100), 0, -100, RGB(150, 150, 150)},
                 {RGB(100, 100, 100), 0, 50, RGB(100, 100, 100)},
                 {RGB(10, 20, 30), 900, 0, RGB(255, 255, 255)}};
    for (const auto& c : cases)
        EXPECT_EQ(HLS_TRANSFORM(c.color, c.luminance, c.saturation), c.result) << c.color;
    EXPECT_NEAR(ContrastRatio(0, RGB(255, 255, 255)), 21, 1e-9);
    EXPECT_NEAR(ContrastRatio(RGB(255, 255, 255), RGB(0x76, 0x76, 0x76)), 4.54, 0.01);
}

TEST(WidePens, InvertWhatOneCallCoversOnce)
{
    const CPoint crossing[] = {{2, 2}, {28, 28}, {28, 2}, {2, 28}};
    const CPoint corners[] = {{3, 3}, {27, 8}, {9, 27}};
    const std::pair<const char*, std::function<void(CDC&)>> shapes[] = {
        {"crossing", [&](CDC& dc) { dc.Polyline(crossing, 4); }},
        {"polygon", [&](CDC& dc) { dc.Polygon(corners, 3); }},
        {"rectangle", [](CDC& dc) { dc.Rectangle(4, 4, 26, 20); }},
        {"ellipse", [](CDC& dc) { dc.Ellipse(4, 4, 26, 20); }}};
    for (const auto& [name, draw] : shapes) {
        for (const int width : {1, 2, 3, 4, 7}) {
            CPicture picture(32, 32);
            const auto dc = picture.dc();
            CPen pen(PS_SOLID, width, RGB(255, 255, 255));
            dc->SelectObject(&pen);
            dc->SelectStockObject(NULL_BRUSH);
            dc->SetROP2(R2_XORPEN);
            draw(*dc);
            const std::string once = asText(picture);
            EXPECT_NE(once.find('#'), std::string::npos) << name;
            draw(*dc);
            EXPECT_EQ(asText(picture).find('#'), std::string::npos) << name << ' ' << width;
        }
    }
}

TEST(CurvesWithFractions, AreRoundedAndPartedAtPointsThatAreNone)
{
    CPicture picture(9, 3);
    const auto dc = picture.dc();
    const CPointF curve[] = {{0.4, 0.6}, {2.6, 0.6}, {std::nan(""), 0}, {5.5, 2.4}, {7.5, 2.4}};
    dc->PolylineF(curve, 5);
    EXPECT_EQ(asText(picture), ".........\n###......\n......##.\n");
}

TEST(StretchDIBits, RefusesHeadersThatItCannotRead)
{
    CPicture picture(4, 4);
    const auto dc = picture.dc();
    const std::vector<unsigned char> bits(64);
    const auto draw = [&](const std::vector<unsigned char>& header) {
        return dc->StretchDIBits(0, 0, 4, 4, 0, 0, 4, 4, bits.data(), header.data(), DIB_RGB_COLORS,
                                 SRCCOPY);
    };
    EXPECT_FALSE(draw(dibHeader(4, 4, 24)));
    EXPECT_FALSE(draw(dibHeader(0, 4, 32)));
    EXPECT_FALSE(draw(dibHeader(4, 0, 32)));
    EXPECT_FALSE(draw(dibHeader(4, least, 32)));
    std::vector<unsigned char> packed = dibHeader(4, 4, 8, 2);
    packed[16] = 1;
    EXPECT_FALSE(draw(packed));
    EXPECT_EQ(draw(dibHeader(4, -4, 32)), 4);
    EXPECT_EQ(asText(picture), "####\n####\n####\n####\n");
}

TEST(StretchDIBits, ReadsOnlyCellsThatAreThere)
{
    // the buffer is exactly one 2 x 2 bitmap of 32 bits: a sanitizer sees any other read
    CPicture picture(6, 6);
    const auto dc = picture.dc();
    const auto header = dibHeader(2, 2, 32);
    const std::vector<unsigned char> bits(16);
    for (const int sx : {least, -3, -1, 0, 1, greatest}) {
        for (const int size : {least, -4, 1, 2, 5, greatest})
            dc->StretchDIBits(0, 0, 6, 6, sx, sx, size, size, bits.data(), header.data(),
                              DIB_RGB_COLORS, SRCCOPY);
    }
    picture = CPicture(4, 2);
    const std::vector<unsigned char> row = {0, 0, 0, 0, 255, 255, 255, 0};
    picture.dc()->StretchDIBits(0, 0, 4, 2, 0, 0, 2, 1, row.data(), dibHeader(2, 1, 32).data(),
                                DIB_RGB_COLORS, SRCCOPY);
    EXPECT_EQ(asText(picture), "##..\n##..\n");
}

TEST(Mapping, KeepsUnitsSquareWhenIsotropic)
{
    CPicture picture(200, 100);
    const auto dc = picture.dc();
    dc->SetMapMode(MM_ISOTROPIC);
    dc->SetWindowExt(10, 10);
    dc->SetViewportExt(200, -100);
    CPoint p(10, 10);
    dc->LPtoDP(&p);
    EXPECT_EQ(p, CPoint(100, -100));
    dc->SetWindowExt(0, 5);  // refused
    dc->DPtoLP(&p);
    EXPECT_EQ(p, CPoint(10, 10));
}

TEST(Pictures, OfImpossibleSizesAreEmpty)
{
    for (const auto& [w, h] : {std::pair(0, 5), {5, -1}, {32769, 1}, {greatest, greatest}}) {
        CPicture picture(w, h);
        EXPECT_EQ(picture.width(), 0);
        EXPECT_FALSE(picture.dc()->SetPixelV(0, 0, 0));
        EXPECT_TRUE(picture.dc()->LineTo(5, 5));
    }
    CPicture a(3, 2);
    a.row(1)[2] = 7;
    const CPicture b = std::move(a);
    EXPECT_EQ(b.row(1)[2], 7u);
    EXPECT_EQ(a.width(), 0);
}

TEST(Palettes, GiveBlackWhereTheyHaveNoEntry)
{
    CPicture picture(2, 1);
    const auto dc = picture.dc();
    const PALETTEENTRY entries[2] = {{1, 2, 3, 0}, {200, 100, 50, 0}};
    const HPALETTE palette = CreatePalette(entries, 2);
    EXPECT_EQ(dc->SelectPalette(palette, 0), nullptr);
    EXPECT_EQ(dc->RealizePalette(), 2);
    dc->SetPixel(0, 0, PALETTEINDEX(1));
    dc->SetPixel(1, 0, PALETTEINDEX(2));
    EXPECT_EQ(dc->GetPixel(0, 0), RGB(200, 100, 50));
    EXPECT_EQ(dc->GetPixel(1, 0), RGB(0, 0, 0));
    PALETTEENTRY read[4];
    EXPECT_EQ(GetPaletteEntries(palette, 1, 4, read), 1);
    EXPECT_EQ(GetPaletteEntries(palette, -1, 4, read), 0);
    EXPECT_EQ(CreatePalette(nullptr, 5), nullptr);
    EXPECT_EQ(dc->SelectPalette(nullptr, 0), palette);
    DeletePalette(palette);
}

}  // namespace pavane
