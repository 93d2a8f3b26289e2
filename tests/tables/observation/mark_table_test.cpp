#include "pavane/tables/observation/AMarkTable.h"
#include "pavane/tables/observation/mark_box.h"
#include "pavane/tables/table_access.h"
#include "platform/CMenu.h"
#include "platform/controls.h"

#include <gtest/gtest.h>
#include <string>

using namespace pavane;

namespace
{

/// Four rows, or columns, to mark; the cells can be edited.
class MarkedTable : public AMarkTable
{
public:
    using AMarkTable::AMarkTable;
    using AMarkTable::cellRect;

    void make()
    {
        ATableColumn columns[] = {{90, 0}, {60, colEdit}, {60, colEdit}, {60, 0}, {60, 0}};
        setColumnPar(columns, 5);
        setRows(4);
        SetMarkCount(4);
        setOptions(optHeaderRow | optRangeSelect);
        CreateEx(0, "", "Marks", WS_POPUP | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL, {0, 0, 400, 200},
                 nullptr, 0);
        SetFocus();
    }
    CString marks() const
    {
        CString text;
        for (int i = 0; i < markCount(); ++i)
            text += isMarked(i) ? '1' : '0';
        return text;
    }
    int isEnableAutoEdit(int, int) override { return 1; }
    void mouse(unsigned message, CPoint p)
    {
        SendMessage(message, 0, MAKELPARAM(p.x, p.y));
        SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(p.x, p.y));
    }
    void key(int code, int held = 0)
    {
        SetKeyStateOverride(held);
        SendMessage(WM_KEYDOWN, static_cast<WPARAM>(code), 1);
        SetKeyStateOverride(-1);
    }
    CPoint middle(int row, int column) { return cellRect(row, column).CenterPoint(); }
    CPoint box(int row, int column)
    {
        return markBox(cellRect(row, column), row > 0 && column > 0).CenterPoint();
    }
    void select(ASelectRect s) { SetSelectRect(s); }
};

constexpr int control = static_cast<int>(MK_CONTROL), shift = static_cast<int>(MK_SHIFT);

}  // namespace

TEST(MarkTable, IsMarkedByKeysMouseAndMenuAndTakesItBack)
{
    const struct {
        MarkItems items;
        int column;
        ASelectRect selection;
        const char* bySpace;
        int boxRow, boxColumn;
        const char* byBox;
        const char* byDouble;  ///< click on the box: a press, and the second press after it
    } cases[] = {
        {MarkItems::rows, 0, {3, 1, 2, 4}, "0110", 4, 0, "0001", "0000"},
        {MarkItems::rows, 4, {1, 1, 1, 1}, "1000", 2, 4, "0100", "0000"},
        {MarkItems::columns, 0, {2, 3, 1, 2}, "0110", 0, 3, "0010", "0010"},
        {MarkItems::columns, 0, {1, 2, 99, 99}, "0111", 0, 1, "1000", "1000"},
        {MarkItems::none, 0, {1, 1, 4, 4}, "0000", 1, 0, "0000", "0000"},
    };
    for (const auto& c : cases) {
        MarkedTable table(c.items, c.column);
        table.make();
        table.select(c.selection);
        table.key(VK_SPACE);
        table.SendMessage(WM_CHAR, ' ', 1);
        EXPECT_EQ(table.marks(), c.bySpace);
        EXPECT_FALSE(table.GetDlgItem(1001));                          // nothing is being edited
        table.SendMessage(WM_KEYDOWN, VK_SPACE, 1 | LPARAM{1} << 30);  // held down
        EXPECT_EQ(table.marks(), c.bySpace);
        table.key(VK_SPACE);
        EXPECT_EQ(table.marks(), "0000");
        table.mouse(WM_LBUTTONDOWN, table.box(c.boxRow, c.boxColumn));
        EXPECT_EQ(table.marks(), c.byBox);
        table.mouse(WM_LBUTTONDBLCLK, table.box(c.boxRow, c.boxColumn));
        EXPECT_EQ(table.marks(), c.byDouble);
        while (table.Undo()) {
        }
        EXPECT_EQ(table.marks(), "0000");
        while (table.Redo()) {
        }
        EXPECT_EQ(table.marks(), c.byDouble);
        if (c.items == MarkItems::none)
            continue;
        table.key('M', control);
        EXPECT_EQ(table.markCountText(), "4 of 4 marked");
        table.key('M', control | shift);
        EXPECT_EQ(table.markedCount(), 0);
        table.SendMessage(WM_COMMAND, ID_MARK_INVERT);
        EXPECT_EQ(table.markedCount(), 4);
        table.key('Z', control);
        EXPECT_EQ(table.markedCount(), 0);
        ABitArray given(9);
        given.setAll(1);
        table.SetMark(given);
        EXPECT_EQ(table.marks(), "1111");
        EXPECT_FALSE(table.canUndo());
        EXPECT_FALSE(table.ToggleMark(4));
        EXPECT_FALSE(table.ToggleMark(-1));
    }
}

