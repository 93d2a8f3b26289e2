#include "pavane/resources/resource_ids.h"
#include "platform/clipboard.h"
#include "platform/CMenu.h"
#include "tables/table_fixture.h"

#include <chrono>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <thread>

using namespace pavane;

namespace
{

using Cells = std::vector<std::vector<std::string>>;

CString lastMessage;
int noteMessage(const CString& text, unsigned) { return lastMessage += text, IDOK; }

/// A table that keeps texts. Column 3 cannot be edited, column 4 chooses from a list, "no" and "."
/// are refused.
struct Sheet : ShownTable {
    Cells cells;
    Sheet()
    {
        lastMessage.clear();
        SetMessageFunction(noteMessage);
        setOptions(optRangeSelect | optHeaderRow | optSort);
    }
    ~Sheet() override
    {
        SetMessageFunction(nullptr);
        SetKeyStateOverride(-1);
    }
    void fill(const Cells& values)
    {
        cells = values;
        if (!GetSafeHwnd())
            make(static_cast<long>(cells.size()),
                 {{50, 0}, {60, colEdit}, {60, colEdit}, {60, colEdit}, {60, colCombo | colEdit}});
        lastMessage.clear();
    }
    std::string& at(int row, int column)
    {
        return cells[static_cast<std::size_t>(recordOf(row) - 1)]
                    [static_cast<std::size_t>(column - 1)];
    }
    void run(unsigned id) { SendMessage(WM_COMMAND, id); }
    void select(const ASelectRect& selection)
    {
        ASelectRect s = selection;
        SetSelectRect(s);
    }
    CString cellAsStr(int row, int column, void*) override { return at(row, column); }
    CString hdrCellAsStr(int row, int column, void*) override
    {
        return row ? "" : column ? std::string(1, static_cast<char>('@' + column)) : "No.";
    }
    int isEnableAutoEdit(int, int column) override { return column < 3; }
    int isEnableAutoComboBox(int, int) override { return 1; }
    int setCellStr(int row, int column, const CString& value) override
    {
        if (value == "no" || value == ".")
            return 0;
        return at(row, column) = value, 1;
    }
    int FillComboBox(CComboBox* list, int, int) override
    {
        for (const char* const text : {"", "one", "two"})
            (void)list->AddString(text);
        return 0;
    }
    int getFromComboBox(CComboBox* list, int row, int column) override
    {
        return at(row, column) = list->GetLBText(list->GetCurSel()), 1;
    }
};

Cells grid(const std::string& text)
{
    Cells cells(1, {""});
    for (const char c : text)
        if (c == '/')
            cells.push_back({""});
        else if (c == '|')
            cells.back().emplace_back();
        else
            cells.back().back() += c;
    return cells;
}

}  // namespace

TEST(TableCopy, PutsAllFormsOnTheClipboard)
{
    Sheet sheet;
    sheet.fill(grid("1|a,b|<c>|/2|d\te|f|one"));
    sheet.select({2, 3, 1, 2});
    const struct {
        unsigned command;
        const char *plain, *block, *csv;
        bool headers;
    } cases[] = {
        {ID_TABLE_COPY_SELECTION, "No.\tB\tC\n\ta,b\t<c>\n\td\te\tf\n", "a,b\t<c>\n\"d\te\"\tf\n",
         "No.,B,C\r\n,\"a,b\",<c>\r\n,d\te,f\r\n", true},
        {ID_TABLE_COPY_CELLS, "a,b\t<c>\n\"d\te\"\tf\n", "a,b\t<c>\n\"d\te\"\tf\n",
         "\"a,b\",<c>\r\nd\te,f\r\n", false},
    };
    for (const auto& c : cases) {
        CString text;
        sheet.run(c.command);
        EXPECT_TRUE(GetClipboardText(text));
        EXPECT_EQ(text, c.plain);
        EXPECT_TRUE(GetClipboardData("application/x-pavane-cells", text));
        EXPECT_EQ(text, c.block);
        EXPECT_TRUE(GetClipboardData("text/csv", text));
        EXPECT_EQ(text, c.csv);
        EXPECT_TRUE(GetClipboardData("text/html", text));
        EXPECT_EQ(text.find("<th>B</th>") != std::string::npos, c.headers);
        EXPECT_NE(text.find("<td>&lt;c&gt;</td>"), std::string::npos);
    }
    SetClipboardRefusal(1);
    sheet.run(ID_TABLE_COPY_CELLS);
    EXPECT_EQ(lastMessage, "The clipboard does not take the text.");
    SetClipboardRefusal(0);
    struct Large : Sheet {
        CString cellAsStr(int, int, void*) override { return CString(1 << 20, 'x'); }
    } large;
    large.fill(Cells(300, {"", "", "", ""}));
    for (const long rows : {300L, 0x7FFFFFFFL}) {
        lastMessage.clear();
        large.setRows(rows);
        large.run(ID_TABLE_COPY_ALL);
        EXPECT_EQ(lastMessage.substr(0, 46), "These cells are too many for the clipboard, wh")
            << rows;
    }
}

