#include "pavane/tables/grid/scroll_scale.h"
#include "pavane/tables/grid/selection_press.h"
#include "pavane/tables/grid/TableGrid.h"
#include "tables/grid/draw.h"
#include "tables/grid/plain_table.h"

#include <gtest/gtest.h>

using namespace pavane;

namespace
{

constexpr int most = 0x7FFFFFFF;

/// The same random table twice.
void makeTables(Draw& draw, TableGrid& grid, PlainTable& plain)
{
    const int count = draw(1, 7);
    for (int c = 0; c < count; ++c) {
        const bool stretches = draw(0, 4) == 0;
        const auto width = static_cast<std::int16_t>(draw(0, 5) ? draw(1, 90) : draw(-3, 300));
        grid.columns().add({width, static_cast<std::uint16_t>(stretches ? colStretch : 0)});
        plain.widths.push_back(std::max<int>(width, 0));
        plain.wanted.push_back(plain.widths.back());
        plain.stretches.push_back(stretches);
    }
    grid.setRows(plain.rows = draw(0, 3) ? draw(0, 60) : draw(0, 1));
    grid.setHeaderRow(plain.header = draw(0, 1));
}

TableGrid tableOf(std::int64_t rows, std::initializer_list<ATableColumn> columns, GridMetrics m)
{
    TableGrid grid;
    grid.columns().set(columns.begin(), static_cast<int>(columns.size()));
    grid.setRows(rows);
    grid.setHeaderRow(m.headerRow);
    grid.layOut(m);
    return grid;
}

}  // namespace

TEST(TableGrid, IsLaidOutScrolledAndHitAsCountingDoes)
{
    Draw draw;
    for (int i = 0; i < 3000; ++i) {
        TableGrid grid;
        PlainTable plain;
        makeTables(draw, grid, plain);
        for (int step = 0; step < 4; ++step) {
            const GridMetrics m{
                draw(0, 300), draw(0, 200), draw(0, 15), draw(0, 15), draw(1, 20), draw(-1, 20), 0};
            grid.layOut(m);
            plain.layOut(m);
            const GridLayout expected{plain.rowHeight, plain.lastFirstRow, plain.lastFirstColumn};
            ASSERT_EQ((GridLayout{grid.rowHeight(), grid.lastFirstRow(), grid.lastFirstColumn()}),
                      expected)
                << i;
            ASSERT_EQ(grid.columns().total(), plain.sum(0, plain.last())) << i;
            const int row = draw(1, 70), column = draw(0, 8);
            (void)grid.setFirst(row, column);
            plain.scroll(row, column);
            const CRect client(0, 0, draw(1, 300), draw(1, 200));
            const TableCell cell{draw(0, plain.rows), draw(0, plain.last())};
            ASSERT_EQ(grid.cellRect(cell.row, cell.column), plain.cellRect(cell.row, cell.column));
            const CPoint p(draw(0, 320), draw(0, 220));
            ASSERT_EQ(grid.cellAt(p), plain.cellAt(p)) << i << ' ' << p.x << ' ' << p.y;
            ASSERT_EQ(grid.pageRows(client), plain.pageRows(client));
            ASSERT_EQ(grid.pageColumns(client), plain.pageColumns(client));
            const CRect area(draw(0, 300), draw(0, 200), draw(0, 300), draw(0, 200));
            const CellRange met = grid.cellsIn(area);
            for (int r = 1; r <= plain.rows; ++r)
                for (int c = 1; c <= plain.last(); ++c) {
                    CRect both, below(plain.width(0), plain.header * plain.rowHeight, 999, 999);
                    const bool meets = r >= plain.firstRow && c >= plain.firstColumn &&
                                       both.IntersectRect(plain.cellRect(r, c), area) &&
                                       both.IntersectRect(both, below);
                    // there is nothing to paint in a column of no width
                    const bool told = met.contains({r, c}) && plain.width(c);
                    ASSERT_EQ(told, meets) << i << ' ' << r << ' ' << c;
                }
            const TableCell first = grid.firstToShow(cell, client);
            plain.show(cell, client);
            ASSERT_EQ(first, (TableCell{plain.firstRow, plain.firstColumn})) << i;
            (void)grid.setFirst(first.row, first.column);
        }
    }
}

