#include "platform/core/DeviceBackend.h"
#include "platform/picture.h"

#include "text_picture.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

CFont fontOf(const CString& face, int height, int escapement = 0, int weight = 0)
{
    LOGFONT font;
    font.lfFaceName = face;
    font.lfHeight = height;
    font.lfEscapement = escapement;
    font.lfWeight = weight;
    CFont made;
    made.CreateFontIndirect(font);
    return made;
}

/// Smallest box around what is not white.
CRect inkOf(const CPicture& picture)
{
    CRect box;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.row(y)[x] != 0xFFFFFF)
                box.UnionRect(box, {x, y, x + 1, y + 1});
        }
    }
    return box;
}

}  // namespace

TEST(Fonts, HaveTheCellHeightThatWasAskedFor)
{
    CPicture picture(10, 10);
    const auto dc = picture.dc();
    TEXTMETRIC metrics;
    for (const int height : {9, 16, 30, 97}) {
        CFont font = fontOf("Arial", height);
        dc->SelectObject(&font);
        ASSERT_TRUE(dc->GetTextMetrics(metrics));
        EXPECT_EQ(metrics.tmHeight, height);
        EXPECT_EQ(metrics.tmAscent + metrics.tmDescent, height);
        EXPECT_EQ(dc->GetTextExtent("any text").cy, height);
    }
    CFont em = fontOf("Arial", -100);  // the common sans-serif cell is 2288 of 2048 units high
    dc->SelectObject(&em);
    dc->GetTextMetrics(metrics);
    EXPECT_EQ(metrics.tmHeight, 112);
    EXPECT_EQ(metrics.tmAveCharWidth, 44);  // 904 of 2048 by the frequency of letters
    dc->SelectStockObject(DEVICE_DEFAULT_FONT);
    dc->GetTextMetrics(metrics);
    EXPECT_EQ(metrics.tmHeight, 16);
}

TEST(Fonts, OfTheDesktopStandForTheCommonOne)
{
    CPicture picture(10, 10);
    const auto dc = picture.dc();
    const CString sample = "Relative declination 0123";
    const auto width = [&](const CString& face, int weight = 0) {
        CFont font = fontOf(face, 40, 0, weight);
        dc->SelectObject(&font);
        return dc->GetTextExtent(sample).cx;
    };
    for (const char* face : {"", "MS Sans Serif", "MS Shell Dlg", "Tahoma", "System", "Helv"})
        EXPECT_EQ(width(face), width("Arial")) << face;
    EXPECT_EQ(width("Arial Bold"), width("Arial", FW_BOLD));
    EXPECT_GT(width("Arial Bold"), width("Arial"));
}

TEST(TextExtents, AddUpAlsoBeyondAscii)
{
    CPicture picture(10, 10);
    const auto dc = picture.dc();
    CFont font = fontOf("Arial", 17);
    dc->SelectObject(&font);
    const CString parts[] = {"AV", "office ",
                             "\xC2\xB5"
                             "as",
                             "\xE2\x88\x92"
                             "5 \xE2\x89\xA5 3",
                             "To."};
    CString all;
    int sum = 0;
    for (const CString& part : parts) {
        all += part;
        sum += dc->GetTextExtent(part).cx;
    }
    EXPECT_EQ(dc->GetTextExtent(all).cx, sum);
    EXPECT_EQ(dc->GetTextExtent("").cx, 0);
    EXPECT_GT(dc->GetTextExtent("\xFF\xFE%n%s").cx, 0);  // no UTF-8, and no format either
}

TEST(TextOut, PutsInkWhereTheCellIs)
{
    struct Case {
        int escapement;
        CRect cell;  ///< relative to the reference point
    };
    CPicture measured(1, 1);
    CFont level = fontOf("Arial", 20);
    const auto measure = measured.dc();
    measure->SelectObject(&level);
    const int w = measure->GetTextExtent("MMMM").cx;
    const Case cases[] = {
        {0, {0, 0, w, 20}}, {900, {0, -w, 20, 0}}, {1800, {-w, -20, 0, 0}}, {2700, {-20, 0, 0, w}}};
    for (const Case& c : cases) {
        CPicture picture(200, 200);
        const auto dc = picture.dc();
        CFont font = fontOf("Arial", 20, c.escapement);
        dc->SelectObject(&font);
        dc->SetBkMode(TRANSPARENT);
        EXPECT_EQ(dc->GetTextExtent("MMMM").cx, w) << "extents are not turned";
        dc->TextOut(100, 100, "MMMM");
        CRect wanted = c.cell;
        wanted.OffsetRect(100, 100);
        CRect common;
        const CRect ink = inkOf(picture);
        common.IntersectRect(ink, wanted);
        EXPECT_EQ(common, ink) << c.escapement;
        EXPECT_GT(ink.Width() * ink.Height(), w * 20 / 3) << c.escapement;
    }
}

