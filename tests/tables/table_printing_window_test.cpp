// Tables on pages, measured in the pages.
#include "platform/picture.h"
#include "tables/table_fixture.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <map>

using namespace pavane;

namespace
{

constexpr CSize a4{794, 1123};  // pixels of 96 per inch
constexpr CRect printable{76, 38, 756, 1085};
constexpr double pixelsOfMillimetre = 96 / 25.4;

struct Text {
    double x = 0, y = 0, size = 0, width = 0;
};

/// What is on a page, in pixels of 96 per inch.
struct PageRead {
    std::multimap<std::string, Text> texts;
    std::vector<double> strokes;

    explicit PageRead(const CString& file, int unit)
    {
        std::ifstream in(file);
        for (std::string line; std::getline(in, line);) {
            const auto number = [&](const char* name) {
                const auto at = line.find(name);
                const auto from = at + std::string(name).size();
                return at == line.npos ? 0 : std::stod(line.substr(from)) / unit;
            };
            if (line.starts_with("<text")) {
                const auto from = line.find('>') + 1;
                texts.insert({line.substr(from, line.find('<', from) - from),
                              {number(" x=\""), number(" y=\""), number(" font-size=\""),
                               number(" textLength=\"")}});
            } else if (line.find(" stroke-width=") != line.npos) {
                strokes.push_back(number(" stroke-width=\""));
            }
        }
    }
    const Text& at(const std::string& text) const
    {
        static const Text none;
        const auto found = texts.find(text);
        EXPECT_NE(found, texts.end()) << text;
        return found == texts.end() ? none : found->second;
    }
};

CString pageName()
{
    const char* const folder = std::getenv("TEST_TMPDIR");
    return std::string(folder ? folder : "/tmp") + "/table.svg";
}

/// Page `page` of the table, with `unit` units to a pixel; `pages` gets their number.
PageRead printed(ATableWnd& table, int page, int unit, int& pages, int caption = 0)
{
    const CString file = pageName();
    CPageFile sheet(CPageFile::Format::svg, a4.cx, a4.cy, "", unit);
    CRect rect(printable.left * unit, printable.top * unit, printable.right * unit,
               printable.bottom * unit);
    const int saved = sheet.dc().SaveDC();
    sheet.dc().IntersectClipRect(rect);
    pages = table.GetPages(sheet.dc());
    sheet.dc().RestoreDC(saved);
    rect.top += caption * unit;
    table.PrintWindow(sheet.dc(), rect, page);
    CString error;
    EXPECT_TRUE(sheet.Close(file, error)) << error;
    return PageRead(file, unit);
}

std::vector<ATableColumn> columnsOf(int count, int width)
{
    std::vector<ATableColumn> columns(static_cast<std::size_t>(count) + 1);
    for (ATableColumn& column : columns)
        column.width = static_cast<std::int16_t>(width);
    return columns;
}

}  // namespace

TEST(TablePages, AreTheSameAtAnyFineness)
{
    for (const int count : {4, 40}) {  // they fit; they do not
        ShownTable table;
        table.setOptions(optHeaderRow | optVertLines | optHorzLines);
        table.make(200, columnsOf(count, 60));
        int pages = 0;
        const PageRead fine = printed(table, 2, 12, pages, 20);
        EXPECT_EQ(pages, 4);  // 66 rows a page, one of them the header
        EXPECT_FALSE(fine.strokes.empty());
        for (const int unit : {1, 3, 6}) {
            SCOPED_TRACE(unit);
            const PageRead page = printed(table, 2, unit, pages, 20);
            ASSERT_EQ(page.texts.size(), fine.texts.size());
            ASSERT_EQ(page.strokes.size(), fine.strokes.size());
            for (std::size_t i = 0; i < fine.strokes.size(); ++i)
                EXPECT_NEAR(page.strokes[i] / fine.strokes[i], 1, 0.05 + 0.1 / unit);
            for (auto a = fine.texts.begin(), b = page.texts.begin(); a != fine.texts.end();
                 ++a, ++b) {
                EXPECT_EQ(a->first, b->first);
                EXPECT_NEAR(a->second.y, b->second.y, 1.0 / unit + 0.6);
                // of tiny letters whole pixels are another part
                EXPECT_NEAR(b->second.size / a->second.size, 1, count == 4 ? 0.05 : 0.8 / unit);
            }
        }
    }
}

