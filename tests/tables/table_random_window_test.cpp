#include "pavane/resources/resource_ids.h"
#include "platform/accessibility.h"
#include "platform/system_metrics.h"
#include "tables/grid/draw.h"
#include "tables/grid/plain_table.h"
#include "tables/table_fixture.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <numeric>

using namespace pavane;

namespace
{

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

/// Records whose values repeat, in the order that the table shows them in.
struct OrderedTable : ShownTable {
    std::function<void()> counting;  ///< a hook of every number
    static int valueOf(int record, int column) { return record * 7 % (10 + column); }
    CString cellAsStr(int row, int column, void*) override
    {
        return std::to_string(valueOf(recordOf(row), column));
    }
    int cellNumber(int row, int column, double& value) override
    {
        value = valueOf(recordOf(row), column);
        if (const auto run = counting)
            run();
        return 1;
    }
};

/// A table on the screen beside a plain one, and the same done to both.
struct Pair {
    OrderedTable shown;
    PlainTable plain;
    ASelectRect selection;
    SortedBy by;
    std::vector<int> records;  ///< by row, from 0
    int refuses = 0;
    int sizes = 0;

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
    void setRows(int rows)
    {
        const int before = plain.rows;
        plain.rows = rows;
        std::erase_if(records, [rows](int record) { return record > rows; });
        for (int record = before + 1; record <= rows; ++record)
            records.push_back(record);
        if (rows == 0)
            by = {};
    }
    /// The column whose edge a press takes hold of.
    int edgeAt(CPoint p)
    {
        if (!sizes || !plain.header || p.y >= plain.rowHeight || !client().PtInRect(p))
            return -1;
        for (int off = 0; off <= 3; ++off)
            for (const int x : {p.x + off, p.x - off}) {
                std::vector<int> at;
                for (int c = 0; c <= plain.last(); ++c)
                    if ((c == 0 || c >= plain.firstColumn) && plain.cellRect(0, c).right == x)
                        at.push_back(c);
                if (!at.empty())
                    return x <= p.x ? at.back() : at.front();
            }
        return -1;
    }
    void check(int step)
    {
        for (int row = 1; row <= plain.rows; ++row)
            ASSERT_EQ(shown.recordOf(row), records[static_cast<std::size_t>(row) - 1]) << step;
        ASSERT_EQ(shown.sortedBy(), by) << step;
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

/// Drags the edge that is there, or clicks on a header, which sorts.
void pressHeader(Pair& pair, Draw& draw)
{
    PlainTable& plain = pair.plain;
    const CPoint p(draw(0, pair.client().right), draw(0, plain.rowHeight - 2));
    const int edge = pair.edgeAt(p);
    if (!plain.header || p.y >= pair.client().bottom)
        return;
    pair.shown.press(p);
    if (edge >= 0) {
        const int by = draw(-40, 40), escapes = draw(0, 2) == 0;
        pair.shown.press({p.x + by, p.y}, MK_LBUTTON, WM_MOUSEMOVE);
        if (escapes)
            pair.shown.key(VK_ESCAPE);
        pair.shown.release({p.x + by, p.y});
        const auto c = static_cast<std::size_t>(edge);
        const int width = std::max(plain.widths[c] + by, 0);
        if (escapes || by == 0 || width == plain.widths[c])
            return;
        plain.widths[c] = width;
        plain.wanted[c] = width;
        plain.stretches[c] = false;
        return pair.layOut();
    }
    pair.shown.release(p);
    int column = 0;
    for (int c = std::max(plain.firstColumn, 1); c <= plain.last(); ++c)
        if (p.x >= plain.widths[0] && plain.cellRect(0, c).PtInRect(p))
            column = c;
    if (!column || plain.rows == 0)
        return;
    const TableCell focus{pair.selection.anchorRow, pair.selection.anchorColumn};
    const bool inside = plain.extent().contains(focus);
    const CRect place = plain.cellRect(focus.row, focus.column);
    const bool seen =
        place.top >= (plain.header ? plain.rowHeight : 0) && place.top < pair.client().bottom;
    const int record = inside ? pair.records[static_cast<std::size_t>(focus.row) - 1] : 0;
    pair.by = nextOrder(pair.by, column);
    if (pair.by.column == 0)
        std::sort(pair.records.begin(), pair.records.end());
    else
        std::stable_sort(pair.records.begin(), pair.records.end(), [&](int a, int b) {
            const int x = OrderedTable::valueOf(a, column), y = OrderedTable::valueOf(b, column);
            return pair.by.direction == SortDirection::rising ? x < y : x > y;
        });
    if (!inside)
        return;
    const auto now = std::find(pair.records.begin(), pair.records.end(), record);
    ASelectRect next = pair.selection;
    next.anchorRow = next.endRow = static_cast<int>(now - pair.records.begin()) + 1;
    if (!(next == pair.selection) && seen)
        plain.show({next.anchorRow, next.anchorColumn}, pair.client());
    pair.selection = next;
}

/// Ctrl+A, Shift+Space, Ctrl+Space.
void selectWhole(Pair& pair, Draw& draw, int ranges)
{
    const int what = draw(1, 3);
    const unsigned held = what == 1 ? MK_SHIFT : MK_CONTROL;
    SetKeyStateOverride(static_cast<int>(held));
    pair.shown.key(what == 3 ? 'A' : VK_SPACE);
    SetKeyStateOverride(0);
    if (!ranges || pair.refuses || pair.plain.extent().empty())
        return;
    if (what & 1)
        pair.selection.anchorColumn = 1, pair.selection.endColumn = pair.plain.last();
    if (what & 2)
        pair.selection.anchorRow = 1, pair.selection.endRow = pair.plain.rows;
}

void find(Pair& pair, Draw& draw)
{
    const CString text = std::to_string(draw(0, 17));
    const FindWhat what{text, draw(0, 1), 1, draw(0, 1), draw(0, 1)};
    const TableExtent table = pair.plain.extent();
    (void)pair.shown.FindText(what);
    if (table.empty())
        return;
    TableCell at = nearestCell({pair.selection.anchorRow, pair.selection.anchorColumn}, table);
    const int column = at.column, count = table.lastColumn, all = table.rows * count;
    int place = (at.row - 1) * count + at.column - 1;
    for (int left = all; left > 0; --left) {
        place = (place + (what.backward ? all - 1 : 1)) % all;
        at = {place / count + 1, place % count + 1};
        const int record = pair.records[static_cast<std::size_t>(at.row) - 1];
        if (std::to_string(OrderedTable::valueOf(record, at.column)) == text &&
            (!what.thisColumn || at.column == column))
            return pair.take(oneCell(at), at);
    }
}

void click(Pair& pair, Draw& draw, int ranges)
{
    const CPoint p(draw(0, pair.client().right), draw(0, pair.client().bottom));
    const int shift = draw(0, 1);
    const int edge = pair.edgeAt(p);
    const TableCell cell = pair.plain.cellAt(p);
    pair.shown.press(p, shift ? MK_SHIFT : 0);
    pair.shown.SendMessage(WM_CAPTURECHANGED);  // ends the drag where it is
    pair.shown.release(p);
    const TableExtent table = pair.plain.extent();
    ASelectRect next = pair.selection;
    if (table.empty() || edge >= 0)
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
        const int rows = draw(0, 3) ? draw(0, 60) : draw(0, 1);
        pair.shown.setRows(rows);
        pair.setRows(rows);
        if (draw(0, 2) == 0)
            setColumns(pair, draw);
        if (pair.by.column > pair.plain.last())
            pair.by = {};
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
    constexpr int tables = 20;
    const char* const more = std::getenv("PAVANE_RANDOM_STEPS");
    const int steps = more ? std::atoi(more) : 1500;  // of each table
    SetMessageFunction([](const CString&, unsigned) { return IDOK; });
    for (int t = 0; t < tables; ++t) {
        Draw draw{std::mt19937(static_cast<unsigned>(t))};
        Pair pair;
        const int ranges = t % 2;
        pair.shown.setOptions((ranges ? optRangeSelect : 0) | (t % 3 ? optHeaderRow : 0) |
                              (t % 4 ? optVertLines : 0) | (t % 5 ? optHorzLines : 0) |
                              (t % 7 == 6 ? optFlatHeader : 0) | optSort |
                              (t % 3 ? optSizeColumns : 0));
        pair.sizes = t % 3;
        pair.plain.header = pair.shown.isOptSet(optHeaderRow);
        pair.shown.accept = [&] { return !pair.refuses; };
        setColumns(pair, draw);
        pair.setRows(draw(0, 60));
        pair.shown.setRows(pair.plain.rows);
        pair.shown.CreateEx(0, "", "Table", WS_POPUP | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL,
                            {0, 0, 300, 200}, nullptr, 0);
        pair.shown.SetFocus();
        pair.layOut();
        for (int step = 0; step < steps; ++step) {
            pair.refuses = draw(0, 9) == 0;
            const int kind = draw(0, 99);
            if (kind < 35)
                pressKey(pair, draw, ranges);
            else if (kind < 38)
                selectWhole(pair, draw, ranges);
            else if (kind < 43)
                pressHeader(pair, draw);
            else if (kind < 46)
                find(pair, draw);
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
    SetMessageFunction(nullptr);
}

TEST(TableWindow, LivesThroughHooksThatDoAnything)
{
    constexpr unsigned exchange[] = {
        ID_TABLE_COPY_SELECTION, ID_TABLE_COPY_CELLS, ID_TABLE_PASTE, ID_TABLE_CLEAR,
        ID_TABLE_UNDO,           ID_TABLE_UNDO,       ID_TABLE_REDO};
    SetMessageFunction([](const CString&, unsigned) { return IDOK; });
    const int tables = std::getenv("PAVANE_RANDOM_STEPS") ? 2000 : 200;
    for (int t = 0; t < tables; ++t) {
        Draw draw{std::mt19937(static_cast<unsigned>(t))};
        auto table = std::make_unique<OrderedTable>();
        table->setOptions(optRangeSelect | optHeaderRow | optSort | optSizeColumns);
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
        table->counting = table->drawing;
        for (int step = 0; table && step < 60; ++step) {
            OrderedTable& shown = *table;
            switch (draw(0, 11)) {
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
            case 5:
                (void)shown.FindText({"3", 0, draw(0, 1), 0, draw(0, 1)});
                break;
            case 6:
                shown.FitColumn(draw(0, 3));
                break;
            case 8:
                if (draw(0, 5))
                    break;
                (void)shown.RunTableCommand(ID_TABLE_FIND);
                if (CWnd* const field = CWnd::GetFocus();
                    table && field && field->GetDlgCtrlID() == IDC_TABLE_FIND_TEXT) {
                    field->SetWindowText("3");
                    field->GetParent()->SendMessage(WM_COMMAND,
                                                    draw(0, 2) ? IDC_TABLE_FIND_BACK : IDCANCEL);
                }
                break;
            case 7:
                shown.press({draw(0, 300), 3});
                if (table)
                    shown.press({draw(0, 300), 3}, MK_LBUTTON, WM_MOUSEMOVE);
                if (table)
                    draw(0, 1) ? shown.release({draw(0, 300), 3}) : shown.key(VK_ESCAPE);
                break;
            case 4:
                shown.Invalidate();
                shown.UpdateWindow();
                break;
            case 9:
                shown.SendMessage(WM_COMMAND, exchange[static_cast<std::size_t>(draw(0, 6))]);
                break;
            case 10: {
                AccessSource* const source = shown.GetAccess();
                const AccessId id = source->GetAccessCell(draw(0, 50), draw(0, 2));
                AccessPart part;
                (void)(draw(0, 1) ? source->AccessSetValue(id, "6")
                                  : source->GetAccessPart(id, part));
                break;
            }
            default:
                if (CEdit* const field = shown.field())
                    field->SendMessage(WM_KEYDOWN, draw(0, 1) ? VK_RETURN : VK_ESCAPE);
            }
        }
    }
    SetMessageFunction(nullptr);
}
