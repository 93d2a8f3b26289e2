#include "pavane/images/palette_file.h"
#include "pavane/images/palettes.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pavane
{
namespace
{

TEST(Palettes, KeepTheWorkingColoursAndTheHandle)
{
    ASSERT_TRUE(LoadDefaultPalette());
    EXPECT_NE(GetGlobalPaletteName().find("defpal.pal"), CString::npos);
    const HPALETTE handle = *GetGlobalPalette();
    AArray<COLORREF> before, after;
    GetGlobalPaletteColors(0, 226, before);
    ASSERT_TRUE(LoadPalette("diverging"));
    EXPECT_EQ(*GetGlobalPalette(), handle);
    ASSERT_EQ(GetGlobalPaletteColors(226, 999, after), 30);
    const COLORREF expected[] = {0xFFFFFF, 0,        0x808080, 0xC0C0C0, 0x00FFFF, 0xFFFF00,
                                 0xFF00FF, 0x0000FF, 0x00FF00, 0xFF0000, 0};
    for (int i = 0; i < 11; ++i)
        EXPECT_EQ(after(i), expected[i]) << i;
    ASSERT_TRUE(LoadBuiltInPalette());
    EXPECT_EQ(GetGlobalPaletteName(), "");
    GetGlobalPaletteColors(0, 226, after);
    for (int i = 0; i < 226; ++i)
        EXPECT_EQ(after(i), before(i));
    EXPECT_EQ(GetGlobalPaletteColors(-2147483647, 3, after), 0);
    EXPECT_EQ(LoadPalette("no such palette"), 0);
    EXPECT_EQ(LoadPalette("/dev/zero"), 0);
    std::vector<CString> names;
    const AObjArray<CString> found = PaletteNames();
    for (int i = 0; i < found.count(); ++i)
        names.push_back(found(i));
    EXPECT_EQ(names, (std::vector<CString>{"defpal", "diverging", "grey", "heat"}));
}

TEST(PaletteFile, SpreadsFewColoursAndRefusesDamagedText)
{
    PALETTEENTRY colors[256] = {};
    ASSERT_TRUE(parsePalette("JASC-PAL\n0100\n2\n1 2 3\n 4  5\t6", colors));
    EXPECT_EQ(colors[112].peRed, 1);
    EXPECT_EQ(colors[113].peBlue, 6);
    EXPECT_EQ(colors[226].peGreen, 255);
    for (const char* const text :
         {"", "JASC-PAL", "RIFF\n0100\n1\n1 2 3\n", "JASC-PAL\n0100\n0\n",
          "JASC-PAL\n0100\n-1\n1 2 3\n", "JASC-PAL\n0100\n257\n1 2 3\n",
          "JASC-PAL\n0100\n2\n1 2 3\n", "JASC-PAL\n0100\n1\n1 2 256\n", "JASC-PAL\n0100\n1\n1 2\n",
          "JASC-PAL\n0100\n1\n1 2 x\n", "JASC-PAL\n0100\n1\n1 2 3 4\n",
          "JASC-PAL\n0100\n99999999999\n1 2 3\n"})
        EXPECT_EQ(parsePalette(text, colors), 0) << text;
}

}  // namespace
}  // namespace pavane
