#include "pavane/printing/layout/caption_format.h"
#include "pavane/printing/layout/page_texts.h"
#include "platform/gdi_constants.h"

#include <gtest/gtest.h>
#include <random>
#include <regex>

namespace pavane
{

namespace
{

// Every character 10 wide.
class PlainRuler : public TextRuler
{
public:
    int widthOf(std::string_view text) override { return 10 * characterCount(text); }
    int lineHeight() override { return 20; }
};

CString withoutFirst(CString text, const char* token, const char* with, int* flags, int flag)
{
    const std::size_t at = text.find(token);
    if (at == CString::npos)
        return text;
    *flags |= flag;
    return text.substr(0, at) + with + text.substr(at + 2);
}

CString plainCaption(const CString& format, int page, int& flags)
{
    static const std::regex sign("%%|%([0-]?)([0-9]{0,2})[diu]");
    CString text;
    bool done = false;
    auto at = format.cbegin();
    for (std::smatch found; std::regex_search(at, format.cend(), found, sign);) {
        const bool percent = found.str() == "%%";
        text.append(at, found[0].first);
        char digits[128];
        const int width = found[2].length() ? std::stoi(found[2]) : 0;
        const char* const how = found[1] == "0" ? "%0*d" : found[1] == "-" ? "%-*d" : "%*d";
        if (!percent && !done)
            std::snprintf(digits, sizeof digits, how, width, page);
        text += percent ? "%" : done ? "%" : digits;
        at = percent || !done ? found[0].second : found[0].first + 1;
        done = done || !percent;
    }
    text.append(at, format.cend());
    flags = 10;
    text = withoutFirst(text, "~C", page > 1 ? "(Continued)" : "", &flags, 0);
    for (const auto& [token, flag] :
         {std::pair("~D", 2), {"~U", 1}, {"~U", 1}, {"~R", 16}, {"~L", 4}})
        text = withoutFirst(text, token, "", &flags, flag);
    return text;
}

}  // namespace

TEST(FormatStr, Captions)
{
    const struct {
        const char* format;
        int page;
        const char* text;
        int flags;
    } rows[] = {
        {"Table %d ~U~R", 2, "Table 2 ", 27},
        {"Figure 1 ~C.", 2, "Figure 1 (Continued).", 10},
        {"Table 1. ~U~C", 2, "Table 1. (Continued)", 11},
        {"~C~C~U~U~U~D~D~L", 2, "(Continued)~C~U~D", 15},
        {"%%%d%%%", 7, "%7%%", 10},
        {"%-4i|", 7, "7   |", 10},
        {"%03u", -7, "-07", 10},
        {"%1000d", 7, "%1000d", 10},
        {"%0-5d%+d%.2d%ld%", 7, "%0-5d%+d%.2d%ld%", 10},
        {"50% of peak & more\n", 2, "50% of peak & more\n", 10},

    };
    for (const auto& row : rows) {
        int flags = 0;
        EXPECT_EQ(FormatStr(row.format, row.page, flags), row.text) << row.format;
        EXPECT_EQ(flags, row.flags) << row.format;
    }
    EXPECT_EQ(captionDrawFormat(10), DT_CENTER | DT_WORDBREAK | DT_NOPREFIX);
    EXPECT_EQ(captionDrawFormat(26), DT_RIGHT | DT_WORDBREAK | DT_NOPREFIX);
    EXPECT_EQ(captionDrawFormat(30), DT_LEFT | DT_WORDBREAK | DT_NOPREFIX);
}

TEST(FormatStr, RandomCaptions)
{
    const char* const pieces[] = {"%", "d", "i", "u", "0", "-", "5", "99", "~",    "C",
                                  "D", "U", "R", "L", "s", " ", "n", "&",  "\xff", "\xc3\xa9"};
    std::mt19937 random(20101224);
    for (int turn = 0; turn < 20000; ++turn) {
        CString format;
        for (auto n = random() % 16; n > 0; --n)
            format += pieces[random() % std::size(pieces)];
        const int page = static_cast<int>(random() % 4);
        int flags = 0, plainFlags = 0;
        ASSERT_EQ(FormatStr(format, page, flags), plainCaption(format, page, plainFlags)) << format;
        ASSERT_EQ(flags, plainFlags) << format;
    }
}

TEST(PageTexts, Wrapped)
{
    const CString word(10000, 'x');
    const struct {
        CString text;
        int width, most;
        const char* lines;
    } rows[] = {
        {"one two three", 70, 9, "one two\nthree"},
        {"one two three", 70, 1, "one..."},
        {"one two\r\nthree\n", 200, 9, "one two\nthree"},
        {"a\n\nb", 200, 2, "a\n..."},
        {"abcdefg h", 30, 9, "abc\ndef\ng h"},
        {word, 50, 2, "xxxxx\nxx..."},
        {"\xc3\xa9\xc3\xa9\xc3\xa9", 20, 9, "\xc3\xa9\xc3\xa9\n\xc3\xa9"},
        {"wide", 5, 2, "w"},
        {"two lines", 20, 1, ""},
        {"nothing", 200, 0, ""},
    };
    PlainRuler ruler;
    for (const auto& row : rows) {
        int lines = 0;
        const CString text = wrappedText(row.text, row.width, row.most, ruler, lines);
        EXPECT_EQ(text, row.lines) << row.text.substr(0, 40);
        EXPECT_EQ(lines, text.empty() ? 0 : std::count(text.begin(), text.end(), '\n') + 1);
    }
}

TEST(PageTexts, WhatStandsOnAPage)
{
    PlainRuler ruler;
    APrnAddInfo info;
    info.subscriptFormat = "Map %d ~L";
    info.pageNumber = 1;
    PageTexts page = layOutPage({0, 0, 400, 600}, 16, info, 3, ruler);
    EXPECT_EQ(page.numberBand, CRect(0, 0, 384, 26));
    EXPECT_EQ(page.number, "3. ");
    EXPECT_EQ(page.caption, CRect(0, 580, 400, 600));
    EXPECT_EQ(page.captionText, "Map 3 ");
    EXPECT_EQ(page.picture, CRect(0, 26, 400, 575));
    info.subscriptFormat = "Table ~U" + CString(10000, 'x');
    page = layOutPage({0, 0, 400, 600}, 16, info, 1, ruler);
    EXPECT_EQ(page.caption, CRect(0, 26, 400, 306));  // 14 lines in half of 574
    EXPECT_EQ(page.captionText.substr(page.captionText.size() - 4), "x...");
    EXPECT_EQ(page.picture, CRect(0, 311, 400, 600));
    // one character is no caption, two of six bytes are
    info.pageNumber = 0;
    for (const auto& [text, top] :
         {std::pair("\xe2\x82\xac", 600), {"\xe2\x82\xac!", 575}, {"\xff", 600}}) {
        info.subscriptFormat = text;
        EXPECT_EQ(layOutPage({0, 0, 400, 600}, 16, info, 1, ruler).picture.bottom, top);
    }
    // whatever the room, the picture is a rectangle within it or nothing
    info = {1, 1, "A caption of some words", 1};
    for (int height = -2; height < 120; ++height)
        for (const int width : {-5, 0, 3, 10, 31, 200}) {
            const CRect rect(7, 9, 7 + width, 9 + height);
            const CRect picture = layOutPage(rect, 16, info, 1, ruler).picture;
            CRect inside;
            (void)inside.IntersectRect(picture, rect);
            EXPECT_TRUE(picture == CRect() || (inside == picture && !picture.IsRectEmpty()));
        }
}

TEST(PageTexts, NumbersAndTitles)
{
    const struct {
        int first, page;
        const char* text;
    } numbers[] = {{1, 1, " "},
                   {1, 3, "3. "},
                   {5, 1, "5. "},
                   {-1, 3, " "},
                   {2147483647, 2147483647, "4294967293. "},
                   {-2147483647 - 1, 1, "-2147483648. "}};
    for (const auto& row : numbers)
        EXPECT_EQ(pageNumberText(row.first, row.page), row.text);
    CString accents;
    for (int i = 0; i < 40; ++i)
        accents += "\xc3\xa9";
    EXPECT_EQ(documentTitle(accents), accents.substr(0, 62));
    EXPECT_EQ(documentTitle("-x \"3C\r\n273\"\n\r"), "-x \"3C 273\"  ");
    EXPECT_EQ(documentTitle(CString("a\0b\tc", 5) + "\xff"), "a b c\xef\xbf\xbd");
}

}  // namespace pavane
