#include "pavane/resources/resource_ids.h"
#include "platform/CDialog.h"
#include "platform/clipboard.h"
#include "platform/file_dialog.h"
#include "platform/picture.h"
#include "platform/system_colors.h"
#include "tables/table_fixture.h"
#include "tessel/AFile.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

using namespace pavane;

namespace
{

const std::vector<ATableColumn> threeColumns = {{50, 0}, {60, colEdit}, {60, colCombo}, {60, 0}};

std::string lastMessage;
int noteMessage(const CString& text, unsigned)
{
    lastMessage = text;
    return IDOK;
}

CString fileAnswer;
int chooseFile(CString& name, const CString& filter, int open)
{
    EXPECT_EQ(name, ".uvx");
    EXPECT_EQ(filter, "Text file (*.txt)|*.txt|All files (*.*)|*.*||");
    EXPECT_FALSE(open);
    name = fileAnswer;
    return !name.empty();
}

std::string fileText(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void send(CWnd* window, int key) { window->SendMessage(WM_KEYDOWN, static_cast<WPARAM>(key), 1); }

/// Replaces what asks the user, for one test.
struct Answers {
    Answers()
    {
        lastMessage.clear();
        SetMessageFunction(noteMessage);
        SetFileDialogAnswer(chooseFile);
    }
    ~Answers()
    {
        SetMessageFunction(nullptr);
        SetFileDialogAnswer(nullptr);
        SetKeyStateOverride(-1);
    }
};

}  // namespace

TEST(TableEditing, StoresByKeysAndGoesOn)
{
    const Answers answers;
    const struct {
        const char* name;
        int key;
        const char* calls;
        const char* selection;
    } cases[] = {
        {"Enter", VK_RETURN, "set 2,1 7;ask 3,1-3,1 2,1-2,1;tell 3,1-3,1;", "3,1-3,1"},
        {"Down", VK_DOWN, "set 2,1 7;ask 3,1-3,1 2,1-2,1;tell 3,1-3,1;", "3,1-3,1"},
        {"Up", VK_UP, "set 2,1 7;ask 1,1-1,1 2,1-2,1;tell 1,1-1,1;", "1,1-1,1"},
        {"Tab", VK_TAB, "set 2,1 7;ask 2,2-2,2 2,1-2,1;tell 2,2-2,2;", "2,2-2,2"},
        {"Escape", VK_ESCAPE, "", "2,1-2,1"},
    };
    for (const auto& c : cases) {
        ShownTable table;
        table.make(9, threeColumns);
        table.SetSelectOneCell(2, 1);
        table.take();
        table.SendMessage(WM_CHAR, '7');
        ASSERT_TRUE(table.field()) << c.name;
        EXPECT_EQ(table.field()->GetWindowText(), "7") << c.name;
        EXPECT_EQ(CWnd::GetFocus(), table.field()) << c.name;
        EXPECT_FALSE(table.isOptSet(optSkipPaint)) << c.name;
        send(table.field(), c.key);
        EXPECT_FALSE(table.field()) << c.name;
        EXPECT_EQ(CWnd::GetFocus(), &table) << c.name;
        EXPECT_EQ(table.take(), c.calls) << c.name;
        EXPECT_EQ(table.selection(), c.selection) << c.name;
    }
}

TEST(TableEditing, ARefusedValueKeepsTheFieldAndEverythingElse)
{
    ShownTable table;
    table.make(90, threeColumns);
    table.store = [](const CString& text) { return text != "x"; };
    send(&table, VK_F2);
    ASSERT_TRUE(table.field());
    EXPECT_EQ(table.field()->GetWindowText(), "11");
    send(&table, VK_F2);  // unchanged: closes it and opens it again
    ASSERT_TRUE(table.field());
    EXPECT_EQ(table.take(), "");
    table.field()->SetWindowText("x");
    table.field()->SetModify(1);
    const CPoint other = table.at(3, 3);
    table.click(other);
    table.SendMessage(WM_VSCROLL, SB_LINEDOWN);
    send(&table, VK_DOWN);
    ASSERT_TRUE(table.field());
    EXPECT_TRUE(table.field()->GetModify());
    EXPECT_EQ(table.grid().firstRow(), 1);
    EXPECT_EQ(table.take(), "set 1,1 x;set 1,1 x;set 1,1 x;");
    // host calls keep it on its cell, or close it with what was typed
    table.SetCellHeaderUnit(20);
    table.SetUpWindow();
    CRect place;
    table.field()->GetWindowRect(place);
    EXPECT_EQ(place.Height(), table.GetCellHeight() - 1);
    table.setRows(0);
    EXPECT_FALSE(table.field());
    EXPECT_EQ(table.take(), "");
    table.setRows(9);
    table.SetUpWindow();
    ASSERT_TRUE(table.showAuto(2, 2));
    table.deleteColumn(1);  // the column of lists is the first now
    ASSERT_TRUE(table.list());
    table.list()->GetWindowRect(place);
    table.ScreenToClient(place);
    EXPECT_EQ(place.left, table.cellRect(2, 1).left);
    table.deleteColumn(1);
    EXPECT_FALSE(table.list());
    // a window that a hook destroyed is made again
    for (const bool destroys : {true, false}) {
        (void)table.DestroyWindow();
        table.make(9, threeColumns);
        table.store = [&](const CString&) { return !destroys || !table.DestroyWindow(); };
        ASSERT_TRUE(table.showAuto(1, 1));
        table.field()->SetModify(1);
        send(&table, VK_DOWN);
        EXPECT_EQ(table.GetSafeHwnd() == 0, destroys);
        EXPECT_FALSE(table.field());
    }
}

TEST(TableEditing, LongTextsAreLookedAtOnly)
{
    struct LongTexts : ShownTable {
        CString strCell(int, int column) override { return CString(column == 1 ? 128 : 129, 'a'); }
    } table;
    table.make(2, {{50, 0}, {60, colEdit}, {60, colEdit}});
    for (const int column : {1, 2}) {
        ASSERT_TRUE(table.showAuto(1, column));
        EXPECT_EQ(table.field()->GetWindowText().size(), 127u + column);
        send(table.field(), VK_ESCAPE);
    }
    table.SetSelectOneCell(1, 2);
    table.SendMessage(WM_CHAR, 'b');
    ASSERT_TRUE(table.field());
    EXPECT_EQ(table.field()->GetWindowText().size(), 129u);
    table.take();
    EXPECT_TRUE(table.hideEdit());
    EXPECT_EQ(table.take(), "");
}

TEST(TableEditing, ListsAreFilledChosenAndRefused)
{
    struct Lists : ShownTable {
        int refused = 0;
        int isEnableAutoComboBox(int row, int column) override
        {
            return row == 2 ? 0 : ATableWnd::isEnableAutoComboBox(row, column) || row == 3;
        }
        int FillComboBox(CComboBox* list, int, int) override
        {
            for (const char* const text : {"one", "two", "three"})
                (void)list->AddString(text);
            return 1;
        }
        int getFromComboBox(CComboBox* list, int row, int column) override
        {
            calls.push_back("list " + std::to_string(row) + "," + std::to_string(column) + " " +
                            std::to_string(list->GetCurSel()));
            Invalidate();
            UpdateWindow();  // as under a message, with questions of its own
            return !refused;
        }
    } table;
    table.make(9, threeColumns);
    table.SetSelectOneCell(1, 2);
    table.take();
    send(&table, VK_RETURN);
    ASSERT_TRUE(table.list());
    EXPECT_EQ(table.list()->GetCurSel(), 1);
    table.refused = 1;
    send(&table, VK_DOWN);
    ASSERT_TRUE(table.list());
    EXPECT_EQ(table.take(), "list 1,2 1;");
    table.refused = 0;
    (void)table.list()->SetCurSel(2);
    send(table.list(), VK_RETURN);
    EXPECT_FALSE(table.list());
    EXPECT_EQ(table.take(), "list 1,2 2;ask 2,2-2,2 1,2-1,2;tell 2,2-2,2;");
    send(&table, VK_RETURN);  // its list may not open now
    EXPECT_EQ(table.take(), "cell 2,2;");
    table.SetSelectOneCell(3, 2);
    table.SendMessage(WM_CHAR, 'o');
    ASSERT_TRUE(table.list());
    EXPECT_EQ(table.list()->GetCurSel(), 0);
    send(table.list(), VK_ESCAPE);
    EXPECT_FALSE(table.list());
    EXPECT_EQ(table.take(), "tell 3,2-3,2;");
    struct Plain : ShownTable {  // calls the base only: enabled, nothing chosen, accepted
        int isEnableAutoComboBox(int r, int c) override
        {
            return ATableWnd::isEnableAutoComboBox(r, c);
        }
    } plain;
    plain.make(9, threeColumns);
    EXPECT_FALSE(plain.isEnableAutoComboBox(1, 2));
    ASSERT_TRUE(plain.showAuto(1, 2));
    EXPECT_EQ(plain.list()->GetCurSel(), -1);
    send(&plain, VK_DOWN);
    EXPECT_FALSE(plain.list());
}

TEST(TableEditing, TabGoesFromFieldToFieldInADialogAndOutOfItElse)
{
    static constexpr DlgItem items[] = {
        {ControlKind::pushButton, 1, "A", 10, 40, 30, 14, WS_TABSTOP},
        {ControlKind::placeholder, 77, "", 0, 0, 120, 40, WS_TABSTOP | WS_HSCROLL | WS_VSCROLL}};
    static constexpr DlgTemplate form{900, "Form", 130, 60, items, 2};
    CDialog dialog(form);
    ASSERT_TRUE(dialog.CreateModeless());
    struct Fields : ShownTable {
        int isEnableAutoEdit(int row, int) override { return row != 2; }
    } table;
    std::vector<ATableColumn> columns = threeColumns;
    table.setColumnPar(columns.data(), 4);
    table.setRows(3);
    ASSERT_TRUE(table.UpDateControl("", &dialog, 77, WS_TABSTOP | WS_HSCROLL | WS_VSCROLL));
    dialog.ShowWindow(SW_SHOW);
    table.SetFocus();
    ASSERT_TRUE(table.showAuto(1, 1));
    send(table.field(), VK_TAB);  // column 2 is a list; row 2 cannot be edited
    ASSERT_TRUE(table.list());
    EXPECT_EQ(table.selection(), "1,2-1,2");
    send(table.list(), VK_TAB);
    SetKeyStateOverride(static_cast<int>(MK_SHIFT));
    ASSERT_TRUE(table.list());
    EXPECT_EQ(table.selection(), "2,2-2,2");
    send(table.list(), VK_TAB);
    SetKeyStateOverride(-1);
    EXPECT_EQ(table.selection(), "1,2-1,2");
    ASSERT_TRUE(table.list());
    send(table.list(), VK_ESCAPE);
    table.take();
    send(&table, VK_TAB);
    EXPECT_EQ(table.take(), "");
    EXPECT_NE(CWnd::GetFocus(), &table);
}

TEST(TablePointer, DoubleClicksActivate)
{
    ShownTable table;
    table.setOptions(optHeaderRow);
    table.make(3, threeColumns);
    const struct {
        int row, column;
        const char* calls;
        bool field;
    } cases[] = {{0, 2, "header 0,2;", false},
                 {2, 0, "header 2,0;", false},
                 {1, 1, "", true},
                 {2, 3, "ask 2,3-2,3 1,1-1,1;tell 2,3-2,3;cell 2,3;", false}};
    for (const auto& c : cases) {
        const CPoint p = table.at(c.row, c.column);
        table.click(p);
        table.press(p, 0, WM_LBUTTONDBLCLK);
        table.release(p);
        EXPECT_EQ(table.take(), c.calls);
        EXPECT_EQ(table.field() != nullptr, c.field);
    }
    table.press({300, 190}, 0, WM_LBUTTONDBLCLK);  // beyond the cells
    table.accept = [] { return 0; };
    table.click(table.at(1, 1));
    table.press(table.at(1, 1), 0, WM_LBUTTONDBLCLK);
    EXPECT_EQ(table.take(), "ask 1,1-1,1 2,3-2,3;");
    EXPECT_FALSE(table.field());
    table.accept = nullptr;
    table.press(table.at(3, 1), 0, WM_RBUTTONDOWN);  // outside: selects
    EXPECT_EQ(table.selection(), "3,1-3,1");
}

TEST(TablePointer, DragsExtendByMovesAndEndWithTheCapture)
{
    ShownTable table;
    table.setOptions(optRangeSelect);
    table.make(90, threeColumns);
    table.press(table.at(2, 1));
    EXPECT_TRUE(table.isOptSet(optButtonDown | optDragTimer));
    table.press(table.at(4, 2), MK_LBUTTON, WM_MOUSEMOVE);
    EXPECT_EQ(table.selection(), "2,1-4,2");
    table.press({table.at(4, 2).x, 9999}, MK_LBUTTON, WM_MOUSEMOVE);
    EXPECT_EQ(table.grid().firstRow(), 1);  // scrolling is the timer's
    CPoint below(table.at(4, 2).x, 9999);
    table.ClientToScreen(below);
    SetCursorPos(below);
    table.SendMessage(WM_TIMER, 11);
    EXPECT_EQ(table.grid().firstRow(), 2);
    table.SendMessage(WM_CAPTURECHANGED);
    EXPECT_FALSE(table.isOptSet(optButtonDown));
    table.take();
    table.press(table.at(5, 3), MK_LBUTTON, WM_MOUSEMOVE);
    EXPECT_EQ(table.take(), "");
    table.press(table.at(2, 1));
    table.release(table.at(3, 3));
    EXPECT_EQ(table.selection(), "2,1-3,3");
    // a row that is half in view comes in whole, and the pointer, which rests, is on the next one
    CRect all;
    table.GetClientRect(all);
    const CPoint edge(table.at(4, 2).x, all.bottom - 3);
    const int first = table.grid().firstRow();
    ASSERT_GT(table.cellRect(table.grid().cellAt(edge).row, 2).bottom, all.bottom);
    table.press(edge);
    table.ClientToScreen(below = edge);
    SetCursorPos(below);
    table.SendMessage(WM_TIMER, 11);
    table.release(edge);
    EXPECT_EQ(table.grid().firstRow(), first + 1);
    EXPECT_EQ(table.getSelectRect().anchorRow, table.getSelectRect().endRow);
}

TEST(TableText, GoesToClipboardAndFilesToTheLetter)
{
    const Answers answers;
    ShownTable table;
    table.setOptions(optRangeSelect);
    table.make(2, {{50, 0}, {60, 0}, {60, 0}});
    const std::string all = "col 0\tcol 1\tcol 2\nrow 1\t11\t12\nrow 2\t21\t22\n";
    const std::string part = "col 0\tcol 2\nrow 1\t12\nrow 2\t22\n";
    ASelectRect selection{2, 2, 1, 2};
    table.SetSelectRect(selection);
    CString text;
    table.SendMessage(WM_COMMAND, ID_TABLE_COPY_ALL);
    EXPECT_TRUE(GetClipboardText(text));
    EXPECT_EQ(text, all);
    SetKeyStateOverride(static_cast<int>(MK_CONTROL));
    send(&table, 'C');
    EXPECT_TRUE(GetClipboardText(text));
    EXPECT_EQ(text, part);
    SetClipboardRefusal(1);
    send(&table, 'C');
    SetClipboardRefusal(0);
    EXPECT_EQ(lastMessage, "The clipboard does not take the text.");

    const std::string folder = std::getenv("TEST_TMPDIR") ? std::getenv("TEST_TMPDIR") : "/tmp";
    fileAnswer = folder + "/table.txt";
    (void)std::remove(fileAnswer.c_str());
    table.OnCopyInFileAll();
    EXPECT_EQ(fileText(fileAnswer), all);
    table.OnCopyInFileSel();  // replaces it
    EXPECT_EQ(fileText(fileAnswer), part);
    fileAnswer = folder + "/no such folder/table.txt";
    table.OnCopyInFileAll();
    EXPECT_EQ(lastMessage, "Can`t create file: " + fileAnswer);
    std::ostringstream broken;
    broken.setstate(std::ios::badbit);
    EXPECT_FALSE(table.CopyAsTextInStream(broken, 0));
    fileAnswer = "/dev/full";
    table.OnCopyInFileAll();
    EXPECT_EQ(lastMessage,
              "The table could not be written whole. What was written is in: /dev/full");
}

TEST(TablePrinting, DrawsThePagesRowsIntoTheRectangle)
{
    struct Rects : ShownTable {
        std::string seen;
        void note(const CRect& r, int row, int column)
        {
            seen += std::to_string(row) + "," + std::to_string(column) + ":" +
                    std::to_string(r.left) + "," + std::to_string(r.top) + "," +
                    std::to_string(r.right) + "," + std::to_string(r.bottom) + " ";
        }
        void drawHeaderCell(CDC&, CRect& r, int row, int column) override { note(r, row, column); }
        void drawCell(CDC&, CRect& r, int row, int column, int state) override
        {
            EXPECT_EQ(state, 0);
            note(r, row, column);
        }
    } table;
    table.setOptions(optHeaderRow);
    table.make(70, {{50, 0}, {60, 0}});
    CBitmap page;
    ASSERT_TRUE(page.CreateBitmap(400, 700, 1));
    CMemoryDC dc(page);
    const int millimetres = dc.GetDeviceCaps(VERTSIZE);
    const int rows = millimetres * 2 / 9;
    EXPECT_EQ(table.GetPages(dc), (70 - 1 + rows - 1) / (rows - 1));
    const int height = table.GetCellHeight();
    CRect rect(10, 20, 390, 20 + rows * 12);  // lower than on the screen
    const int last = table.GetPages(dc);
    table.PrintWindow(dc, rect, last);
    const int first = (last - 1) * (rows - 1) + 1;
    const auto cell = [&](int row, int column, int line) {
        const int left = column ? 50 : 0, right = column ? 110 : 50;
        const int top = line * height;
        return std::to_string(row) + "," + std::to_string(column) + ":" + std::to_string(left) +
               "," + std::to_string(top) + "," + std::to_string(right - 1) + "," +
               std::to_string(top + height - 1) + " ";
    };
    EXPECT_EQ(table.seen.substr(0, 80), (cell(0, 0, 0) + cell(0, 1, 0) + cell(first, 0, 1) +
                                         cell(first, 1, 1) + cell(first + 1, 0, 2))
                                            .substr(0, 80));
    table.seen.clear();
    table.PrintWindow(dc, rect, last + 1);
    EXPECT_EQ(table.seen, "");
}

TEST(TablePrinting, DrawsPicturesAndFilesOnTheColoursOfPaper)
{
    ShownTable table;
    table.setOptions(optHeaderRow | optVertLines | optHorzLines);
    table.make(70, {{50, 0}, {60, colEdit}});
    ASelectRect all{1, 1, 70, 1};
    table.SetSelectRect(all);
    CPicture picture(400, 700);
    const auto dc = picture.dc();
    (void)table.GetPages(*dc);
    const int height = table.GetCellHeight();
    CRect rect(0, 0, 400, (dc->GetDeviceCaps(VERTSIZE) * 2 / 9) * height);
    table.PrintWindow(*dc, rect, 1);
    EXPECT_EQ(picture.row(3)[60], 0xD4D4D4u);                // a header
    EXPECT_EQ(picture.row(height + 3)[52], 0xFFFFFFu);       // a cell, selected on the screen only
    EXPECT_EQ(picture.row(height + 3)[50 + 59], 0x808080u);  // the line behind it
    EXPECT_EQ(picture.row(height + 3)[50 + 60], 0xFFFFFFu);  // no column
    const auto file = [](const char* name) {
        const char* const folder = std::getenv("TEST_TMPDIR");
        return std::string(folder ? folder : "/tmp") + name;
    };
    CString error;
    for (const auto format : {CPageFile::Format::svg, CPageFile::Format::pdf}) {
        CPageFile page(format, 400, 700, "Rows", 12);
        ASSERT_EQ(table.GetPages(page.dc()), 2);  // 700 pixels are 185 mm: 41 rows
        CRect sheet(0, 0, 400 * 12, 700 * 12);
        table.PrintWindow(page.dc(), sheet, 2);
        ASSERT_TRUE(page.Close(file("/rows"), error)) << error;
        const std::string text = fileText(file("/rows"));
        if (format == CPageFile::Format::pdf) {
            EXPECT_EQ(text.substr(0, 5), "%PDF-");
            continue;
        }
        EXPECT_NE(text.find(">411<"), std::string::npos);  // row 41, column 1
        EXPECT_NE(text.find(">701<"), std::string::npos);
        EXPECT_EQ(text.find(">401<"), std::string::npos);
    }
}

TEST(TablePainting, IsPutOffWhileAnEditorOpens)
{
    ShownTable table;
    table.make(9, threeColumns);
    table.UpdateWindow();
    int painted = 0;
    table.drawing = [&] { ++painted; };
    table.setOpt(optSkipPaint, 1);
    table.Invalidate();
    table.UpdateWindow();
    table.UpdateWindow();
    EXPECT_EQ(painted, 27);  // put off, not lost
    EXPECT_FALSE(table.isOptSet(optSkipPaint));
}

TEST(TablePainting, SelectedCellsCanBeRead)
{
    struct Colours : ShownTable {
        using ShownTable::GetCellBkColor;
    } table;
    table.make(9, threeColumns);
    const COLORREF selected = table.GetCellBkColor(1, 1, 3);
    EXPECT_GE(ContrastRatio(selected, GetSysColor(COLOR_WINDOWTEXT)), 4.5);
    EXPECT_NE(selected, table.GetCellBkColor(1, 1, 1));
    table.setOptions(optNoSelColor);
    EXPECT_EQ(table.GetCellBkColor(1, 1, 3), GetSysColor(COLOR_WINDOW));
}

TEST(TableWindow, StandsAtTheEndOfTheLargestTable)
{
    ShownTable table;
    table.setOptions(optHeaderRow | optRangeSelect);
    table.make(0x7FFFFFFFL, threeColumns);
    SetKeyStateOverride(static_cast<int>(MK_CONTROL | MK_SHIFT));
    send(&table, VK_END);
    SetKeyStateOverride(-1);
    EXPECT_EQ(table.selection(), "2147483647,3-1,1");
    EXPECT_EQ(table.GetScrollPos(SB_VERT), 32767);
    int painted = 0;
    table.drawing = [&] { ++painted; };
    table.Invalidate();
    table.UpdateWindow();
    EXPECT_LT(painted, 100);
    table.SendMessage(WM_VSCROLL, SB_THUMBTRACK | 1u << 16);
    EXPECT_EQ(table.grid().firstRow(), 1);
}
