#include "platform/picture_bytes.h"

#include "platform/picture_file.h"
#include "posix/StopFlag.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <unistd.h>

namespace pavane
{

namespace
{

using Bytes = std::vector<unsigned char>;

/// The picture as another reader of PNG sees it, on white.
int readBack(const Bytes& bytes, CPicture& picture, CString& error)
{
    const CString file = (std::filesystem::temp_directory_path() /
                          ("pavane-bytes-" + std::to_string(getpid()) + ".png"))
                             .string();
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    const int isRead = LoadPicture(file, picture, error);
    std::filesystem::remove(file);
    return isRead;
}

int greatestDifference(const CPicture& a, const CPicture& b)
{
    if (a.width() != b.width() || a.height() != b.height())
        return 256;
    int greatest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            for (const int shift : {0, 8, 16})
                greatest =
                    std::max(greatest, std::abs(static_cast<int>(a.row(y)[x] >> shift & 255) -
                                                static_cast<int>(b.row(y)[x] >> shift & 255)));
    return greatest;
}

/// Text, straight and turned, soft and crisp strokes, shapes, an image: each way to paint pixels.
void drawAllKinds(CDC& dc)
{
    dc.SetSmooth(1);
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(RGB(200, 0, 0));
    dc.TextOut(5, 5, "Flux [Jy]");
    LOGFONT turned;
    turned.lfHeight = 20;
    turned.lfEscapement = 300;
    CFont font;
    font.CreateFontIndirect(turned);
    CFont* const before = dc.SelectObject(&font);
    dc.TextOut(20, 120, "Declination");
    dc.SelectObject(before);
    CPen pen(PS_SOLID, 3, RGB(0, 90, 180));
    dc.SelectObject(&pen);
    CBrush brush(RGB(250, 220, 40));
    dc.SelectObject(&brush);
    dc.Ellipse(60, 40, 110, 90);
    dc.Rectangle(10, 60, 40, 80);
    std::vector<CPointF> curve;
    for (int i = 0; i < 400; ++i)
        curve.push_back({5 + 0.35 * i, 100 + 30 * std::sin(i * 0.1)});
    dc.PolylineF(curve.data(), static_cast<int>(curve.size()));
    CPen dashed(PS_DASH, 1, RGB(0, 0, 0));
    dc.SelectObject(&dashed);
    dc.MoveTo(0, 0);
    dc.LineTo(149, 139);
    CPicture stamp(10, 10);
    dc.BitBlt(130, 10, 10, 10, stamp.dc().get(), 0, 0, SRCCOPY);
}

}  // namespace

TEST(PictureBytes, HoldEveryPixelAtEachSpeedAndSize)
{
    const struct {
        int width, height, colours;
    } cases[] = {{1, 1, 2}, {3, 2, 1 << 24}, {600, 590, 1 << 24}, {200, 90, 3}, {1300, 1100, 200}};
    std::mt19937 random(1);
    for (const auto& c : cases) {
        CPicture picture(c.width, c.height);
        for (int y = 0; y < c.height; ++y)
            for (int x = 0; x < c.width; ++x)
                picture.row(y)[x] = y % 3 == 2 ? picture.row(y - 1)[x]
                                               : static_cast<std::uint32_t>(random()) %
                                                     static_cast<std::uint32_t>(c.colours);
        for (const PngSpeed speed : {PngSpeed::smallest, PngSpeed::usual, PngSpeed::fastest}) {
            if (c.width > 1000 && speed != PngSpeed::usual)
                continue;  // only in pieces, which is slow with sanitizers
            Bytes bytes;
            CString error;
            CPicture read;
            ASSERT_TRUE(PNGBytes(picture, bytes, error, 96, speed)) << error;
            ASSERT_TRUE(readBack(bytes, read, error)) << error;
            EXPECT_EQ(greatestDifference(picture, read), 0)
                << c.width << " x " << c.height << ", speed " << static_cast<int>(speed);
        }
    }
}

TEST(PictureBytes, OfATransparentPictureGiveTheWhiteOneOnWhite)
{
    CPicture white(150, 140);
    CPicture clear(150, 140, PictureGround::transparent);
    EXPECT_FALSE(white.dc()->IsTransparent());
    EXPECT_TRUE(clear.dc()->IsTransparent());
    drawAllKinds(*white.dc());
    drawAllKinds(*clear.dc());
    EXPECT_EQ(clear.row(139)[0] >> 24, 255u);  // nothing was drawn there
    EXPECT_EQ(clear.row(70)[25] >> 24, 0u);    // inside the rectangle
    EXPECT_EQ(clear.row(65)[85] >> 24, 0u);    // and the ellipse
    Bytes bytes;
    CString error;
    CPicture read;
    ASSERT_TRUE(PNGBytes(clear, bytes, error)) << error;
    EXPECT_EQ(bytes[25], 6);  // with alpha
    ASSERT_TRUE(readBack(bytes, read, error)) << error;
    EXPECT_LE(greatestDifference(white, read), 3);  // each mixture is rounded once more
}

TEST(PictureBytes, OfPagesAreThoseOfTheirFiles)
{
    for (const CPageFile::Format format : {CPageFile::Format::svg, CPageFile::Format::pdf}) {
        CPageFile page(format, 100, 80, "bytes", 12, PictureGround::transparent);
        EXPECT_TRUE(page.dc().IsTransparent());
        page.dc().TextOut(10, 10, "in memory");
        Bytes bytes;
        CString error;
        ASSERT_TRUE(page.CloseBytes(bytes, error)) << error;
        const std::string text(bytes.begin(), bytes.end());
        EXPECT_NE(text.find(format == CPageFile::Format::svg ? "</svg>" : "%%EOF"),
                  std::string::npos);
    }
}

TEST(PictureBytes, ThatAreGivenUpLeaveWhatWasThere)
{
    const CPicture picture(2000, 2000);  // packed in pieces
    const Bytes old = {1, 2, 3};
    Bytes bytes = old;
    CString error;
    StopFlag stop;
    int asked = 0;
    stop.ask([&] { return ++asked < 2; });  // when packing has begun
    for (int i = 0; i < 100 && PNGBytes(picture, bytes, error, 96, PngSpeed::usual, &stop); ++i)
        bytes = old;
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(error, "The picture was given up");
    EXPECT_EQ(bytes, old);
    EXPECT_FALSE(SavePNG(picture, "/nowhere/a.png", error, 96, [] { return 0; }));
    EXPECT_EQ(error, "The picture was given up");
    stop.clear();
    stop.ask({});
    EXPECT_TRUE(PNGBytes(picture, bytes, error, 96, PngSpeed::fastest, &stop));
    EXPECT_GT(bytes.size(), old.size());
}

TEST(PictureBytes, DrawingEndsWhenItsFlagComesUp)
{
    CPicture picture(20, 20);
    const auto dc = picture.dc();
    StopFlag stop;
    dc->setStop(&stop);
    dc->FillSolidRect({0, 0, 10, 20}, RGB(0, 0, 0));
    stop.stop();
    dc->FillSolidRect({10, 0, 20, 20}, RGB(0, 0, 0));
    EXPECT_TRUE(dc->isStopped());
    EXPECT_EQ(picture.row(5)[5], 0u);
    EXPECT_EQ(picture.row(5)[15], 0xFFFFFFu);
    for (const CPageFile::Format format : {CPageFile::Format::svg, CPageFile::Format::pdf}) {
        CPageFile page(format, 100, 80, "");
        page.dc().setStop(&stop);
        Bytes bytes;
        CString error;
        EXPECT_FALSE(page.CloseBytes(bytes, error));
        EXPECT_EQ(error, "The picture was given up");
        EXPECT_TRUE(bytes.empty());
    }
}

}  // namespace pavane