TEST(TablePaste, PutsWhatFitsAndTellsOfTheRest)
{
    const struct {
        const char* name;
        std::string text;
        ASelectRect selection;
        const char *cells, *message;
    } cases[] = {
        {"block", "a\tb\nc\td\n", {1, 1, 1, 1}, "a|b|3|one/c|d|6|two", ""},
        {"quoted", "\"a\tb\"\t\"c\r\nd\"", {2, 1, 2, 1}, "1|2|3|one/a\tb|c\r\nd|6|two", ""},
        {"one value", "x", {1, 2, 2, 1}, "x|x|3|one/x|x|6|two", ""},
        {"one value, some not editable",
         "x\n",
         {1, 2, 1, 3},
         "1|x|3|one/4|5|6|two",
         "1 of 2 cells could not be pasted. The first of them is C 1"},
        {"refused",
         "no\ty\nz\t.\n",
         {1, 1, 1, 1},
         "1|y|3|one/z|5|6|two",
         "2 of 4 cells could not be pasted. The first of them is A 1"},
        {"beyond",
         "a\nb\n",
         {2, 1, 2, 1},
         "1|2|3|one/a|5|6|two",
         "1 of 2 cells could not be pasted. The first of them is row 3, column 1, which the table "
         "does not have"},
        {"list", "two\n\n", {1, 4, 1, 4}, "1|2|3|two/4|5|6|", ""},
        {"not in the list",
         "six",
         {1, 4, 1, 4},
         "1|2|3|one/4|5|6|two",
         "1 of 1 cells could not be pasted. The first of them is D 1"},
        {"nothing", "", {1, 1, 1, 1}, "1|2|3|one/4|5|6|two", ""},
    };
    const Cells before = grid("1|2|3|one/4|5|6|two");
    Sheet sheet;
    for (const auto& c : cases) {
        sheet.fill(before);
        sheet.ForgetHistory();
        ASSERT_TRUE(SetClipboardText(c.text)) << c.name;
        sheet.select(c.selection);
        EXPECT_TRUE(sheet.selection() == "1,4-1,4" || sheet.isTime(TableWhen::canPaste));
        sheet.run(ID_TABLE_PASTE);
        EXPECT_EQ(sheet.cells, grid(c.cells)) << c.name;
        EXPECT_EQ(lastMessage, c.message) << c.name;
        EXPECT_EQ(sheet.canUndo(), sheet.cells != before) << c.name;
        if (sheet.canUndo())
            sheet.run(ID_TABLE_UNDO);
        EXPECT_EQ(sheet.cells, before) << c.name;
        EXPECT_FALSE(sheet.canUndo()) << c.name;
    }
    EXPECT_FALSE(sheet.GetDlgItem(1003));
    SetClipboardRefusal(1);
    EXPECT_FALSE(sheet.isTime(TableWhen::canPaste));
    sheet.fill(before);
    sheet.run(ID_TABLE_PASTE);
    SetClipboardRefusal(0);
    EXPECT_EQ(lastMessage, "There is no text on the clipboard.");
}

