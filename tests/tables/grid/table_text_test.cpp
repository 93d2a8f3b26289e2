#include "pavane/tables/grid/table_pages.h"
#include "pavane/tables/grid/table_paste.h"
#include "pavane/tables/grid/table_text.h"
#include "pavane/tables/grid/text_file.h"
#include "pavane/tables/grid/TextBlockReader.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <vector>

using namespace pavane;

namespace
{

using Lines = std::vector<std::vector<std::string>>;

/// Cells "r,c"; a row count that shrinks while it is written; gone after some texts.
struct Numbered : TableTexts {
    TableExtent table{3, 2};
    int shrinkAt = -1;
    int left = 1000;
    TableExtent extent() override { return table; }
    int text(TableCell cell, CString& text) override
    {
        if (cell.row == shrinkAt)
            table = {cell.row, 1};
        text = std::to_string(cell.row) + "," + std::to_string(cell.column);
        return left-- > 0;
    }
};

struct Kept : TextSink {
    std::string text;
    std::size_t room = std::string::npos;
    std::vector<std::size_t> sizes;
    int write(const char* bytes, std::size_t count) override
    {
        if (text.size() + count > room)
            return 0;
        sizes.push_back(count);
        text.append(bytes, count);
        return 1;
    }
};

std::string written(Numbered table, const ASelectRect& selection, int result = 1)
{
    Kept kept;
    EXPECT_EQ(writeTableText(table, selectedCells(selection, table.table), kept), result);
    return kept.text;
}

Lines read(std::string_view text)
{
    Lines lines;
    for (TextBlockReader reader(text); reader.next();) {
        lines.resize(static_cast<std::size_t>(reader.row()) + 1);
        lines.back().resize(static_cast<std::size_t>(reader.column()) + 1);
        lines.back().back() = reader.field();
    }
    return lines;
}

/// Takes what it is given except in column 2 of row 2.
struct Filled : PasteTarget {
    std::vector<std::pair<TableCell, std::string>> cells;
    int goneAfter = 1000;
    Answer put(TableCell cell, std::string_view text) override
    {
        if (goneAfter-- == 0)
            return Answer::stop;
        if (cell == TableCell{2, 2})
            return Answer::refused;
        cells.emplace_back(cell, text);
        return Answer::taken;
    }
};

}  // namespace

TEST(TableText, IsWrittenToTheLetter)
{
    EXPECT_EQ(written({}, {1, 1, 3, 2}),
              "0,0\t0,1\t0,2\n1,0\t1,1\t1,2\n2,0\t2,1\t2,2\n3,0\t3,1\t3,2\n");
    EXPECT_EQ(written({}, {3, 2, 2, 2}), "0,0\t0,2\n2,0\t2,2\n3,0\t3,2\n");
    EXPECT_EQ(written({}, {9, 1, 4, 9}), "0,0\t0,1\t0,2\n");  // beyond the rows
    Numbered shrinks;
    shrinks.shrinkAt = 2;
    EXPECT_EQ(written(shrinks, {1, 1, 3, 2}), "0,0\t0,1\t0,2\n1,0\t1,1\t1,2\n2,0\t2,1\t2,2\n");
    Numbered gone;
    gone.left = 4;
    EXPECT_EQ(written(gone, {1, 1, 3, 2}, 0), "");
    Numbered empty;
    empty.table = {0, 0};
    EXPECT_EQ(written(empty, {}), "0,0\t\n");
}

TEST(TableText, IsWrittenInBlocksAndStopsWhenOneFails)
{
    struct Long : Numbered {
        int text(TableCell cell, CString& text) override
        {
            text.assign(cell.row == 5 ? 100000 : 100, 'x');
            return 1;
        }
    } table;
    table.table = {2000, 3};
    Kept kept;
    ASSERT_TRUE(writeTableText(table, allCells(table.table), kept));
    EXPECT_EQ(kept.text.size(), 2001u * 404 + 4 * 99900);
    for (std::size_t i = 0; i + 1 < kept.sizes.size(); ++i)
        EXPECT_TRUE(kept.sizes[i] <= textBlock || kept.sizes[i] == 100000);
    EXPECT_LT(kept.sizes.size(), 30u);
    Kept full;
    full.room = 200000;
    EXPECT_FALSE(writeTableText(table, allCells(table.table), full));
}

