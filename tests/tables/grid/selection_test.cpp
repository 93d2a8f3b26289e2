#include "pavane/tables/grid/selection_moves.h"
#include "pavane/tables/grid/selection_press.h"
#include "pavane/tables/grid/selection_repaint.h"
#include "tables/grid/draw.h"
#include "tables/grid/plain_table.h"

#include <gtest/gtest.h>

using namespace pavane;

namespace
{

ASelectRect selectionBy(Draw& draw)
{
    return {draw(-1, 12), draw(-1, 8), draw(-1, 12), draw(-1, 8)};
}

}  // namespace

TEST(Selection, MovesAsManySingleSteps)
{
    Draw draw;
    PlainTable plain;
    const CRect client(0, 0, 200, 95);
    for (int i = 0; i < 20000; ++i) {
        plain.rows = draw(0, 11);
        plain.widths.assign(static_cast<std::size_t>(draw(0, 7)), 40);
        plain.rowHeight = 20;
        const ASelectRect from = selectionBy(draw);
        const auto move = static_cast<TableMove>(draw(0, 13));
        const int count = draw(1, 5), extend = draw(0, 1);
        const MoveSpace space{plain.extent(), plain.pageRows(client), plain.pageColumns(client)};
        ASSERT_EQ(movedSelection(from, move, count, extend, space),
                  plain.moved(from, move, count, extend, client))
            << i;
    }
}

TEST(Selection, MovesToTheEndsOfTheLargestTable)
{
    constexpr int most = 0x7FFFFFFF;
    const MoveSpace space{{most, 30}, most, 1};
    EXPECT_EQ(movedSelection({}, TableMove::pageDown, most, 0, space), oneCell({most, 1}));
    EXPECT_EQ(movedSelection(oneCell({most - 1, 30}), TableMove::next, most, 1, space),
              (ASelectRect{most, 30, most - 1, 30}));
    EXPECT_EQ(movedSelection(oneCell({most, 1}), TableMove::previous, 1, 0, space),
              oneCell({most - 1, 30}));
}

TEST(Selection, FollowsAPress)
{
    const ASelectRect old{3, 4, 5, 6};
    const TableExtent table{10, 7};
    const struct {
        const char* name;
        TableCell cell;
        int shift, ranges, selects;
        ASelectRect selection;
    } cases[] = {
        {"cell", {2, 3}, 0, 1, 1, {2, 3, 2, 3}},
        {"cell, no ranges, Shift", {2, 3}, 1, 0, 1, {2, 3, 2, 3}},
        {"end", {2, 3}, 1, 1, 1, {3, 4, 2, 3}},
        {"column", {0, 3}, 1, 1, 1, {10, 3, 1, 3}},
        {"row", {2, 0}, 1, 1, 1, {2, 7, 2, 1}},
        {"all", {0, 0}, 1, 1, 1, {10, 7, 1, 1}},
        {"plain column header", {0, 3}, 0, 1, 0, old},
        {"plain row header", {2, 0}, 0, 1, 0, old},
        {"row header, no ranges", {2, 0}, 1, 0, 0, old},
    };
    for (const auto& c : cases) {
        ASelectRect selection = old;
        EXPECT_EQ(pressSelection(selection, c.cell, c.shift, c.ranges, table), c.selects) << c.name;
        EXPECT_EQ(selection, c.selection) << c.name;
    }
    ASelectRect selection = old;
    EXPECT_FALSE(pressSelection(selection, {0, 0}, 1, 1, {0, 7}));
    EXPECT_FALSE(pressSelection(selection, {1, 0}, 1, 1, {10, 0}));
}

TEST(Selection, RepaintsTheCellsThatChange)
{
    Draw draw;
    for (int i = 0; i < 5000; ++i) {
        const TableExtent table{draw(0, 10), draw(0, 6)};
        const ASelectRect a = selectionBy(draw), b = draw(0, 3) ? selectionBy(draw) : a;
        const CellRange view{draw(1, 3), draw(1, 3), draw(1, 12), draw(1, 8)};
        const ChangedCells changed = changedCells(a, b, table, view);
        for (int row = 1; row <= table.rows; ++row)
            for (int column = 1; column <= table.lastColumn; ++column) {
                const bool focus = (oneCell({row, column}).contains(a.anchorRow, a.anchorColumn) ||
                                    oneCell({row, column}).contains(b.anchorRow, b.anchorColumn)) &&
                                   (a.anchorRow != b.anchorRow || a.anchorColumn != b.anchorColumn);
                const bool differs = view.contains({row, column}) &&
                                     (focus || a.contains(row, column) != b.contains(row, column));
                bool told = false;
                for (int k = 0; k < changed.count; ++k)
                    told =
                        told || changed.ranges[static_cast<std::size_t>(k)].contains({row, column});
                ASSERT_EQ(told, differs) << i << ": " << row << ", " << column;
            }
    }
}