TEST(TextOut, DrawsMicroBulletMinusAndComparison)
{
    for (const char* sign :
         {"\xC2\xB5", "\xE2\x80\xA2", "\xE2\x88\x92", "\xE2\x89\xA5", "\xCF\x83"}) {
        CPicture picture(40, 40), box(40, 40);
        for (CPicture* p : {&picture, &box}) {
            const auto dc = p->dc();
            CFont font = fontOf("Arial", 30);
            dc->SelectObject(&font);
            dc->TextOut(5, 5, p == &picture ? sign : "\xEF\xBF\xBF");  // one that no font has
        }
        EXPECT_FALSE(inkOf(picture).IsRectEmpty()) << sign;
        EXPECT_NE(inkOf(picture), inkOf(box)) << sign;
    }
}

TEST(TextOut, FillsItsCellWhenOpaqueAndKeepsToTheClip)
{
    CPicture picture(80, 30);
    const auto dc = picture.dc();
    CFont font = fontOf("Arial", 16);
    dc->SelectObject(&font);
    dc->SetBkColor(RGB(0, 0, 255));
    dc->SetTextColor(RGB(255, 0, 0));
    dc->IntersectClipRect({0, 0, 20, 30});
    dc->TextOut(4, 5, "Wide text");
    EXPECT_EQ(inkOf(picture), CRect(4, 5, 20, 21));
    EXPECT_EQ(dc->GetPixel(4, 20), RGB(0, 0, 255));
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 80; ++x)
            ASSERT_EQ(picture.row(y)[x] >> 24, 0u) << "the byte above the colour stays zero";
    }
}

TEST(DrawText, CutsWhatIsTooLongAtItsRectangle)
{
    CPicture picture(120, 30);
    const auto dc = picture.dc();
    dc->SetBkMode(TRANSPARENT);
    CRect rect(10, 5, 40, 25);
    dc->DrawText("a text that is too long", rect, DT_SINGLELINE | DT_VCENTER);
    EXPECT_LE(inkOf(picture).right, 40);
    CRect before;
    EXPECT_EQ(dc->GetClipBox(before), SIMPLEREGION);
    EXPECT_EQ(before, CRect(0, 0, 120, 30));
    dc->DrawText("a text that is too long", rect, DT_SINGLELINE | DT_NOCLIP);
    EXPECT_GT(inkOf(picture).right, 60);
}

TEST(DrawText, EndsInDotsWhatDoesNotFit)
{
    const CString longText(1000000, 'x');
    const struct {
        const char* text;
        const char* room;  ///< a text as wide as the rectangle
        const char* shown;
    } cases[] = {{"12345678", "12345678", "12345678"},
                 {"12345678", "1234567", "12345..."},
                 {"12345678", "1", "..."},
                 {"\xC2\xB5\xC2\xB5\xC2\xB5\xC2\xB5", "\xC2\xB5\xC2\xB5...", "\xC2\xB5\xC2\xB5..."},
                 {longText.c_str(), "xx...", "xx..."}};
    for (const auto& c : cases) {
        CPicture picture(120, 30), wanted(120, 30);
        for (CPicture* p : {&picture, &wanted}) {
            const auto dc = p->dc();
            CRect rect(3, 3, 3 + dc->GetTextExtent(c.room).cx, 25);
            const bool dots = p == &picture;
            dc->DrawText(dots ? c.text : c.shown, rect,
                         DT_SINGLELINE | (dots ? DT_END_ELLIPSIS : 0));
        }
        EXPECT_EQ(asText(picture), asText(wanted)) << c.shown;
    }
}