TEST(TextBlockReader, TellsFieldsFromTheirEnds)
{
    const struct {
        const char* text;
        Lines lines;
    } cases[] = {
        {"", {}},
        {"a", {{"a"}}},
        {"a\tb\nc", {{"a", "b"}, {"c"}}},
        {"a\r\nb\rc\n", {{"a"}, {"b"}, {"c"}}},
        {"\n\n", {{""}, {""}}},
        {"a\t", {{"a", ""}}},
        {"\t\n", {{"", ""}}},
        {"\"a\tb\nc\"\td", {{"a\tb\nc", "d"}}},
        {"\"say \"\"no\"\"\"\n", {{"say \"no\""}}},
        {"\"\"\t5\"", {{"", "5\""}}},
        {"\"a\"b\tc", {{"ab", "c"}}},
        {"\"open\tx\n\"y\"", {{"open\tx\ny\""}}},
        {"\"open\tx\ny", {{"\"open", "x"}, {"y"}}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(read(c.text), c.lines) << c.text;
}

TEST(Paste, PutsABlockAndCountsWhatIsLeft)
{
    const TableExtent table{4, 3};
    Filled target;
    PasteResult r = pasteText("a\tb\tc\nd\te\tf\n", oneCell({1, 2}), table, target);
    EXPECT_EQ(r.taken, 3);
    EXPECT_EQ(r.left, 3);  // two beyond the columns, one refused
    EXPECT_EQ(r.firstLeftRow, 1);
    EXPECT_EQ(r.firstLeftColumn, 4);
    ASSERT_EQ(target.cells.size(), 3u);
    EXPECT_EQ(target.cells[2], (std::pair<TableCell, std::string>{{2, 3}, "e"}));
    Filled one;
    r = pasteText("7\n", {3, 1, 1, 9}, table, one);
    EXPECT_EQ(r.taken, 8);
    EXPECT_EQ(r.left, 1);
    EXPECT_EQ(r.firstLeftRow, 2);
    Filled gone;
    gone.goneAfter = 2;
    r = pasteText("7", {1, 1, 4, 3}, table, gone);
    EXPECT_TRUE(r.stopped);
    EXPECT_EQ(r.taken, 2);
    EXPECT_EQ(pasteText("7", {}, {0, 3}, gone).taken, 0);
}

TEST(TextFile, ReplacesOnlyByAWholeFile)
{
    const std::string folder = std::getenv("TEST_TMPDIR") ? std::getenv("TEST_TMPDIR") : "/tmp";
    const std::string name = folder + "/text_file.txt", part = name + ".part";
    const auto textOf = [](const std::string& file) {
        std::ifstream stream(file);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    std::remove(name.c_str());
    std::remove(part.c_str());
    const struct {
        const char* text;
        int written;
        const char *file, *part;
    } steps[] = {{"torn", 0, "torn", ""}, {"old", 1, "old", ""}, {"half", 0, "old", "half"}};
    for (const auto& s : steps) {
        TextFile file;
        ASSERT_TRUE(file.open(name));
        file.stream() << s.text;
        EXPECT_EQ(file.close(s.written), s.written);
        EXPECT_EQ(file.replaces(), *s.part != 0);
        EXPECT_EQ(textOf(name), s.file);
        EXPECT_EQ(textOf(part), s.part);
    }
}

TEST(TablePages, CutTheRows)
{
    const struct {
        int millimetres, header, rows, pages, lastFirst, lastLast;
    } cases[] = {
        {297, 1, 65, 1, 1, 65},  // 66 rows, one of them the header
        {297, 1, 66, 2, 66, 66},
        {297, 0, 66, 1, 1, 66},
        {297, 1, 0, 1, 1, 0},
        {1, 1, 3, 3, 3, 3},
        {0, 0, 0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF},
    };
    for (const auto& c : cases) {
        const TablePages pages = TablePages::ofHeight(c.millimetres, c.header);
        EXPECT_EQ(pages.count(c.rows), c.pages) << c.millimetres << ' ' << c.rows;
        const CellRange rows = pages.rowsOf(c.pages, {c.rows, 4});
        EXPECT_EQ(rows.firstRow, c.lastFirst) << c.rows;
        EXPECT_EQ(rows.lastRow, c.lastLast) << c.rows;
        EXPECT_TRUE(pages.rowsOf(0, {c.rows, 4}).empty());
    }
}