TEST(MarkTable, MarksByDoubleClicksOnHeadersAndLeavesOthersAlone)
{
    MarkedTable columns(MarkItems::columns);
    columns.make();
    columns.mouse(WM_LBUTTONDOWN, columns.middle(0, 2));
    EXPECT_EQ(columns.marks(), "0000");
    columns.mouse(WM_LBUTTONDBLCLK, columns.middle(0, 2));
    columns.mouse(WM_LBUTTONDBLCLK, columns.middle(1, 0));
    columns.mouse(WM_LBUTTONDBLCLK, columns.middle(0, 0));
    EXPECT_EQ(columns.marks(), "0100");
    MarkedTable rows;
    rows.make();
    rows.mouse(WM_LBUTTONDBLCLK, rows.middle(3, 0));
    rows.mouse(WM_LBUTTONDBLCLK, rows.middle(0, 3));
    EXPECT_EQ(rows.marks(), "0010");
    rows.mouse(WM_LBUTTONDOWN, {40, 190});  // below the rows
    EXPECT_EQ(rows.marks(), "0010");
}

TEST(MarkTable, MarksRecordsInWhateverOrderTheyAreShown)
{
    struct Values : MarkedTable {
        CString cellAsStr(int row, int column, void*) override
        {
            constexpr int values[] = {30, 10, 40, 20};
            return column == 1 ? std::to_string(values[recordOf(row) - 1]) : "";
        }
    } table;
    table.make();
    table.setOptions(optSort);
    ASSERT_TRUE(table.SortRows({1, SortDirection::rising}));  // records 2, 4, 1, 3 rising
    ASSERT_EQ(table.recordOf(1), 2);
    table.select({1, 1, 2, 1});
    table.key(VK_SPACE);
    EXPECT_EQ(table.marks(), "0101");
    table.mouse(WM_LBUTTONDOWN, table.box(4, 0));
    EXPECT_EQ(table.marks(), "0111");
    ASSERT_TRUE(table.SortRows({}));
    EXPECT_EQ(table.marks(), "0111");
    table.key('Z', control);
    EXPECT_EQ(table.marks(), "0101");
}

TEST(MarkTable, TellsScreenReadersWhatIsMarked)
{
    const struct {
        MarkItems items;
        int column;
        TableCell box, other;
    } cases[] = {{MarkItems::rows, 0, {2, 0}, {2, 1}},
                 {MarkItems::rows, 4, {2, 4}, {2, 0}},
                 {MarkItems::columns, 0, {0, 2}, {2, 2}}};
    for (const auto& c : cases) {
        MarkedTable table(c.items, c.column);
        table.make();
        EXPECT_TRUE(table.ToggleMark(1));
        const AccessSource* const source = table.GetAccess();
        AccessPart part;
        for (const int marked : {1, 0}) {
            ASSERT_TRUE(source->GetAccessPart(TableAccess::idOf(c.box), part));
            EXPECT_EQ((part.state & STATE_SYSTEM_CHECKED) != 0, marked);
            EXPECT_EQ(part.description, marked ? "marked" : "not marked");
            ASSERT_TRUE(source->GetAccessPart(TableAccess::idOf(c.other), part));
            EXPECT_FALSE(part.state & STATE_SYSTEM_CHECKED);
            EXPECT_TRUE(table.ToggleMark(1));
        }
    }
}

TEST(MarkTable, TellsItsParent)
{
    struct Frame : CWnd {
        int told = 0;
        int OnCommand(unsigned id, unsigned code, CWnd* control) override
        {
            told += id == 7 && code == MTN_MARKS && control != nullptr;
            return 1;
        }
    } frame;
    frame.CreateEx(0, "", "Frame", WS_POPUP | WS_VISIBLE, {0, 0, 300, 200}, nullptr, 0);
    MarkedTable table;
    table.SetMarkCount(3);
    table.Create("", "", WS_CHILD | WS_VISIBLE, {0, 0, 300, 200}, &frame, 7);
    EXPECT_TRUE(table.cmMarkAll());
    EXPECT_FALSE(table.cmMarkAll());
    EXPECT_TRUE(table.cmMark(1, 1));
    EXPECT_EQ(frame.told, 2);
    EXPECT_EQ(table.markCountText(), "2 of 3 marked");
    EXPECT_EQ(table.markText(0) + table.markText(1), "marked");
}
