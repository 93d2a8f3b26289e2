#include "platform/system_metrics.h"
#include "tables/grid/plain_table.h"
#include "tables/table_fixture.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>

using namespace pavane;

namespace
{

struct Draw {
    std::mt19937 engine;
    int operator()(int low, int high)
    {
        return std::uniform_int_distribution<int>(low, high)(engine);
    }
};

struct Key {
    int code, control;
    TableMove move;
};
constexpr Key keys[] = {
    {VK_UP, 0, TableMove::up},         {VK_DOWN, 0, TableMove::down},
    {VK_LEFT, 0, TableMove::left},     {VK_RIGHT, 0, TableMove::right},
    {VK_PRIOR, 0, TableMove::pageUp},  {VK_NEXT, 0, TableMove::pageDown},
    {VK_HOME, 0, TableMove::rowStart}, {VK_HOME, 1, TableMove::tableStart},
    {VK_END, 0, TableMove::rowEnd},    {VK_END, 1, TableMove::tableEnd},
    {VK_TAB, 0, TableMove::next},
};

/// A table on the screen beside a plain one, and the same done to both.
struct Pair {
    ShownTable shown;
    PlainTable plain;
    ASelectRect selection;
    int refuses = 0;

    CRect client()
    {
        CRect rect;
        shown.GetClientRect(rect);
        return rect;
    }
    void layOut()
    {
        GridMetrics m;
        m.verticalBar = GetSystemMetrics(SM_CXVSCROLL);
        m.horizontalBar = GetSystemMetrics(SM_CXHSCROLL);
        m.width = client().Width() + (shown.IsScrollBarShown(SB_VERT) ? m.verticalBar : 0);
        m.height = client().Height() + (shown.IsScrollBarShown(SB_HORZ) ? m.horizontalBar : 0);
        m.characterHeight = shown.ColumnToPixel();
        m.rowUnit = 10;
        plain.layOut(m);
    }
    void take(const ASelectRect& next, TableCell cell)
    {
        if (!(next == selection) && refuses)
            return;
        selection = next;
        plain.show(cell, client());
    }
    void check(int step)
    {
        ASSERT_EQ(shown.selection(), ShownTable::text(selection)) << step;
        ASSERT_EQ(shown.grid().firstRow(), plain.firstRow) << step;
        ASSERT_EQ(shown.grid().firstColumn(), plain.firstColumn) << step;
        ASSERT_EQ(shown.GetScrollPos(SB_VERT), plain.firstRow) << step;
        ASSERT_EQ(shown.IsScrollBarShown(SB_HORZ), plain.lastFirstColumn > 1) << step;
    }
};

void setColumns(Pair& pair, Draw& draw)
{
    std::vector<ATableColumn> columns;
    pair.plain.widths.clear();
    pair.plain.wanted.clear();
    pair.plain.stretches.clear();
    for (int c = draw(1, 7); c > 0; --c) {
        const bool stretches = draw(0, 5) == 0;
        columns.push_back({static_cast<std::int16_t>(draw(0, 90)),
                           static_cast<std::uint16_t>(stretches ? colStretch : 0)});
        pair.plain.widths.push_back(columns.back().width);
        pair.plain.wanted.push_back(columns.back().width);
        pair.plain.stretches.push_back(stretches);
    }
    pair.shown.setColumnPar(columns.data(), static_cast<long>(columns.size()));
}

void pressKey(Pair& pair, Draw& draw, int ranges)
{
    const Key& key = keys[static_cast<std::size_t>(draw(0, 10))];
    const int shift = draw(0, 1), count = draw(1, 3);
    SetKeyStateOverride(static_cast<int>((shift ? MK_SHIFT : 0) | (key.control ? MK_CONTROL : 0)));
    pair.shown.key(key.code, count);
    SetKeyStateOverride(0);
    if (pair.plain.extent().empty())
        return;
    const bool tab = key.code == VK_TAB;
    const ASelectRect next =
        pair.plain.moved(pair.selection, tab && shift ? TableMove::previous : key.move, count,
                         shift && ranges && !tab, pair.client());
    pair.take(next, {next.anchorRow, next.anchorColumn});
}

void click(Pair& pair, Draw& draw, int ranges)
{
    const CPoint p(draw(0, pair.client().right), draw(0, pair.client().bottom));
    const int shift = draw(0, 1);
    const TableCell cell = pair.plain.cellAt(p);
    pair.shown.press(p, shift ? MK_SHIFT : 0);
    pair.shown.SendMessage(WM_CAPTURECHANGED);  // ends the drag where it is
    pair.shown.release(p);
    const TableExtent table = pair.plain.extent();
    ASelectRect next = pair.selection;
    if (table.empty())
        return;
    if (table.contains(cell) && !(shift && ranges))
        next = oneCell(cell);
    else if (table.contains(cell))
        next.endRow = cell.row, next.endColumn = cell.column;
    else if (!shift || !ranges)
        return;
    else
        next = {cell.row ? cell.row : table.rows, cell.column ? cell.column : table.lastColumn,
                cell.row ? cell.row : 1, cell.column ? cell.column : 1};
    pair.take(next, {next.endRow, next.endColumn});
}

void scroll(Pair& pair, Draw& draw)
{
    const int what = draw(0, 5);
    PlainTable& p = pair.plain;
    const int rows = p.pageRows(pair.client());
    switch (what) {
    case 0:
        pair.shown.SendMessage(WM_VSCROLL, SB_LINEDOWN);
        return p.scroll(p.firstRow + 1, p.firstColumn);
    case 1:
        pair.shown.SendMessage(WM_VSCROLL, SB_PAGEUP);
        return p.scroll(p.firstRow - rows, p.firstColumn);
    case 2:
        pair.shown.SendMessage(WM_HSCROLL, SB_LINEDOWN);
        return p.scroll(p.firstRow, p.firstColumn + 1);
    case 3: {
        const int thumb = draw(1, 60);
        pair.shown.SendMessage(WM_VSCROLL, SB_THUMBTRACK | static_cast<WPARAM>(thumb) << 16);
        return p.scroll(thumb, p.firstColumn);
    }
    default: {
        const int notches = what == 4 ? 2 : -3;
        (void)pair.shown.OnMouseWheel(0, notches * WHEEL_DELTA, {});
        if (p.lastFirstRow > 1)
            return p.scroll(p.firstRow + (what == 4 ? -1 : 1), p.firstColumn);
        return p.scroll(p.firstRow, p.firstColumn + (what == 4 ? -1 : 1));
    }
    }
}

void callFromHost(Pair& pair, Draw& draw)
{
    switch (draw(0, 2)) {
    case 0:
        pair.shown.MoveWindow({0, 0, draw(1, 320), draw(1, 220)});
        return pair.layOut();
    case 1: {
        pair.shown.setRows(pair.plain.rows = draw(0, 3) ? draw(0, 60) : draw(0, 1));
        if (draw(0, 2) == 0)
            setColumns(pair, draw);
        pair.selection = {draw(0, 40), draw(0, 6), draw(0, 40), draw(0, 6)};
        pair.shown.ReConstruct(pair.selection);
        return pair.layOut();
    }
    default: {
        const TableCell cell{draw(-2, 60), draw(-2, 8)};
        pair.shown.SetSelectOneCell(cell.row, cell.column);
        if (pair.plain.extent().empty())
            return;
        const TableCell taken = nearestCell(cell, pair.plain.extent());
        pair.selection = oneCell(taken);
        return pair.plain.show(taken, pair.client());
    }
    }
}

}  // namespace