TEST(TablePaste, BringsRandomBlocksBackAndUndoesThem)
{
    std::mt19937 engine{11};
    const std::string letters("ab \t\"\n\r<\0,", 10);
    const auto pick = [&](int n) { return static_cast<int>(engine() % static_cast<unsigned>(n)); };
    Sheet sheet;
    Cells plain(12, std::vector<std::string>(4));
    sheet.fill(plain);
    std::vector<Cells> history{plain};
    std::size_t now = 0;
    const auto cell = [&](Cells& cells, int row, int column) -> std::string& {
        return cells[static_cast<std::size_t>(sheet.recordOf(row) - 1)]
                    [static_cast<std::size_t>(column - 1)];
    };
    for (int i = 0; i < 400; ++i) {
        const ASelectRect selection{1 + pick(12), 1 + pick(2), 1 + pick(12), 1 + pick(2)};
        const CellRange from = selectedCells(selection, {12, 4});
        const int row = selection.anchorRow, column = selection.anchorColumn;
        sheet.select(selection);
        const int kind = pick(6);
        if (kind == 0) {  // another text by hand
            std::string text;
            for (int n = pick(6); n > 0; --n)
                text += letters[static_cast<std::size_t>(pick(10))];
            cell(plain, row, column) = text;
            sheet.beginEdits("Edit");
            (void)sheet.editCell(row, column, [&] { return sheet.setCellStr(row, column, text); });
            sheet.endEdits();
        } else if (kind == 1) {
            sheet.run(ID_TABLE_CLEAR);
            for (int r = from.firstRow; r <= from.lastRow; ++r)
                for (int c = from.firstColumn; c <= from.lastColumn; ++c)
                    cell(plain, r, c) = "";
        } else if (kind == 2) {
            const TableCell at{1 + pick(12), 1 + pick(2)};
            sheet.run(pick(2) ? ID_TABLE_COPY_CELLS : ID_TABLE_COPY_SELECTION);
            sheet.select(oneCell(at));
            sheet.run(ID_TABLE_PASTE);
            Cells source = plain;
            for (int r = from.firstRow; r <= from.lastRow; ++r)
                for (int c = from.firstColumn; c <= from.lastColumn; ++c)
                    if (at.row + r - from.firstRow <= 12 && at.column + c - from.firstColumn <= 2)
                        cell(plain, at.row + r - from.firstRow, at.column + c - from.firstColumn) =
                            cell(source, r, c);
        } else if (kind == 3) {
            EXPECT_TRUE(sheet.SortRows({1 + pick(2), static_cast<SortDirection>(pick(3))}));
        } else {
            const bool back = kind == 4;
            EXPECT_EQ(sheet.canUndo(), now > 0);
            EXPECT_EQ(sheet.canRedo(), now + 1 < history.size());
            if (back ? now > 0 : now + 1 < history.size())
                plain = history[now = back ? now - 1 : now + 1];
            sheet.run(back ? ID_TABLE_UNDO : ID_TABLE_REDO);
        }
        ASSERT_EQ(sheet.cells, plain) << i << ", " << kind;
        if (kind < 3 && plain != history[now]) {
            history.resize(++now);
            history.push_back(plain);
        }
    }
}

TEST(TableUndo, BringsValuesBackExactlyAndShowsThem)
{
    struct Numbers : ShownTable {
        std::vector<double> values = std::vector<double>(100000, 1.0 / 3);
        double& at(int row) { return values[static_cast<std::size_t>(row - 1)]; }
        CString cellAsStr(int row, int, void*) override { return std::to_string(at(row)); }
        CString cellValue(int row, int) override
        {
            return {reinterpret_cast<const char*>(&at(row)), sizeof(double)};
        }
        int setCellValue(int row, int, const CString& value) override
        {
            std::memcpy(&at(row), value.data(), sizeof(double));
            return 1;
        }
        int setCellStr(int row, int, const CString& text) override
        {
            return at(row) = std::stod(text), 1;
        }
    } table;
    table.make(100000, {{50, 0}, {60, colEdit}});
    table.SetSelectOneCell(90000, 1);
    for (const char digit : {'7', '8'}) {
        table.SendMessage(WM_CHAR, static_cast<WPARAM>(digit));
        ASSERT_TRUE(table.field());
        table.field()->SendMessage(WM_KEYDOWN, VK_RETURN, 1);
    }
    EXPECT_EQ(table.undoLabel(), "Edit of col 1 row 90001");
    table.SetSelectOneCell(1, 1);
    SetKeyStateOverride(static_cast<int>(MK_CONTROL));
    table.key('Z');
    EXPECT_EQ(table.selection(), "90001,1-90001,1");
    EXPECT_FALSE(table.cellRect(90001, 1).IsRectEmpty());
    EXPECT_GT(table.grid().firstRow(), 89000);
    table.key('Z');
    EXPECT_EQ(table.at(90000), 1.0 / 3);
    EXPECT_EQ(table.at(90001), 1.0 / 3);
    EXPECT_EQ(table.Undo(), 0);
    static std::string lines;
    SetMenuAnswer([](const CMenu& menu, CPoint) {
        for (const CMenu::Line& line : menu.lines())
            if (line.id == ID_TABLE_UNDO || line.id == ID_TABLE_REDO)
                lines += line.text + (line.enabled ? ";" : "!;");
        return 0u;
    });
    table.SendMessage(WM_CONTEXTMENU, 0, MAKELPARAM(5, 5));
    SetMenuAnswer(nullptr);
    EXPECT_EQ(lines, "&Undo\tCtrl+Z!;&Redo edit of col 1 row 90000\tCtrl+Shift+Z;");
    table.key('Y');
    table.key('Y');
    SetKeyStateOverride(-1);
    EXPECT_EQ(table.at(90001), 8);
    table.setRows(90000);  // a record that is gone is left out
    EXPECT_TRUE(table.Undo());
    EXPECT_EQ(table.at(90001), 8);
    EXPECT_TRUE(table.Undo());
    EXPECT_EQ(table.at(90000), 1.0 / 3);
    table.deleteColumn(1);
    EXPECT_FALSE(table.canUndo() || table.canRedo());
}