TEST(TextOut, DrawsFromPicturesWhatAPainterDraws)
{
    const struct {
        const char* text;
        int height;
        COLORREF color;
    } cases[] = {{"-1.2345e+06 Jy/beam", -12, 0},
                 {"AVTo office \xC2\xB5\xE2\x88\x92\xE2\x89\xA5", 17, RGB(200, 30, 90)},
                 {"To \xD7\xA9\xD7\x9C and a\tb", 16, RGB(255, 255, 255)}};
    for (const int ratio : {1, 2, 3}) {
        for (const auto& c : cases) {
            std::vector<std::uint32_t> pixels[2];
            for (int way = 0; way < 2; ++way) {
                pixels[way].assign(static_cast<std::size_t>(260 * 40 * ratio * ratio), 0x8090A0);
                const PixelSurface surface{pixels[way].data(), 260, 40, 260 * ratio, ratio};
                CDC dc(std::make_unique<SurfaceBackend>(surface));
                const CFont font = fontOf("Arial", c.height);
                if (way == 0) {
                    CFont selected = font;
                    dc.SelectObject(&selected);
                    dc.SetBkMode(TRANSPARENT);
                    dc.SetTextColor(c.color);
                    dc.TextOut(-3, 5, c.text);
                } else {
                    graphicsHook()->softDevice(surface)->text({-3, 5}, c.text, font.logFont(),
                                                              pixelOf(c.color));
                }
            }
            int worst = 0;
            for (std::size_t i = 0; i < pixels[0].size(); ++i)
                for (const int shift : {0, 8, 16})
                    worst =
                        std::max(worst, std::abs(static_cast<int>(pixels[0][i] >> shift & 255) -
                                                 static_cast<int>(pixels[1][i] >> shift & 255)));
            EXPECT_LE(worst, 1) << c.text << " at " << ratio;
        }
    }
}

TEST(SmoothDrawing, SoftensObliqueLinesAndKeepsLevelOnesCrisp)
{
    const auto softPixels = [](CPicture& picture) {
        int soft = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                soft += picture.row(y)[x] != 0 && picture.row(y)[x] != 0xFFFFFF;
        }
        return soft;
    };
    CPicture oblique(40, 40), level(40, 40), inverted(40, 40);
    auto dc = oblique.dc();
    EXPECT_EQ(dc->SetSmooth(1), 0);
    const CPointF line[] = {{2.5, 3.25}, {36.5, 20.75}};
    dc->PolylineF(line, 2);
    EXPECT_GT(softPixels(oblique), 30);
    dc = level.dc();
    dc->SetSmooth(1);
    dc->MoveTo(3, 5);
    dc->LineTo(30, 5);
    dc->Rectangle(5, 10, 30, 30);
    const CPointF upright[] = {{7.3, 2}, {7.3, 30}};
    dc->PolylineF(upright, 2);
    EXPECT_EQ(softPixels(level), 0);
    EXPECT_EQ(level.row(5)[29], 0u);
    EXPECT_EQ(level.row(5)[30], 0xFFFFFFu);
    // an operation that has to be undone pixel by pixel stays exact
    dc = inverted.dc();
    dc->SetSmooth(1);
    dc->SetROP2(R2_NOT);
    dc->MoveTo(1, 2);
    dc->LineTo(35, 20);
    EXPECT_EQ(softPixels(inverted), 0);
}

TEST(SmoothDrawing, HitsPixelCentresAndItsClip)
{
    CPicture picture(60, 60);
    const auto dc = picture.dc();
    dc->SetSmooth(1);
    CPen pen(PS_SOLID, 3, RGB(255, 0, 0));
    dc->SelectObject(&pen);
    dc->SelectStockObject(NULL_BRUSH);
    dc->Ellipse(10, 10, 51, 51);  // round 30, 30 with radius 20
    EXPECT_EQ(dc->GetPixel(30, 10), RGB(255, 0, 0));
    EXPECT_EQ(dc->GetPixel(30, 50), RGB(255, 0, 0));
    EXPECT_EQ(dc->GetPixel(10, 30), RGB(255, 0, 0));
    EXPECT_EQ(inkOf(picture), CRect(9, 9, 52, 52));
    dc->IntersectClipRect({0, 0, 20, 20});
    dc->FillSolidRect({0, 0, 60, 60}, RGB(255, 255, 255));
    dc->SelectClipRgn(nullptr);
    dc->FillSolidRect({0, 0, 60, 60}, RGB(255, 255, 255));
    CRgn region;
    region.CreateRectRgn(0, 0, 30, 60);
    dc->SelectClipRgn(&region);
    const CPointF triangle[] = {{5, 5}, {55, 30}, {5, 55}};
    dc->PolygonF(triangle, 3);
    EXPECT_LE(inkOf(picture).right, 30);
    EXPECT_GT(inkOf(picture).right, 25);
}

}  // namespace pavane
