#include "pavane/printing/layout/page_geometry.h"
#include "pavane/printing/layout/page_range.h"
#include "pavane/printing/layout/paper.h"
#include "pavane/printing/layout/print_arguments.h"

#include <climits>
#include <gtest/gtest.h>

namespace pavane
{

namespace
{

constexpr CSize sheetA4{21000, 29700};

std::string asText(JobPages pages)
{
    std::string text;
    for (int n = 0; pages.more() && n < 6; ++n, pages.next())
        text += (n ? " " : "") + std::to_string(pages.page());
    return text + (pages.more() ? " ..." : "");
}

std::string asText(const RangeControls& c)
{
    return c.allLabel + (c.all ? " all" : "") + (c.pages ? " pages " : " ") +
           std::to_string(c.from) + "-" + std::to_string(c.to) + (c.rangeEnabled ? " on" : " off") +
           (c.pageNumber ? " #" : "");
}

}  // namespace

TEST(PageGeometry, PrintableRect)
{
    const PageCaps a4{210, 297, 4960, 7016};
    EXPECT_EQ(printableRect(a4, standardMargins), CRect(472, 236, 4724, 6780));
    EXPECT_EQ(printableRect(a4, {11000, 0, 11000, 0}), CRect());
    EXPECT_EQ(printableRect(a4, {INT_MAX, INT_MIN, INT_MIN, INT_MAX}), CRect());
    for (const PageCaps& none :
         {PageCaps{0, 297, 4960, 7016}, PageCaps{210, 297, 0, 7016}, PageCaps{}})
        EXPECT_EQ(printableRect(none, standardMargins), CRect());
}

TEST(PageGeometry, Margins)
{
    const CRect printer(423, 423, 423, 423);
    const struct {
        CRect margins;
        CSize paper;
        CRect least;
        int side;
        const char* message;
    } rows[] = {
        {standardMargins, sheetA4, {}, -1, ""},
        {{10000, 0, 10000, 28700}, sheetA4, {}, -1, ""},
        {{10001, 0, 10000, 0}, sheetA4, {}, -1, "The margins must leave"},
        {{0, 28701, 0, 0}, sheetA4, {}, -1, "The margins must leave"},
        {{INT_MAX, INT_MAX, INT_MAX, INT_MAX}, sheetA4, {}, -1, "The margins must leave"},
        {{0, 0, -1, 0}, sheetA4, {}, 2, "The right margin must be at least 0.00 mm."},
        {{500, 400, 500, 423}, sheetA4, printer, 1, "The top margin must be at least 4.23 mm."},
        {standardMargins, {0, 29700}, {}, -1, "The paper has no size."},
    };
    for (const auto& row : rows) {
        const MarginCheck check = checkMargins(row.margins, row.paper, row.least);
        EXPECT_EQ(check.valid, !*row.message) << row.message;
        EXPECT_EQ(check.side, row.side) << row.message;
        EXPECT_EQ(check.message.rfind(row.message, 0), 0u) << check.message;
    }
}

TEST(PageRange, EditsAndChecks)
{
    const std::pair<const char*, int> edits[] = {{"12", 12},
                                                 {" +3 ", 3},
                                                 {"-2", -2},
                                                 {"12345678901234567890", INT_MAX},
                                                 {"-12345678901234567890", INT_MIN}};
    for (const auto& [text, value] : edits)
        EXPECT_EQ(pageEditValue(text), value) << text;
    for (const char* const none : {"", "abc", "2.5", "1 2", "-"})
        EXPECT_EQ(pageEditValue(none), 0) << none;
    const struct {
        int from, to;
        RangeField focus;
    } ranges[] = {{1, 5, RangeField::none}, {3, 3, RangeField::none},    {2, 6, RangeField::to},
                  {0, 3, RangeField::from}, {4, 2, RangeField::from},    {-1, 9, RangeField::from},
                  {0, 0, RangeField::from}, {6, INT_MAX, RangeField::to}};
    for (const auto& row : ranges) {
        const RangeCheck check = checkPageRange(row.from, row.to, 1, 5);
        EXPECT_EQ(check.focus, row.focus) << row.from;
        EXPECT_EQ(check.message, row.focus == RangeField::none
                                     ? ""
                                     : "This value is no within the page range.\n"
                                       "Enter a number between 1 and 5");
    }
}

TEST(PageRange, ControlsFollowTheNumberOfPages)
{
    EXPECT_EQ(asText(openedControls(5, 1)), "&All 5 pages all 1-5 on #");
    EXPECT_EQ(asText(openedControls(-1, 0)), "&All all 1-1 off");
    const struct {
        int pages, from, to;  // chosen among 9 pages; from 0: all of them
        int again;
        const char* text;
    } rows[] = {
        {9, 0, 0, 9, "&All 9 pages all 1-9 on"},  // nothing has changed, the page number neither
        {9, 0, 0, 12, "&All 12 pages all 1-12 on #"},
        {9, 0, 0, 1, "&All all 1-1 off"},
        {9, 2, 4, 7, "&All 7 pages pages 2-4 on #"},
        {9, 5, 8, 3, "&All 3 pages pages 3-3 on #"},
        {9, 5, 8, 0, "&All all 1-1 off"},
        {1, 0, 0, 4, "&All 4 pages all 1-4 on #"},
    };
    for (const auto& row : rows) {
        RangeControls controls = openedControls(row.pages, 0);
        if (row.from > 0) {
            controls.from = row.from;
            controls.to = row.to;
            controls.all = 0;
            controls.pages = 1;
        }
        countAgain(controls, row.again);
        EXPECT_EQ(asText(controls), row.text);
    }
}

TEST(PageRange, OrderOfPages)
{
    const struct {
        int from, to, minimum, maximum;
        const char* pages;
    } rows[] = {
        {1, 3, 1, 9, "1 2 3"},
        {3, 1, 1, 9, "3 2 1"},
        {-5, 99, 2, 4, "2 3 4"},
        {9, 9, 1, 2, "2"},
        {65533, 65536, 1, 70000, "65533 65534 65535 65536"},
        {65534, 65535, 1, 65535, "65534 65535 65536 65537 65538 65539 ..."},
        {65535, 65534, 1, 70000, "65535 65534"},
        {INT_MAX - 1, INT_MAX, 1, INT_MAX, "2147483646 2147483647"},
        {1, 2, 5, 3, "5"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(asText(JobPages(row.from, row.to, row.minimum, row.maximum)), row.pages);
    EXPECT_EQ(JobPages(INT_MIN, INT_MAX, INT_MIN, INT_MAX).count(), std::int64_t{1} << 32);
    const PageGrid grid{3, 2};
    EXPECT_EQ(grid.count(), 6);
    const int places[][3] = {{1, 0, 0}, {3, 2, 0}, {4, 0, 1}, {6, 2, 1}, {9, 2, 1}, {-1, 0, 0}};
    for (const auto& [page, down, across] : places)
        EXPECT_TRUE(grid.placeOf(page).down == down && grid.placeOf(page).across == across) << page;
    EXPECT_EQ((PageGrid{INT_MAX, 7}.count()), INT_MAX);
}

TEST(Paper, SizesAndLocales)
{
    const PaperSize papers[] = {{"A4", 21000, 29700},
                                {"letter", 21590, 27940},
                                {"100.5x20", 10050, 2000},
                                {"2000x2000", 200000, 200000}};
    for (const PaperSize& wanted : papers) {
        PaperSize paper;
        CString error;
        EXPECT_TRUE(readPaper(wanted.name, paper, error)) << error;
        EXPECT_TRUE(paper.width == wanted.width && paper.height == wanted.height) << wanted.name;
    }
    for (const char* const none : {"2000.01x300", "0x0", "-210x297", "A7", "", "x", "210x",
                                   "nanxinf", "210x297x3", "19x300", "A4 "}) {
        PaperSize paper;
        CString error;
        EXPECT_FALSE(readPaper(none, paper, error)) << none;
        EXPECT_TRUE(paper == PaperSize() && !error.empty());
    }
    for (const PaperSize& paper : knownPapers())
        EXPECT_LT(sheetOf(paper, 0).cx, sheetOf(paper, 1).cx);
    for (const char* const letter : {"en_US.UTF-8", "fr_CA@euro", "es_MX"})
        EXPECT_EQ(paperOfLocale(letter), "Letter");
    for (const char* const a4 : {"en_GB.UTF-8", "C", "de_DE", "en_", "x_S C", "_", ""})
        EXPECT_EQ(paperOfLocale(a4), "A4") << a4;
}

TEST(PrintArguments, PagesAndMargins)
{
    CString error;
    const struct {
        const char* text;
        int from, to;
    } pages[] = {{"2", 2, 2}, {"2-5", 2, 5}, {"3-", 3, 0}};
    for (const auto& row : pages) {
        CPrintSettings settings;
        EXPECT_TRUE(readPages(row.text, settings, error)) << error;
        EXPECT_TRUE(settings.from == row.from && settings.to == row.to) << row.text;
    }
    CPrintSettings settings;
    for (const char* const none :
         {"5-2", "0-2", "-3", "+1", "", "-", "1-2-3", "1 - 2", "1,2", "99999999999999999999"})
        EXPECT_FALSE(readPages(none, settings, error)) << none;
    EXPECT_TRUE(settings.from == 0 && settings.to == 0);
    CRect margins;
    EXPECT_TRUE(readMargins("0,0.005, 1.234 ,5e1", margins, error));
    EXPECT_EQ(margins, CRect(0, 1, 123, 5000));
    for (const char* const none :
         {"1,2,3", "1,2,3,4,5", "-1,2,3,4", "1,,3,4", "", "nan,1,1,1", "1e9,1,1,1", "1mm,1,1,1"})
        EXPECT_FALSE(readMargins(none, margins, error)) << none;
    EXPECT_EQ(margins, CRect(0, 1, 123, 5000));
}

}  // namespace pavane