TEST(TablePaste, IsStoppedByEscapeAndByItsSize)
{
    // takes a while for each value, and presses Escape as soon as a box shows
    struct Slow : Sheet {
        int boxes = 0;
        int setCellStr(int row, int column, const CString& value) override
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            const CWnd* const focus = CWnd::GetFocus();
            CWnd* const top = focus ? focus->GetTopLevelParent() : nullptr;
            if (top && top->IsDialog() && ++boxes == 1)
                top->SendMessage(WM_COMMAND, IDCANCEL);
            return Sheet::setCellStr(row, column, value);
        }
    } slow;
    const Cells before(5000, {"", "", "", ""});
    slow.fill(before);
    slow.setRows(5000);
    slow.select({1, 1, 5000, 1});
    ASSERT_TRUE(SetClipboardText("x"));
    slow.run(ID_TABLE_PASTE);
    EXPECT_EQ(lastMessage.substr(0, 20), "Pasting was stopped.");
    EXPECT_EQ(slow.boxes, 1);
    EXPECT_NE(slow.at(1, 1), slow.at(5000, 1));
    EXPECT_TRUE(slow.IsWindowEnabled());
    EXPECT_TRUE(slow.Undo());
    EXPECT_EQ(slow.cells, before);
    struct Forgets : Sheet {
        int setCellStr(int, int, const CString&) override { return 1; }
    } forgets;
    forgets.fill(before);
    forgets.select({1, 1, 5000, 1});
    ASSERT_TRUE(SetClipboardText(CString(1 << 20, 'x')));
    forgets.run(ID_TABLE_PASTE);
    EXPECT_NE(lastMessage.find("256 MiB can be pasted at once. Cells pasted until then: 255."),
              CString::npos);
}

TEST(TableUndo, KnowsListsAndClearedCells)
{
    Sheet sheet;
    sheet.fill(grid("1|2|3|one/4|5|6|two"));
    ASSERT_TRUE(sheet.showAuto(1, 4));
    (void)sheet.list()->SetCurSel(2);
    sheet.list()->SendMessage(WM_KEYDOWN, VK_RETURN, 1);
    EXPECT_EQ(sheet.at(1, 4), "two");
    sheet.select({1, 2, 2, 4});
    sheet.key(VK_DELETE);
    EXPECT_EQ(sheet.cells, grid("1||3|/4||6|"));
    EXPECT_EQ(lastMessage, "");
    EXPECT_TRUE(sheet.Undo());
    EXPECT_EQ(sheet.selection(), "1,2-1,2");  // they were no rectangle
    EXPECT_TRUE(sheet.Undo());
    EXPECT_EQ(sheet.cells, grid("1|2|3|one/4|5|6|two"));
    EXPECT_TRUE(sheet.Redo());
    EXPECT_EQ(sheet.at(1, 4), "two");
    EXPECT_EQ(sheet.selection(), "1,4-1,4");
    sheet.select({1, 3, 2, 3});
    sheet.ForgetHistory();
    sheet.key(VK_DELETE);
    EXPECT_FALSE(sheet.canUndo() || sheet.canRedo());
}
