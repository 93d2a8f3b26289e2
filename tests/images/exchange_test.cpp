#include "pavane/images/ADIBitmap.h"
#include "platform/message.h"
#include "platform/picture.h"
#include "tests/containers/stored_file.h"
#include "tests/images/raster_text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace pavane
{
namespace
{

using namespace std::string_literals;

std::string shown;

class RasterFile : public testing::Test
{
protected:
    void SetUp() override
    {
        shown.clear();
        SetMessageFunction([](const CString& text, unsigned) {
            shown += text + "\n";
            return IDOK;
        });
    }
    void TearDown() override { SetMessageFunction(nullptr); }
};

const std::string storedRaster = "\xFF\xFF\xFF\xFF\2\0\0\0\3\0\0\0\3\0\0\0"
                                 "\0\0\0\0\1\0\0\0\0\0\0\1\0\0\0\0"s;

TEST_F(RasterFile, HoldsTheRectangleAndTheRowsFromTheBottomUp)
{
    ADIBase dib = blank(CRect(-1, 2, 3, 3));
    dib.SetPixel(3, 3, 1);
    dib.SetPixel(2, 2, 1);
    StoredFile file;
    EXPECT_TRUE(dib.Store(file));
    EXPECT_EQ(file.bytes(), storedRaster);
    file.rewind();
    const ADIBase read(file);
    EXPECT_EQ(asText(read), "...#.\n....#\n");
    EXPECT_EQ(shown, "");
    StoredFile none;
    EXPECT_TRUE(ADIBase().Store(none));
    none.rewind();
    EXPECT_EQ(ADIBase(none).lpArray(), nullptr);
    EXPECT_EQ(shown, "");
}

TEST_F(RasterFile, SaysWhenItIsShortAndBelievesNoSize)
{
    for (const std::string& bytes :
         {""s, storedRaster.substr(0, 14), storedRaster.substr(0, 31),
          "\0\0\0\0\0\0\0\0\xFF\xFF\xFF\x7F\xFF\xFF\xFF\x7F"s + std::string(64, '\1')}) {
        shown.clear();
        StoredFile file(bytes);
        const ADIBase dib(file);
        EXPECT_EQ(dib.lpArray(), nullptr);
        EXPECT_EQ(shown, "ADIBase::ADIBase(AFile& s)\n");
    }
    for (int reads = 0; reads < 5; ++reads) {
        StoredFile file(storedRaster);
        file.failAfter(reads);
        const ADIBase dib(file);
        file.failAfter(reads);
        EXPECT_EQ(blank(CRect(0, 0, 1, 1)).Store(file), 0);
    }
}

TEST(RasterExchange, PaintsAndReadsBackInThePaletteOfTheContext)
{
    const PALETTEENTRY colors[] = {{255, 255, 255, 0}, {200, 0, 0, 0}, {0, 0, 200, 0}};
    const HPALETTE palette = CreatePalette(colors, 3);
    CPicture picture(4, 3);
    const std::unique_ptr<CDC> dc = picture.dc();
    dc->SelectPalette(palette, 0);
    dc->RealizePalette();
    ADIBase dib = blank(CRect(1, 1, 2, 2));
    dib.SetPixel(2, 1, 1);
    dib.Draw(*dc);
    EXPECT_EQ(picture.row(1)[2], 0xC80000u);
    EXPECT_EQ(picture.row(2)[2], 0xFFFFFFu);
    const short swapped[] = {0, 2};
    dib.DrawPalIndex(*dc, swapped, 2);
    EXPECT_EQ(picture.row(1)[2], 0x0000C8u);
    picture.row(2)[1] = 0xB01020;  // red is the nearest
    ASSERT_TRUE(dib.LoadFromDC(*dc, palette));
    EXPECT_EQ(dib.GetPixel(2, 1), 2);
    EXPECT_EQ(dib.GetPixel(1, 2), 1);

    StoredFile file;
    ASSERT_TRUE(dib.SaveAsBitmap(*dc, nullptr, file));
    const std::string bytes = file.bytes();
    EXPECT_EQ(bytes.size(), 14u + 40u + 1024u + 8u);
    EXPECT_EQ(bytes.substr(0, 30),
              "BM\x3E\4\0\0\0\0\0\0\x36\4\0\0(\0\0\0\2\0\0\0\2\0\0\0\1\0\x8\0"s);
    EXPECT_EQ(bytes.substr(bytes.size() - 8), "\1\0\0\0\0\2\0\0"s);
    for (std::size_t cut = 0; cut < bytes.size(); cut += 41) {
        StoredFile part(bytes.substr(0, cut));
        EXPECT_EQ(ADIBitmap(part).Width(), 0);
    }
    StoredFile whole(bytes);
    const ADIBitmap bitmap(whole);
    ASSERT_EQ(bitmap.Width() * bitmap.Height(), 4);
    EXPECT_EQ(bitmap.pixel(1, 0), 0x0000C8u);
    EXPECT_TRUE(bitmap.Draw(*dc, CRect(0, 0, 4, 2), 0));
    EXPECT_EQ(picture.row(0)[3], 0x0000C8u);
    EXPECT_EQ(picture.row(1)[0], 0xC80000u);
    DeletePalette(palette);
}

TEST(BitmapFile, ReadsTheUsualKindsAndRefusesOthers)
{
    const auto file = [](int height, int bits, int compression, const std::string& rest) {
        std::string b =
            "BM0000\0\0\0\0"s + char(54 + (bits < 24 ? 8 : 0)) + "\0\0\0(\0\0\0\2\0\0\0"s;
        b += char(height);
        b += std::string(3, height < 0 ? '\xFF' : '\0') + "\1\0"s + char(bits) + '\0' +
             char(compression);
        return b + std::string(15, '\0') + "\2\0\0\0\0\0\0\0"s + rest;
    };
    const std::string table = "\3\2\1\0\6\5\4\0"s;
    struct {
        std::string bytes;
        std::uint32_t topLeft, bottomRight;
    } const cases[] = {
        {file(1, 1, 0, table + "\x40\0\0\0"s), 0x010203, 0x040506},
        {file(1, 4, 0, table + "\x10\0\0\0"s), 0x040506, 0x010203},
        {file(1, 24, 0, "\x0A\x0B\x0C\1\2\3\0\0"s), 0x0C0B0A, 0x030201},
        {file(-2, 24, 0, "abcdef\0\0ghijkl\0\0"s), 0x636261, 0x6C6B6A},
        {file(2, 32, 0, "abc\0def\0ghi\0jkl\0"s), 0x696867, 0x666564},
    };
    for (const auto& c : cases) {
        StoredFile stored(c.bytes);
        const ADIBitmap b(stored);
        ASSERT_EQ(b.Width(), 2);
        EXPECT_EQ(b.pixel(0, 0), c.topLeft);
        EXPECT_EQ(b.pixel(1, b.Height() - 1), c.bottomRight);
    }
    for (const std::string& bytes :
         {file(0, 24, 0, "abcdef\0\0"s), file(1, 24, 1, "abcdef\0\0"s),
          file(1, 5, 0, table + "abcd"), file(1, 0, 0, table + "abcd"),
          file(127, 24, 0, "abcdef\0\0"s), "PM"s + std::string(90, '\0')}) {
        StoredFile stored(bytes);
        EXPECT_EQ(ADIBitmap(stored).Height(), 0);
    }
}

}  // namespace
}  // namespace pavane
