#include "pavane/tables/grid/column_widths.h"
#include "pavane/tables/grid/SelectionSums.h"
#include "pavane/tables/grid/SortJob.h"
#include "pavane/tables/grid/TableGrid.h"
#include "pavane/tables/grid/TableSearch.h"
#include "tables/grid/draw.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>

using namespace pavane;

namespace
{

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double inf = std::numeric_limits<double>::infinity();

/// Cells that are numbers where they read as one; `goneAfter` hooks later there is no table.
struct Cells : TableValues {
    std::vector<std::vector<CString>> rows;
    int goneAfter = -1;
    const RowOrder* order = nullptr;

    const CString& at(TableCell c) const
    {
        const int row = order ? order->recordOf(c.row) : c.row;
        return rows[static_cast<std::size_t>(row) - 1][static_cast<std::size_t>(c.column) - 1];
    }
    TableExtent extent() override
    {
        return {static_cast<int>(rows.size()), rows.empty() ? 0 : static_cast<int>(rows[0].size())};
    }
    int text(TableCell c, CString& text) override { return text = at(c), goneAfter-- != 0; }
    int number(TableCell c, double& value, int& isNumber) override
    {
        char* end = nullptr;
        value = std::strtod(at(c).c_str(), &end);
        isNumber = !at(c).empty() && *end == 0 && at(c) != " ";
        return goneAfter-- != 0;
    }
};

CString small(CString text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

/// The plain way: compares cells two at a time.
std::vector<int> plainlySorted(Cells& cells, const SortedBy& by, std::vector<int> records)
{
    const RowOrder* const order = std::exchange(cells.order, nullptr);
    const auto less = [&](int a, int b) {
        double x = 0, y = 0;
        int isX = 0, isY = 0;
        const TableCell ca{a, by.column}, cb{b, by.column};
        (void)cells.number(ca, x, isX);
        (void)cells.number(cb, y, isY);
        const auto kind = [](int is, double v, const CString& t) {
            return is ? (std::isnan(v) ? 2 : 0) : t.find_first_not_of(' ') == CString::npos ? 2 : 1;
        };
        int ka = kind(isX, x, cells.at(ca)), kb = kind(isY, y, cells.at(cb));
        if (ka == 2 || kb == 2)
            return ka < kb;
        const CString ta = small(cells.at(ca)), tb = small(cells.at(cb));
        const int order = ka != kb ? ka - kb : ka == 0 ? (x > y) - (x < y) : ta.compare(tb);
        return by.direction == SortDirection::rising ? order < 0 : order > 0;
    };
    std::stable_sort(records.begin(), records.end(), less);
    cells.order = order;
    return records;
}

std::vector<int> recordsOf(const RowOrder& order, int rows)
{
    std::vector<int> records;
    for (int row = 1; row <= rows; ++row) {
        records.push_back(order.recordOf(row));
        EXPECT_EQ(order.rowOf(records.back()), row);
    }
    return records;
}

}  // namespace

TEST(SortJob, OrdersAsComparingCellsDoes)
{
    Draw draw;
    const char* const hostile[] = {
        "",      " ",    "nan",  "-0",           "0",           "inf",
        "-inf",  "3C84", "3c84", "NGC1275 core", "NGC1275 jet", "ngc1275 Core",
        "1e300", "\xff"};
    for (int t = 0; t < 50; ++t) {
        Cells cells;
        const int count = t < 48 ? draw(1, 40) : draw(4097, 9000);
        for (int r = 0; r < count; ++r)
            cells.rows.push_back({draw(0, 2) ? std::to_string(draw(-9, 9)) : hostile[draw(0, 13)],
                                  std::to_string(draw(0, 99999) / 7.0), "same"});
        RowOrder order;
        cells.order = &order;
        std::vector<int> records(static_cast<std::size_t>(count));
        std::iota(records.begin(), records.end(), 1);
        for (int step = 0; step < 4; ++step) {
            const SortedBy by{draw(1, 3),
                              draw(0, 1) ? SortDirection::rising : SortDirection::falling};
            records = plainlySorted(cells, by, records);
            SortJob job(count, by, order);
            int percent = 0;
            while (job.step(cells) == WorkState::goesOn) {
                ASSERT_GE(job.percent(), percent);
                percent = job.percent();
                ASSERT_LE(percent, 100);
            }
            ASSERT_TRUE(job.takeOrder(order));
            ASSERT_EQ(recordsOf(order, count), records) << t << ", " << step;
        }
    }
}

TEST(SortJob, EndsWithItsTable)
{
    Cells cells;
    cells.rows.assign(600, {"b"});
    for (int after = 0; after < 1200; after += 7) {
        const RowOrder stored;
        SortJob job(600, {1, SortDirection::rising}, stored);
        cells.goneAfter = after;
        WorkState state = WorkState::goesOn;
        while (state == WorkState::goesOn)
            state = job.step(cells);
        EXPECT_EQ(state, WorkState::gone);
        RowOrder order;
        EXPECT_FALSE(job.takeOrder(order));
    }
}

TEST(RowOrder, FollowsWhatComesAndGoes)
{
    Draw draw;
    for (int t = 0; t < 400; ++t) {
        std::vector<int> names(static_cast<std::size_t>(draw(1, 9)));  // of records, as shown
        std::iota(names.begin(), names.end(), 1);
        std::shuffle(names.begin(), names.end(), draw.engine);
        std::vector<int> rows(names.size());
        for (std::size_t i = 0; i < names.size(); ++i)
            rows[static_cast<std::size_t>(names[i]) - 1] = static_cast<int>(i) + 1;
        RowOrder order;
        order.set(names, rows);
        const int n = static_cast<int>(names.size());
        const int record = draw(1, n), count = draw(1, 3);
        switch (draw(0, 2)) {
        case 0: {
            const int now = draw(1, 12);
            std::erase_if(names, [&](int r) { return r > now; });
            for (int r = n + 1; r <= now; ++r)
                names.push_back(r);
            order.resize(now);
            break;
        }
        case 1: {
            const auto behind = std::find(names.begin(), names.end(), record - 1);
            auto put = behind == names.end() ? names.begin() : behind + 1;
            for (int& r : names)
                r += r >= record ? count : 0;
            for (int i = 0; i < count; ++i)
                put = names.insert(put, record + i) + 1;
            order.insert(record, count);
            break;
        }
        default: {
            std::erase_if(names, [&](int r) { return r >= record && r < record + count; });
            const int gone = std::min(count, n - record + 1);
            for (int& r : names)
                r -= r > record ? gone : 0;
            order.remove(record, count);
        }
        }
        ASSERT_EQ(recordsOf(order, static_cast<int>(names.size())), names) << t;
    }
    RowOrder order;
    EXPECT_EQ(order.recordOf(7), 7);
    order.insert(1, 5);
    EXPECT_TRUE(order.isStored());
}

TEST(TableSearch, FindsWhatLookingCellByCellFinds)
{
    Draw draw;
    const char* const words[] = {"", "a", "A", "ab", "bA", "\xc3\x96l", "\xc3\xb6l", "b\tA"};
    for (int t = 0; t < 3000; ++t) {
        Cells cells;
        const int columns = draw(1, 4), count = draw(0, 9) ? draw(1, 5) : 120;
        for (int r = 0; r < count; ++r) {
            cells.rows.emplace_back();
            for (int c = 0; c < columns; ++c)
                cells.rows.back().emplace_back(words[draw(0, count > 9 ? 1 : 7)]);
        }
        const FindWhat what{words[draw(1, 7)], draw(0, 1), draw(0, 1), draw(0, 1), draw(0, 1)};
        const TableCell from{draw(1, count), draw(1, columns)};
        const auto fold = [&](CString s) {
            for (std::size_t at; !what.matchCase && (at = s.find("\xc3\x96")) != CString::npos;)
                s[at + 1] = '\xb6';
            return what.matchCase ? s : small(s);
        };
        TableCell at = from, found;
        int wrapped = 0;
        for (int left = count * columns; left > 0 && !found.row; --left) {
            at.column += what.backward ? -1 : 1;
            if (at.column < 1 || at.column > columns) {
                at.column = what.backward ? columns : 1;
                at.row += what.backward ? -1 : 1;
            }
            if (at.row < 1 || at.row > count) {
                at.row = what.backward ? count : 1;
                wrapped = 1;
            }
            const CString cell = fold(cells.at(at)), text = fold(what.text);
            if ((what.wholeCell ? cell == text : cell.find(text) != CString::npos) &&
                (!what.thisColumn || at.column == from.column))
                found = at;
        }
        TableSearch search(what, from);
        while (search.step(cells) == WorkState::goesOn)
            ASSERT_LE(search.percent(), 100);
        ASSERT_EQ(search.found(), found) << t;
        ASSERT_TRUE(!found.row || search.wrapped() == wrapped) << t;
    }
    Cells shrinks;
    shrinks.rows.assign(300, {"x"});
    TableSearch search({"y"}, {250, 1});
    EXPECT_EQ(search.step(shrinks), WorkState::goesOn);
    shrinks.rows.resize(2);
    EXPECT_EQ(search.step(shrinks), WorkState::done);
    EXPECT_EQ(search.found().row, 0);
}

TEST(SelectionSums, AreExactAndSayWhenTheyAreNot)
{
    const struct {
        std::vector<CString> cells;
        std::int64_t most;
        SelectionSums sums;
    } cases[] = {
        {{"1", "", "x", "nan", "-3"}, 100, {5, 2, -2, -1, -3, 1, 0}},
        {{"1e100", "1", "-1e100"}, 100, {3, 3, 1, 1 / 3.0, -1e100, 1e100, 0}},
        {{"1e308", "1e308"}, 100, {2, 2, inf, 1e308, 1e308, 1e308, 0}},
        {{"inf", "1"}, 100, {2, 2, inf, inf, 1, inf, 0}},
        {{"7", "8", "9"}, 2, {2, 2, 15, 7.5, 7, 8, 1}},
        {{"7", "8"}, 2, {2, 2, 15, 7.5, 7, 8, 0}},
        {{"", "x"}, 9, {2, 0, 0, 0, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        Cells cells;
        for (const CString& text : c.cells)
            cells.rows.push_back({text});
        EXPECT_EQ(sumsOf(cells, allCells(cells.extent()), c.most), c.sums) << c.cells[0];
    }
}

TEST(ColumnEdges, AreFoundWhereTheyStand)
{
    TableGrid grid;
    const ATableColumn columns[] = {{50, 0}, {60, 0}, {0, 0}, {40, 0}, {30, 0}};
    grid.columns().set(columns, 5);
    grid.setRows(9);
    grid.setHeaderRow(1);
    grid.layOut({100, 100, 0, 0, 16, 10, 0});
    const struct {
        int first, x, column;
    } cases[] = {{1, 46, -1}, {1, 47, 0},  {1, 53, 0},  {1, 54, -1}, {1, 109, 1},
                 {1, 110, 2}, {1, 113, 2}, {1, 149, 3}, {1, 183, 4}, {1, 184, -1},
                 {3, 52, 0},  {3, 90, 3},  {3, 110, -1}};
    for (const auto& c : cases) {
        (void)grid.setFirst(1, c.first);
        EXPECT_EQ(grid.edgeAt({c.x, 3}, 3), c.column) << c.first << ", " << c.x;
    }
    EXPECT_EQ(grid.edgeAt({50, grid.headerHeight()}, 3), -1);
}

TEST(ColumnWidths, ComeBackFromTheirText)
{
    const ATableColumn three[] = {{50, 0}, {60, colStretch}, {70, 0}};
    TableColumns columns;
    columns.set(three, 3);
    CString text = addWidth(columns, "", 2);
    columns.fix(0, 99999);
    text = addWidth(columns, text, 0);
    EXPECT_EQ(text, "2: 0=32767 2=70");
    const struct {
        const char* text;
        int widths[3];
    } cases[] = {{"2: 0=32767 2=70", {32767, 60, 70}},
                 {"2: 1=-4", {50, 0, 70}},
                 {"3: 1=80", {50, 60, 70}},
                 {"2: 7=80 1=5", {50, 5, 70}},
                 {"2: 1=80x 2=9", {50, 80, 70}},
                 {"2: 1=99999999999 2=9", {50, 60, 70}},
                 {"", {50, 60, 70}}};
    for (const auto& c : cases) {
        columns.set(three, 3);
        applyWidths(columns, c.text);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(columns.width(i), c.widths[i]) << c.text << ", " << i;
    }
    EXPECT_EQ(columns.flags(1), colStretch);
    columns.fix(1, 5);
    EXPECT_EQ(columns.flags(1), 0);
}