TEST(TableWindow, DoesAsThePlainOneAndPaintsAllThatChanges)
{
    constexpr int tables = 20, steps = 5000;
    for (int t = 0; t < tables; ++t) {
        Draw draw{std::mt19937(static_cast<unsigned>(t))};
        Pair pair;
        const int ranges = t % 2;
        pair.shown.setOptions((ranges ? optRangeSelect : 0) | (t % 3 ? optHeaderRow : 0) |
                              (t % 4 ? optVertLines : 0) | (t % 5 ? optHorzLines : 0) |
                              (t % 7 == 6 ? optFlatHeader : 0));
        pair.plain.header = pair.shown.isOptSet(optHeaderRow);
        pair.shown.accept = [&] { return !pair.refuses; };
        setColumns(pair, draw);
        pair.plain.rows = draw(0, 60);
        pair.shown.setRows(pair.plain.rows);
        pair.shown.CreateEx(0, "", "Table", WS_POPUP | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL,
                            {0, 0, 300, 200}, nullptr, 0);
        pair.shown.SetFocus();
        pair.layOut();
        for (int step = 0; step < steps; ++step) {
            pair.refuses = draw(0, 9) == 0;
            const int kind = draw(0, 99);
            if (kind < 45)
                pressKey(pair, draw, ranges);
            else if (kind < 70)
                click(pair, draw, ranges);
            else if (kind < 95)
                scroll(pair, draw);
            else
                callFromHost(pair, draw);
            ASSERT_NO_FATAL_FAILURE(pair.check(step)) << "table " << t << ", kind " << kind;
            if (step % 100)
                continue;
            const auto seen = pair.shown.picture();
            pair.shown.Invalidate();
            ASSERT_TRUE(seen == pair.shown.picture()) << t << ", " << step;
        }
    }
}

TEST(TableWindow, LivesThroughHooksThatDoAnything)
{
    for (int t = 0; t < 300; ++t) {
        Draw draw{std::mt19937(static_cast<unsigned>(t))};
        auto table = std::make_unique<ShownTable>();
        table->setOptions(optRangeSelect | optHeaderRow);
        table->make(40, {{50, 0}, {60, colEdit}, {60, colEdit}, {60, 0}});
        const auto misbehave = [&] {
            switch (draw(0, 30)) {
            case 0:
                return table.reset();
            case 1:
                return (void)table->DestroyWindow();
            case 2:
                return table->setRows(draw(0, 3));
            case 3:
                return table->setColumnPar(nullptr, 0);
            case 4:
                return (void)table->hideEdit();
            case 5:
                return table->ReConstruct({draw(1, 50), 2, 1, draw(1, 50)});
            default:
                return;
            }
        };
        table->accept = [&] { return misbehave(), draw(0, 3); };
        table->store = [&](const CString&) { return misbehave(), draw(0, 3); };
        table->drawing = [&] {
            if (draw(0, 40) == 0)
                misbehave();
        };
        for (int step = 0; table && step < 60; ++step) {
            ShownTable& shown = *table;
            switch (draw(0, 5)) {
            case 0:
                shown.key(keys[static_cast<std::size_t>(draw(0, 10))].code);
                break;
            case 1:
                shown.press({draw(0, 300), draw(0, 190)}, draw(0, 1) ? MK_SHIFT : 0);
                if (table)
                    shown.release({draw(0, 300), draw(0, 190)});
                break;
            case 2:
                shown.SendMessage(WM_CHAR, '5');
                break;
            case 3:
                shown.press({draw(0, 300), draw(0, 190)}, 0, WM_LBUTTONDBLCLK);
                break;
            case 4:
                shown.Invalidate();
                shown.UpdateWindow();
                break;
            default:
                if (CEdit* const field = shown.field())
                    field->SendMessage(WM_KEYDOWN, draw(0, 1) ? VK_RETURN : VK_ESCAPE);
            }
        }
    }
}
