#include "pavane/images/AColorPlay.h"
#include "pavane/images/color_vision.h"
#include "pavane/images/palettes.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>

namespace pavane
{
namespace
{

AArray<COLORREF> coloursOf(const std::vector<COLORREF>& values)
{
    AArray<COLORREF> colours;
    for (const COLORREF c : values)
        (void)colours.Add(c);
    return colours;
}

std::string asText(const AArray<COLORREF>& colours)
{
    std::string text;
    for (int i = 0; i < colours.count(); ++i)
        text += static_cast<char>('a' + colours(i));
    return text;
}

TEST(ColorPlay, PutsEachColourInItsPlace)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        AColorPlay play;
        const char* colours;
        const char* expected;  // null: the values are none
    };
    const Case cases[] = {
        {{}, "abcde", "abcde"},
        {{2, 0.5, 1, 0}, "abcde", "aacee"},
        {{1, 0.25, 1, 0}, "abcde", "bcdee"},
        {{1, 0.5, 2, 0}, "abcde", "aabce"},
        {{1, 0.5, 0.5, 0}, "abcde", "acdde"},
        {{1, 0.5, 1, 1}, "abcde", "edcba"},
        {{-1, 0.5, 1, 0}, "abcde", "edcba"},
        {{0, 0.5, 1, 0}, "abcde", "ccccc"},
        {{infinity, 0.5, 1, 0}, "abcde", "aacee"},
        {{1e308, 0.2, 1, 1}, "abcde", "eaaaa"},
        {{1, 1e9, 1, 0}, "abcde", "aaaaa"},
        {{3, 0.1, 2, 1}, "b", "b"},
        {{3, 0.1, 2, 1}, "", ""},
        {{none, 0.5, 1, 0}, "abcde", nullptr},
        {{1, none, 1, 0}, "abcde", nullptr},
        {{1, infinity, 1, 0}, "abcde", nullptr},
        {{1, 0.5, 0, 0}, "abcde", nullptr},
        {{1, 0.5, -1, 0}, "abcde", nullptr},
        {{1, 0.5, infinity, 0}, "abcde", nullptr},
    };
    for (const Case& c : cases) {
        std::vector<COLORREF> values;
        for (const char* letter = c.colours; *letter; ++letter)
            values.push_back(static_cast<COLORREF>(*letter - 'a'));
        AArray<COLORREF> colours = coloursOf(values);
        EXPECT_EQ(c.play.apply(colours), c.expected != nullptr);
        EXPECT_EQ(asText(colours), c.expected ? c.expected : c.colours)
            << c.play.contrast << ' ' << c.play.bias << ' ' << c.play.gamma;
    }
}

TEST(Palettes, AreWrittenForTheUserAndFoundAgain)
{
    const std::string home = testing::TempDir() + "play_home";
    std::filesystem::remove_all(home);
    setenv("XDG_DATA_HOME", home.c_str(), 1);
    const CString folder = UserPaletteFolder();
    EXPECT_EQ(folder, home + "/pavane/palettes/");
    AArray<COLORREF> colours, read;
    CString error;
    EXPECT_FALSE(WritePalette(folder + "mine.pal", coloursOf({1}), error));  // no folder yet
    EXPECT_EQ(error.find(folder + "mine.pal: "), 0u);
    ASSERT_EQ(UserPaletteFolder(1), folder);
    for (int i = 0; i < 226; ++i)
        (void)colours.Add(RGB(i, 255 - i, i / 2));
    ASSERT_TRUE(WritePalette(folder + "mine.pal", colours, error)) << error;
    ASSERT_TRUE(GetPaletteColors("mine", read));
    ASSERT_EQ(read.count(), 226);
    for (int i = 0; i < 226; ++i)
        EXPECT_EQ(read(i), colours(i));
    AObjArray<CString> names = PaletteNames();
    ASSERT_EQ(names.count(), 5);
    EXPECT_EQ(names(4), "mine");
    ASSERT_TRUE(WritePalette(folder + "mine.pal", coloursOf({7}), error));
    ASSERT_TRUE(GetPaletteColors(folder + "mine.pal", read));
    EXPECT_EQ(read(225), 7u);
    std::ofstream(folder + "mine.pal") << "JASC-PAL\n0100\n3\n1 2 3\n";
    EXPECT_FALSE(GetPaletteColors("mine", read));
    EXPECT_EQ(read(225), 7u);
    for (const auto& [count, name] : {std::pair(0, "a.pal"), std::pair(257, "a.pal")}) {
        AArray<COLORREF> wrong(count, count, 1);
        wrong.ZeroInit();
        EXPECT_FALSE(WritePalette(folder + name, wrong, error));
        EXPECT_FALSE(std::filesystem::exists(folder + name));
    }
    unsetenv("XDG_DATA_HOME");
    std::filesystem::remove_all(home);
}

TEST(Palettes, SayWhichOnesAllPeopleCanRead)
{
    AArray<COLORREF> redToGreen, blueToYellow;
    for (int i = 0; i < 64; ++i) {
        (void)redToGreen.Add(RGB(220 - 2 * i, 90 + 2 * i, 40));
        (void)blueToYellow.Add(RGB(4 * i, 4 * i, 255 - 4 * i));
    }
    EXPECT_FALSE(isColorBlindSafe(redToGreen));
    EXPECT_TRUE(isColorBlindSafe(blueToYellow));
    EXPECT_FALSE(isColorBlindSafe(coloursOf({5})));
    for (const auto& [name, safe] : {std::pair("grey", 1), std::pair("heat", 1),
                                     std::pair("diverging", 1), std::pair("defpal", 1)}) {
        AArray<COLORREF> colours;
        ASSERT_TRUE(GetPaletteColors(name, colours));
        EXPECT_EQ(isColorBlindSafe(colours), safe) << name;
    }
}

}  // namespace
}  // namespace pavane