TEST(TablePages, HaveTheirRowsAndColumns)
{
    const struct {
        const char* name;
        int rows, columns, width, split, caption;
        int pages, percent;
        int page;
        const char *has, *hasToo, *hasNot;
    } cases[] = {
        {"one", 65, 3, 60, 0, 0, 1, 100, 1, "11", "653", "661"},
        {"second", 66, 3, 60, 0, 0, 2, 100, 2, "661", "col 3", "651"},
        {"none", 0, 3, 60, 0, 0, 1, 100, 1, "col 0", "col 3", "row 1"},
        {"beyond", 66, 3, 60, 0, 0, 2, 100, 3, "", "", "col 0"},
        {"below", 66, 3, 60, 0, 0, 2, 100, 0, "", "", "col 0"},
        {"shrunk", 70, 20, 60, 0, 30, 2, 57, 1, "120", "row 65", "row 66"},
        {"split, down", 70, 20, 60, 1, 30, 4, 100, 2, "row 66", "col 10", "col 11"},
        {"split, across", 70, 20, 60, 1, 30, 4, 100, 3, "row 1", "col 11", "col 10"},
        {"split, last", 70, 20, 60, 1, 30, 4, 100, 4, "7020", "row 70", "row 65"},
        {"split, fits", 70, 3, 60, 1, 0, 2, 100, 2, "701", "703", "row 65"},
        {"split, one is wider", 3, 2, 3000, 1, 0, 2, 11, 2, "12", "row 3", "11"},
        {"long", 0x7FFFFFFF, 2, 120, 0, 0, 33038210, 100, 33038210, "row 2147483647", "col 2",
         "11"},
        {"long and split", 0x7FFFFFFF, 70, 3000, 1, 0, 0x7FFFFFFF, 11, 33038211, "12", "col 2",
         "11"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ShownTable table;
        table.setOptions(optHeaderRow | optVertLines);
        table.make(c.rows, columnsOf(c.columns, c.width));
        table.SetPrintSplit(c.split);
        int pages = 0;
        const PageRead page = printed(table, c.page, 12, pages, c.caption);
        EXPECT_EQ(pages, c.pages);
        CPageFile sheet(CPageFile::Format::svg, a4.cx, a4.cy, "", 12);
        sheet.dc().IntersectClipRect({76 * 12, 38 * 12, 756 * 12, 1085 * 12});
        EXPECT_NEAR(table.GetPrintPercent(sheet.dc()), c.percent, 1);
        for (const char* const text : {c.has, c.hasToo})
            EXPECT_TRUE(!*text || page.texts.contains(text)) << text;
        EXPECT_FALSE(page.texts.contains(c.hasNot));
        for (const auto& [text, place] : page.texts) {
            EXPECT_GE(place.x, printable.left) << text;
            EXPECT_LE(place.x + place.width, printable.right + 0.5) << text;
            EXPECT_GT(place.y - 0.75 * place.size, printable.top + c.caption) << text;
            EXPECT_LT(place.y, printable.bottom) << text;
        }
    }
}

TEST(TablePages, ShareTheHeightAmongTheirRows)
{
    const struct {
        int height, asked;  // pixels; whether GetPages was asked for the whole page before
        double row;         // millimetres
        const char* last;   // row of the first page
    } cases[] = {
        {1047, 1, 4.197, "row 65"}, {900, 1, 3.608, "row 65"}, {1123, 0, 4.5, "row 65"},
        {600, 0, 3.024, "row 51"},  // 158.75 mm have room for 52 rows of 3 mm
        {40, 0, 3.528, "row 2"},    {10, 0, 1.323, "row 1"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.height);
        ShownTable table;
        table.setOptions(optHeaderRow);
        table.make(1000, columnsOf(2, 60));
        const CString file = pageName();
        CPageFile sheet(CPageFile::Format::svg, a4.cx, a4.cy, "", 12);
        CPicture other(600, 400);  // another printer
        const auto screen = other.dc();
        EXPECT_EQ(table.GetPages(c.asked ? sheet.dc() : *screen), c.asked ? 16 : 46);
        CRect rect(100 * 12, 0, 700 * 12, c.height * 12);
        table.PrintWindow(sheet.dc(), rect, 1);
        CString error;
        ASSERT_TRUE(sheet.Close(file, error)) << error;
        const PageRead page(file, 12);
        EXPECT_EQ(page.texts.rbegin()->first.substr(0, 3), "row");
        EXPECT_TRUE(page.texts.contains(c.last));
        EXPECT_EQ(page.texts.count("row " + std::to_string(std::atoi(c.last + 4) + 1)), 0u);
        const double row = page.at("row 1").y - page.at("col 0").y;
        EXPECT_NEAR(row / pixelsOfMillimetre, c.row, 0.02);
        EXPECT_NEAR(page.at("row 1").size / row, 0.895 * 13 / table.GetCellHeight(), 0.03);
    }
}

TEST(TablePages, StretchColumnsToThePaperAndDrawCellsAsOnTheScreen)
{
    struct Marked : ShownTable {
        CRect seen;
        void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override
        {
            EXPECT_EQ(state, 0);
            EXPECT_EQ(rect.Height() + 1, GetCellHeight());  // a unit is one of the screen's
            if (row == 1 && column == 2)
                seen = rect;
            dc.FillSolidRect({rect.left, rect.top, rect.left + 10, rect.top + 1}, RGB(255, 0, 0));
        }
    } table;
    table.setOptions(optHeaderRow);
    table.make(5, {{40, 0}, {40, colStretch}, {60, 0}});
    ASelectRect all{1, 1, 5, 2};
    table.SetSelectRect(all);
    int pages = 0;
    const PageRead page = printed(table, 1, 12, pages);
    const double scale = (1085 - 38) / 66.0 / table.GetCellHeight();
    EXPECT_NEAR(table.seen.right * scale, printable.Width(), 3);
    EXPECT_EQ(table.seen.Width() + 1, 60);
}
