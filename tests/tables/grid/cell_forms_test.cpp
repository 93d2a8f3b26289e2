#include "pavane/tables/grid/cell_forms.h"
#include "pavane/tables/grid/TextBlockReader.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <sstream>
#include <vector>

using namespace pavane;

namespace
{

/// Cells of a matrix of texts, headers included.
struct Texts : TableTexts {
    std::vector<std::vector<std::string>> rows;
    int left = 1 << 20;
    TableExtent extent() override
    {
        return {static_cast<int>(rows.size()) - 1, static_cast<int>(rows[0].size()) - 1};
    }
    int text(TableCell cell, CString& text) override
    {
        text = rows[static_cast<std::size_t>(cell.row)][static_cast<std::size_t>(cell.column)];
        return left-- > 0;
    }
};

}  // namespace

TEST(CellForms, KeepAnEmptyFieldAndATab)
{
    Texts table;
    table.rows = {{"", "a", "b"}, {"1", "", "x\ty"}};
    CellForms forms;
    ASSERT_EQ(writeCellForms(table, {1, 1, 1, 1}, 0, 10000, forms), CellsWritten::whole);
    EXPECT_EQ(forms.csv, "\"\"\r\n");
    EXPECT_EQ(forms.block, "\n");
    EXPECT_EQ(forms.html.find("<th>"), std::string::npos);
    ASSERT_EQ(writeCellForms(table, {1, 2, 1, 2}, 1, 10000, forms), CellsWritten::whole);
    EXPECT_NE(forms.html.find("<tr><th>1</th><td>x&#9;y</td></tr>"), std::string::npos);
}

TEST(CellForms, GiveUpWhatDoesNotFitAndStopWhenTheTableDoes)
{
    Texts table;
    table.rows.assign(101, {"", std::string(100, 'x')});
    const struct {
        std::size_t most;
        CellsWritten written;
        bool csv, html;
    } cases[] = {{100000, CellsWritten::whole, true, true},
                 {25000, CellsWritten::whole, true, false},
                 {12000, CellsWritten::whole, false, false},
                 {9000, CellsWritten::tooLarge, false, false}};
    for (const auto& c : cases) {
        CellForms forms;
        EXPECT_EQ(writeCellForms(table, {1, 1, 100, 1}, 1, c.most, forms), c.written) << c.most;
        EXPECT_EQ(!forms.csv.empty(), c.csv) << c.most;
        EXPECT_EQ(forms.html.find("</html>") != std::string::npos, c.html) << c.most;
        EXPECT_LE(forms.block.size() + forms.csv.size() + forms.html.size(), c.most + 100);
    }
    CellForms forms;
    table.left = 7;
    EXPECT_EQ(writeCellForms(table, {1, 1, 100, 1}, 1, 100000, forms), CellsWritten::stopped);
}

TEST(CellForms, AreReadBackByOthers)
{
    const char* const temporary = std::getenv("TEST_TMPDIR");
    const std::string folder = std::string(temporary ? temporary : "/tmp") + "/cell_forms";
    std::filesystem::create_directories(folder);
    const std::string signs =
        "a~ ~  b~,~\t~\"~\n~\r~\r\n~<b>~&amp;~</td>~'~=1+1~\xFF~\xC3~\xE2\x82~"
        "\xED\xA0\x80~\xF0\x9F\x98\x80~\xC3\xA9~\x01~\xC0\xAF~zero";
    std::vector<std::string> pieces;
    std::istringstream stream(signs);
    for (std::string piece; std::getline(stream, piece, '~');)
        pieces.push_back(piece == "zero" ? std::string(1, '\0') : piece);
    std::mt19937 engine{5};
    Texts table;
    std::ofstream expected(folder + "/expected");
    for (int row = 0; row < 500; ++row) {
        auto& cells = table.rows.emplace_back(8);
        for (std::string& cell : cells) {
            for (auto n = engine() % 6; n > 0; --n)
                cell += pieces[engine() % pieces.size()];
            expected << (&cell == &cells[0] ? "" : ",");
            for (const char c : cell)
                expected << "0123456789abcdef"[c >> 4 & 15] << "0123456789abcdef"[c & 15];
        }
        expected << '\n';
    }
    expected.close();
    CellForms forms;
    ASSERT_EQ(writeCellForms(table, {1, 1, 499, 7}, 1, 1 << 24, forms), CellsWritten::whole);
    TextBlockReader reader(forms.block);
    for (std::size_t row = 1; row < 500; ++row)
        for (std::size_t column = 1; column < 8; ++column) {
            ASSERT_TRUE(reader.next());
            ASSERT_EQ(reader.field(), table.rows[row][column]) << row << ' ' << column;
        }
    EXPECT_FALSE(reader.next());
    if (std::system("/usr/bin/python3 -c pass") != 0)
        GTEST_SKIP() << "no Python";
    std::ofstream(folder + "/csv", std::ios::binary) << forms.csv;
    std::ofstream(folder + "/html", std::ios::binary) << forms.html;
    EXPECT_EQ(std::system((CELL_READER " " + folder).c_str()), 0);
}