TEST(TableGrid, TakesSizesAtTheEndsOfNumbers)
{
    const GridMetrics m{400, 100, 15, 15, 16, 10, 1};  // rows of 20 pixels, four of data
    TableGrid grid = tableOf(std::int64_t{1} << 40, {{50, 0}, {100, 0}}, m);
    EXPECT_EQ(grid.rows(), most);
    EXPECT_EQ(grid.lastFirstRow(), most - 3);
    const CRect client(0, 0, 385, 100);
    EXPECT_EQ(grid.firstToShow({most, 1}, client).row, most - 3);
    EXPECT_EQ(grid.cellRect(most, 1).bottom, most);  // it would be at 40 GPixel
    ASSERT_TRUE(grid.setFirst(most, 1));
    EXPECT_EQ(grid.cellRect(most, 1), CRect(50, 80, 150, 100));
    EXPECT_EQ(grid.cellAt({60, 99}), (TableCell{most, 1}));
    EXPECT_EQ(grid.cellAt({60, most}), (TableCell{most, 1}));
    EXPECT_EQ(grid.rangeRect({1, 1, most, 1}, client), CRect(50, 20, 150, 100));
    EXPECT_EQ(grid.rowShift(1), std::int64_t{most - 4} * 20);
    grid.setRows(-5);
    EXPECT_EQ(grid.rows(), 0);
    const TableGrid none = tableOf(7, {}, m);
    EXPECT_EQ(none.extent().lastColumn, -1);
    EXPECT_EQ(none.cellRect(1, 1), CRect());
    EXPECT_TRUE(none.cellsIn(client).empty());
    EXPECT_EQ(none.cellAt({60, 50}).column, 0);
}

TEST(TableColumns, ConvertOnceAndSaturate)
{
    TableColumns columns;
    const ATableColumn given[] = {
        {10, colChars},    {10, colQuarterChars}, {10, colChars | colQuarterChars | colEdit},
        {32000, colChars}, {-4, colChars},        {-4, 0}};
    columns.set(given, 6);
    const int widths[] = {70, 17, 17, 32767, 0, 0};  // characters of 6 + 1 pixels
    for (int round = 0; round < 2; ++round) {
        columns.convert(6);
        for (int c = 0; c < 6; ++c)
            EXPECT_EQ(columns.width(c), widths[c]) << c;
    }
    EXPECT_EQ(columns.flags(2), colEdit);
    EXPECT_TRUE(columns.remove(3));
    EXPECT_FALSE(columns.remove(5));
    EXPECT_EQ(columns.total(), 104);
}

TEST(TableScroll, ScalesPositionsBeyondSixteenBits)
{
    EXPECT_EQ(barEnd(0), 1);
    EXPECT_EQ(barEnd(40000), 32767);
    EXPECT_EQ(thumbOf(32767, 32767), 32767);  // unscaled as long as it fits
    EXPECT_EQ(positionOf(20000, 32767), 20000);
    EXPECT_EQ(positionOf(40000, 32767), 32767);
    for (const int last : {32768, 65536, 1000000, most}) {
        for (const int p : {1, 2, 3, last / 3, last / 2, last - 1, last}) {
            const double thumb = std::trunc((p - 1.0) * 32766 / (last - 1.0) + 1.5);
            EXPECT_EQ(thumbOf(p, last), thumb) << p << ' ' << last;
            EXPECT_EQ(positionOf(thumbOf(p, last), last),
                      std::trunc((last - 1.0) * (thumb - 1) / 32766 + 1.5));
        }
        EXPECT_EQ(positionOf(thumbOf(last, last), last), last);
    }
}

TEST(TableDrag, ScrollsTowardsAPointerOutside)
{
    // rows of 20 pixels from 20 on, 4 of data; columns of 100 from 50 on, 3 of them
    TableGrid grid = tableOf(1000, {{50, 0}, {100, 0}, {100, 0}, {100, 0}, {100, 0}, {100, 0}},
                             {365, 115, 15, 15, 16, 10, 1});
    ASSERT_TRUE(grid.setFirst(500, 2));
    const CRect client(0, 0, 350, 100);
    const struct {
        CPoint at;
        int firstRow, firstColumn;
        TableCell end;
    } cases[] = {
        {{160, 45}, 500, 2, {501, 3}},
        {{160, 5}, 500, 2, {1, 3}},  // the header row counts as row 1
        {{20, 45}, 500, 2, {501, 1}},
        {{160, -1}, 499, 2, {499, 3}},
        {{160, 100}, 501, 2, {504, 3}},
        {{-1, 45}, 500, 1, {501, 1}},
        {{350, 45}, 500, 3, {501, 5}},
        {{999, 999}, 501, 3, {504, 5}},
    };
    for (const auto& c : cases) {
        const DragStep step = dragStep(grid, c.at, client, 1);
        EXPECT_EQ(step.firstRow, c.firstRow) << c.at.x << ' ' << c.at.y;
        EXPECT_EQ(step.firstColumn, c.firstColumn) << c.at.x << ' ' << c.at.y;
        EXPECT_EQ(step.end, c.end) << c.at.x << ' ' << c.at.y;
    }
    EXPECT_EQ(dragStep(grid, {999, -1}, client, 0).end, (TableCell{500, 4}));
}
