#include "pavane/windows/controls/color_picture.h"
#include "pavane/windows/controls/control_texts.h"
#include "pavane/windows/controls/InfoLines.h"
#include "pavane/windows/controls/tip_timing.h"

#include <gtest/gtest.h>
#include <limits>

using namespace pavane;

TEST(ControlTexts, HavePrefixesWhereTheUnitTakesThem)
{
    const double none = std::numeric_limits<double>::quiet_NaN();
    const struct {
        double value;
        const char* unit;
        int digits;
        const char* text;
    } rows[] = {{0.003214, "Jy/beam", 3, "3.21 mJy/beam"},
                {0.99996, "Jy", 4, "1 Jy"},
                {999.96, "Jy", 4, "1 kJy"},
                {0.00099996, "Jy", 4, "1 mJy"},
                {1234.5, "km/s", 5, "1234.5 km/s"},
                {4.8e9, "Hz", 3, "4.8 GHz"},
                {-2.5e-7, "Jy", 2, "-250 nJy"},
                {0, "Jy", 4, "0 Jy"},
                {none, "Jy", 4, "nan Jy"},
                {12.5, "", 4, "12.5"}};
    for (const auto& row : rows)
        EXPECT_EQ(valueWithUnit(row.value, row.unit, row.digits), row.text);
}

TEST(InfoLines, SelectMoveAndFind)
{
    InfoLines lines;
    EXPECT_FALSE(lines.find("a", 1));
    lines.append("Gr\xc3\xb6\xc3\x9f"
                 "e\nbeam");
    lines.append("Beam of the map");
    ASSERT_EQ(lines.count(), 3);
    const struct {
        TextPlace from;
        int characters, lines;
        TextPlace to;
    } moves[] = {{{0, 2}, 1, 0, {0, 4}},  {{0, 4}, -1, 0, {0, 2}}, {{0, 7}, 1, 0, {1, 0}},
                 {{1, 0}, -1, 0, {0, 7}}, {{0, 0}, -5, 0, {0, 0}}, {{2, 15}, 5, 0, {2, 15}},
                 {{2, 9}, 0, -1, {1, 4}}, {{1, 3}, 0, -1, {0, 4}}, {{1, 3}, 0, 99, {2, 3}},
                 {{9, 9}, 0, 0, {2, 15}}, {{-1, 9}, 0, 0, {0, 0}}};
    for (const auto& move : moves) {
        const TextPlace at =
            lines.byLines(lines.byCharacters(move.from, move.characters), move.lines);
        EXPECT_EQ(at.line, move.to.line) << move.from.line << ' ' << move.from.at;
        EXPECT_EQ(at.at, move.to.at) << move.from.line << ' ' << move.from.at;
    }
    lines.setCaret({2, 4}, 0);
    lines.setCaret({1, 2}, 1);  // upwards
    EXPECT_EQ(lines.selectedText(), "am\nBeam");
    const struct {
        const char* piece;
        int step, line, at;  // -1: none
    } finds[] = {{"beam", 0, 2, 0},     {"beam", 1, 1, 0}, {"beam", -1, 2, 0},
                 {"beam", -1, 1, 0},    {"MAP", 1, 2, 12}, {"\xc3\x9f", 1, 0, 4},
                 {"nothing", 1, -1, 0}, {"", 1, -1, 0}};
    lines.setCaret({1, 2}, 0);
    for (const auto& find : finds) {
        ASSERT_EQ(lines.find(find.piece, find.step), find.line >= 0) << find.piece;
        if (find.line >= 0) {
            EXPECT_EQ(lines.anchor().line, find.line) << find.piece;
            EXPECT_EQ(lines.anchor().at, find.at) << find.piece;
        }
    }
    lines.selectAll();
    EXPECT_EQ(lines.selectedText() + '\n', lines.text());
    lines.setMost(2);  // the selection stays with its text
    EXPECT_EQ(lines.selectedText(), "beam\nBeam of the map");
    lines.clear();
    EXPECT_TRUE(lines.selectedText().empty() && lines.text().empty());
}

TEST(TipTiming, ComesStaysAndGoes)
{
    struct Row {
        int now;
        TipTiming::Seen seen;
        int shown;
        bool dismisses = false;
    };
    const std::vector<std::vector<Row>> runs = {// rests, shows, goes on to the tip and off both
                                                {{0, {0}, -1},
                                                 {400, {0}, -1},
                                                 {500, {0}, 0},
                                                 {600, {-1}, 0},
                                                 {700, {-1, -1, 1}, 0},
                                                 {9000, {-1, -1, 1}, 0},
                                                 {9100, {-1}, 0},
                                                 {9400, {-1}, -1}},
                                                // moves on before the time; then from tip to tip
                                                {{0, {0}, -1},
                                                 {400, {1}, -1},
                                                 {600, {1}, -1},
                                                 {900, {1}, 1},
                                                 {1000, {2}, 1},
                                                 {1060, {2}, 2}},
                                                // by focus, dismissed until the focus is elsewhere
                                                {{0, {-1, 3}, -1},
                                                 {500, {-1, 3}, 3},
                                                 {5000, {-1, 3}, 3, true},
                                                 {6000, {-1, 3}, -1},
                                                 {7000, {-1, 4}, -1},
                                                 {7500, {-1, 4}, 4},
                                                 {8000, {-1, 3}, 4},
                                                 {8060, {-1, 3}, 3}},
                                                // the pointer's tool comes before that of the focus
                                                {{0, {1, 3}, -1},
                                                 {500, {1, 3}, 1, true},
                                                 {1500, {1, 3}, -1},
                                                 {2000, {-1, 3}, -1},
                                                 {3000, {1, 3}, -1},
                                                 {3500, {1, 3}, 1}}};
    for (const auto& run : runs) {
        TipTiming timing;
        EXPECT_FALSE(timing.waits());
        for (const Row& row : run) {
            EXPECT_EQ(timing.see(row.now, row.seen), row.shown) << row.now;
            if (row.dismisses)
                timing.dismiss();
        }
    }
}

TEST(ColorPicture, SpreadsItsColoursWithinAFrame)
{
    std::vector<COLORREF> colors = {RGB(255, 0, 0), RGB(0, 255, 0), RGB(0, 0, 255)};
    for (const int ratio : {1, 2, 3}) {
        const CPicture strip = colorPicture(colors, ratio);
        ASSERT_EQ(strip.width(), stripSize.cx * ratio);
        const std::uint32_t* const row = strip.row(strip.height() / 2);
        EXPECT_EQ(row[0], row[strip.width() - 1]);
        EXPECT_EQ(row[ratio], 0xFF0000u);
        EXPECT_EQ(row[strip.width() / 2], 0x00FF00u);
        EXPECT_EQ(row[strip.width() - ratio - 1], 0x0000FFu);
    }
    EXPECT_EQ(colorPicture({RGB(1, 2, 3)}, 1).width(), swatchSize.cx);
    EXPECT_EQ(colorPicture({}, 1).width() + colorPicture(colors, 0).width(), 0);
}
