#include "pavane/resources/resource_ids.h"
#include "platform/CDialog.h"
#include "platform/CMenu.h"
#include "platform/profile.h"
#include "tables/table_fixture.h"
#include "tessel/value_text.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>

using namespace pavane;

namespace
{

CString lastMessage;

/// Records with a name and a value, shown in any order.
struct Records : ShownTable {
    std::vector<std::pair<CString, CString>> data = {
        {"DELTA", "10"}, {"alpha", "-3"}, {"Beta", "nan"}, {"gamma", "9"}, {"", "10"}};
    std::function<void()> asked;  ///< with each number that is asked for
    CString section;

    using ATableWnd::isTime;
    using ATableWnd::OnSetCursor;
    explicit Records(int options = optHeaderRow | optSort | optSizeColumns)
    {
        lastMessage.clear();
        SetMessageFunction([](const CString& text, unsigned) { return lastMessage = text, IDOK; });
        setOptions(options);
    }
    ~Records() override
    {
        SetMessageFunction(nullptr);
        SetKeyStateOverride(-1);
    }
    void show(CRect place = {0, 0, 320, 200})
    {
        make(static_cast<long>(data.size()), {{30, 0}, {80, colEdit}, {60, 0}}, place);
        take();
    }
    CString cellAsStr(int row, int column, void*) override
    {
        const auto at = static_cast<std::size_t>(recordOf(row)) - 1;
        if (at >= data.size())
            return std::to_string(recordOf(row));
        return column == 1 ? data[at].first : data[at].second;
    }
    CString hdrCellAsStr(int row, int column, void*) override
    {
        const char* const titles[] = {"", "Name", "Value"};
        return row ? std::to_string(recordOf(row)) : titles[column];
    }
    int cellNumber(int row, int column, double& value) override
    {
        const int is = ATableWnd::cellNumber(row, column, value);
        if (const auto run = asked)
            run();
        return is;
    }
    CString profileSection() override { return section; }
    std::string order()
    {
        std::string records;
        for (int row = 1; row <= rows(); ++row)
            records += std::to_string(recordOf(row));
        return records;
    }
    CPoint header(int column) { return cellRect(0, column).CenterPoint(); }
    void doubleClick(CPoint p)
    {
        click(p);
        press(p, 0, WM_LBUTTONDBLCLK);
        release(p);
    }
    void run(unsigned id) { SendMessage(WM_COMMAND, id); }
    bool works() { return GetDlgItem(1003) && GetDlgItem(1003)->IsWindowVisible(); }
};

constexpr unsigned taskTimer = 12;

}  // namespace

TEST(TableSorting, GoesRoundWithClicksAndStaysOnItsRecord)
{
    Records table;
    table.show();
    table.SetSelectOneCell(4, 2);  // gamma
    table.take();
    const struct {
        int column;
        const char* order;
        const char* selection;
        bool told;
    } clicks[] = {
        {2, "24153", "2,2-2,2", true}, {2, "15423", "3,2-3,2", true},
        {2, "12345", "4,2-4,2", true}, {1, "23145", "4,2-4,2", false},
        {2, "24153", "2,2-2,2", true},  // of equal values the name decides: sorted by it before
    };
    for (const auto& c : clicks) {
        table.click(table.header(c.column));
        EXPECT_EQ(table.order(), c.order);
        EXPECT_EQ(table.selection(), c.selection);
        EXPECT_EQ(table.take(), c.told ? "tell " + std::string(c.selection) + ";" : "");
    }
    EXPECT_EQ(table.sortedBy().column, 2);
    // a double click is one step, then the header
    table.doubleClick(table.header(2));
    EXPECT_EQ(table.order(), "15423");
    EXPECT_EQ(table.take(), "tell 3,2-3,2;header 0,2;");
    // no sorting by Shift, by a press that ends elsewhere, by columns that cannot, without rows
    table.click(table.header(1), MK_SHIFT);
    table.press(table.header(1));
    table.release(table.header(2));
    table.click({280, 3});
    table.click(table.cellRect(0, 0).CenterPoint());
    EXPECT_EQ(table.order(), "15423");
    // an edited row stays where it is
    ASSERT_TRUE(table.showAuto(1, 1));
    table.data[0].first = "zeta";
    table.field()->SendMessage(WM_KEYDOWN, VK_ESCAPE);
    EXPECT_EQ(table.order(), "15423");
    std::ostringstream text;
    EXPECT_TRUE(table.CopyAsTextInStream(text, 0));
    EXPECT_EQ(text.str(), "\tName\tValue\n1\tzeta\t10\n5\t\t10\n4\tgamma\t9\n2\talpha\t-3\n"
                          "3\tBeta\tnan\n");
    ASSERT_TRUE(table.showAuto(2, 1));  // an editor stays on its record
    table.field()->SetModify(1);
    table.recordsRemoved(4);
    EXPECT_EQ(table.order(), "1423");
    table.recordsInserted(2, 2);
    EXPECT_EQ(table.order(), "123645");
    EXPECT_TRUE(table.hideEdit());
    EXPECT_EQ(table.take(), "set 4,1 ;");
    ASSERT_TRUE(table.showAuto(4, 1));
    table.recordsRemoved(6);
    EXPECT_FALSE(table.field());
    table.recordsInserted(6);
    table.setRows(2);
    EXPECT_EQ(table.order(), "12");
    table.setRows(3);
    EXPECT_EQ(table.order(), "123");
    (void)table.SortRows({2, SortDirection::falling});
    table.setRows(2147483647);  // more than are sorted
    EXPECT_EQ(table.recordOf(2147483647), 2147483647);
    EXPECT_EQ(table.sortedBy().column, 0);
    table.setRows(0);
    table.click(table.header(1));
    EXPECT_EQ(table.sortedBy().column, 0);
}

TEST(TableSorting, ShowsItsArrowAndFollowsItsCommands)
{
    Records table;
    table.show();
    const auto ground = table.picture();
    table.SetSelectOneCell(1, 2);
    table.run(ID_TABLE_SORT_DOWN);
    EXPECT_EQ(table.order(), "15423");
    const auto falling = table.picture();
    table.run(ID_TABLE_SORT_UP);
    EXPECT_EQ(table.order(), "24153");
    EXPECT_NE(falling, table.picture());
    table.run(ID_TABLE_SORT_STORED);
    table.SetSelectOneCell(1, 1);
    EXPECT_EQ(ground, table.picture());
    EXPECT_EQ(table.SortRows({7, SortDirection::rising}), 0);
    Records never(optHeaderRow);
    never.show();
    never.click(never.header(2));
    never.run(ID_TABLE_SORT_UP);
    EXPECT_EQ(never.order(), "12345");
}

TEST(TableSorting, LongTablesSortInSlicesUntilEscape)
{
    Records table(optHeaderRow | optSort);
    table.data.clear();
    int asked = 0;
    table.asked = [&] { ++asked; };
    table.make(2000000, {{30, 0}, {80, 0}});
    table.SortRows({1, SortDirection::falling});
    EXPECT_TRUE(table.works());
    const int first = asked;
    EXPECT_LT(first, 2000000);
    table.SendMessage(WM_TIMER, taskTimer);
    EXPECT_GT(asked, first);
    table.key(VK_DOWN);  // the table lives
    EXPECT_EQ(table.selection(), "2,1-2,1");
    table.key(VK_ESCAPE);
    EXPECT_FALSE(table.works());
    EXPECT_EQ(table.recordOf(1), 1);
    EXPECT_FALSE(table.cancelWork());
    // other records begin it anew, a second click goes on from what was asked for
    table.setRows(30000);
    asked = 0;
    table.asked = [&] {
        if (++asked == 100)
            table.setRows(20000);
    };
    table.SortRows({1, SortDirection::falling});
    while (table.sortedBy().column == 0 && asked < 1000000)
        table.SendMessage(WM_TIMER, taskTimer);
    EXPECT_EQ(table.recordOf(1), 20000);
    EXPECT_EQ(table.recordOf(20000), 1);
}

TEST(TableSorting, HooksMayEndTheTable)
{
    for (const bool deletes : {false, true}) {
        auto table = std::make_unique<Records>();
        table->show();
        int left = 3;
        table->asked = [&] {
            if (--left == 0)
                deletes ? table.reset() : (void)table->DestroyWindow();
        };
        table->click(table->header(2));
        EXPECT_EQ(table == nullptr, deletes);
        if (table) {  // without a window all is done at once
            EXPECT_TRUE(table->SortRows({2, SortDirection::rising}));
            EXPECT_EQ(table->order(), "24153");
        }
    }
    struct Growing : Records {  // one that is told that the sorting is done
        void showState(const CString&) override { setRows(8); }
    } growing;
    growing.show();
    EXPECT_TRUE(growing.SortRows({2, SortDirection::rising}));
    EXPECT_EQ(growing.order(), "12345678");
}

TEST(TableFinding, SelectsGoesRoundAndTells)
{
    Records table;
    table.show();
    const struct {
        FindWhat what;
        const char* selection;
        bool word;
    } cases[] = {
        {{"a", 0, 0, 0, 0}, "2,1-2,1", false},  {{"a", 0, 0, 0, 0}, "3,1-3,1", false},
        {{"a", 0, 0, 0, 1}, "2,1-2,1", false},  {{"beta", 1, 0, 0, 0}, "2,1-2,1", false},
        {{"10", 0, 1, 0, 0}, "5,2-5,2", false}, {{"10", 0, 1, 0, 0}, "1,2-1,2", true},
        {{"a", 0, 0, 1, 0}, "3,2-3,2", false},  {{"A", 1, 0, 0, 1}, "1,1-1,1", false},
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(table.FindText(c.what));
        EXPECT_EQ(table.selection(), c.selection) << c.what.text;
        EXPECT_EQ(table.works(), c.word) << c.what.text;
        EXPECT_EQ(lastMessage.empty(), c.what.text != "beta") << lastMessage;
        lastMessage.clear();
    }
    SetKeyStateOverride(static_cast<int>(MK_SHIFT));
    table.key(VK_F3);  // the last text, backwards
    EXPECT_EQ(table.selection(), "1,1-1,1");
    EXPECT_TRUE(table.works());  // the word that it went round
    SetKeyStateOverride(0);
    table.accept = [] { return 0; };
    EXPECT_TRUE(table.FindText({"gamma", 0, 0, 0, 0}));
    EXPECT_EQ(table.selection(), "1,1-1,1");
}

TEST(TableFinding, AsksInADialogThatStays)
{
    Records table;
    table.show();
    SetKeyStateOverride(static_cast<int>(MK_CONTROL));
    table.key('F');
    SetKeyStateOverride(-1);
    CWnd* field = CWnd::GetFocus();
    ASSERT_TRUE(field && field->GetDlgCtrlID() == IDC_TABLE_FIND_TEXT);
    CWnd* const dialog = field->GetParent();
    field->SetWindowText("10");
    dynamic_cast<CButton*>(dialog->GetDlgItem(IDC_TABLE_FIND_WHOLE))->SetCheck(1);
    dialog->SendMessage(WM_COMMAND, IDC_TABLE_FIND_BACK);
    EXPECT_EQ(table.selection(), "5,2-5,2");
    EXPECT_TRUE(dialog->PreTranslateMessage({0, WM_KEYDOWN, VK_F3, 1, {}, nullptr}));
    EXPECT_EQ(table.selection(), "1,2-1,2");
    const HWND handle = dialog->GetSafeHwnd();
    EXPECT_TRUE(dialog->IsWindowVisible());
    dialog->SendMessage(WM_COMMAND, IDCANCEL);
    EXPECT_FALSE(CWnd::FromHandle(handle));
    table.run(ID_TABLE_FIND);
    field = CWnd::GetFocus();
    ASSERT_TRUE(field && field->GetDlgCtrlID() == IDC_TABLE_FIND_TEXT);
    EXPECT_EQ(field->GetWindowText(), "10");
    table.DestroyWindow();  // takes the dialog along
    EXPECT_FALSE(CWnd::GetFocus());
}

TEST(TableFinding, GoesToARow)
{
    Records table;
    table.make(500, {{30, 0}, {80, 0}});
    static CString typed;
    SetDialogAnswer([](CDialog& dialog) {
        dialog.SetDlgItemText(IDC_TABLE_NUMBER, typed);
        dialog.SendMessage(WM_COMMAND, IDOK);
        return static_cast<int>(IDCANCEL);
    });
    const struct {
        const char* typed;
        const char* selection;
        bool told;
    } cases[] = {{"400", "400,1-400,1", false},
                 {"501", "400,1-400,1", true},
                 {"x", "400,1-400,1", true},
                 {" 1 ", "1,1-1,1", false},
                 {"0", "1,1-1,1", true}};
    for (const auto& c : cases) {
        lastMessage.clear();
        typed = c.typed;
        table.run(ID_TABLE_GO_TO_ROW);
        EXPECT_EQ(table.selection(), c.selection) << c.typed;
        EXPECT_EQ(!lastMessage.empty(), c.told) << c.typed;
    }
    SetDialogAnswer(nullptr);
}

TEST(TableSizing, DragsFitsAndKeepsWidths)
{
    const char* const folder = std::getenv("TEST_TMPDIR");
    const CString file = CString(folder ? folder : "/tmp") + "/table-widths.ini";
    (void)std::remove(file.c_str());
    SetProfileFile(file);
    const auto width = [](ShownTable& t, int column) { return t.grid().columns().width(column); };
    {
        Records table;
        table.section = "Records";
        table.show();
        const auto drag = [&](int from, int by) {
            table.press({from, 3});
            table.press({from + by, 3}, MK_LBUTTON, WM_MOUSEMOVE);
        };
        drag(110, 25);
        EXPECT_EQ(width(table, 1), 105);  // live
        table.key(VK_ESCAPE);
        EXPECT_EQ(width(table, 1), 80);
        table.release({135, 3});
        EXPECT_EQ(GetProfileString("Records", "Columns"), "");
        drag(111, -200);
        table.release({-89, 3});
        EXPECT_EQ(width(table, 1), 0);
        table.press({32, 3});  // the edge of the column without width
        table.release({76, 3});
        EXPECT_EQ(width(table, 1), 44);
        EXPECT_EQ(table.order(), "12345");  // no edge sorts
        EXPECT_EQ(table.take(), "");
        table.doubleClick({74, 3});
        EXPECT_GT(width(table, 1), 50);
        const int fitted = width(table, 1);
        table.data[3].first = "a much longer name than before";
        EXPECT_NE(table.OnToolTip(table.at(4, 1)), "");
        EXPECT_EQ(table.OnToolTip(table.at(3, 1)), "");
        EXPECT_EQ(table.OnToolTip({300, 190}), "");
        table.run(ID_TABLE_FIT_COLUMN);
        EXPECT_GT(width(table, 1), fitted);
        EXPECT_EQ(table.OnToolTip(table.at(4, 1)), "");
        table.SetColumnWidth(2, 99999);
        EXPECT_EQ(width(table, 2), 32767);
        table.SetColumnWidth(2, 77);
        table.SetColumnWidth(1, 66);
    }
    Records again;
    again.section = "Records";
    again.show();
    EXPECT_EQ(width(again, 1), 66);
    EXPECT_EQ(width(again, 2), 77);
    Records never(optHeaderRow);
    never.section = "Records";
    never.show();
    EXPECT_EQ(width(never, 1), 80);
    never.press({110, 3});
    never.press({150, 3}, MK_LBUTTON, WM_MOUSEMOVE);
    EXPECT_EQ(width(never, 1), 80);
    SetProfileFile("");
}

TEST(TableSizing, StretchColumnsShareWhatIsLeft)
{
    Records table;
    table.make(2, {{30, 0}, {80, colStretch}, {60, colStretch}, {50, 0}}, {0, 0, 400, 200});
    const auto widths = [&] {
        std::string all;
        for (int c = 0; c <= 3; ++c)
            all += std::to_string(table.grid().columns().width(c)) + " ";
        return all;
    };
    EXPECT_EQ(widths(), "30 170 150 50 ");
    table.SetColumnWidth(3, 90);
    EXPECT_EQ(widths(), "30 150 130 90 ");
    const int edge = table.cellRect(0, 1).right;
    table.press({edge, 3});
    table.press({edge - 50, 3}, MK_LBUTTON, WM_MOUSEMOVE);
    EXPECT_EQ(widths(), "30 100 180 90 ");
    table.key(VK_ESCAPE);
    EXPECT_EQ(widths(), "30 150 130 90 ");
    table.MoveWindow({0, 0, 420, 200});
    EXPECT_EQ(widths(), "30 160 140 90 ");
}

TEST(TableCommands, AreLeftOutWhereTheTableNeverDoesThem)
{
    static std::vector<unsigned> shown;
    static CPoint place;
    SetMenuAnswer([](const CMenu& menu, CPoint screen) {
        shown.clear();
        place = screen;
        for (const CMenu::Line& line : menu.lines())
            shown.push_back(line.id);
        EXPECT_NE(shown.back(), 0u);
        for (std::size_t i = 1; i < shown.size(); ++i)
            EXPECT_TRUE(shown[i] || shown[i - 1]);  // no two lines between commands
        return 0u;
    });
    const auto has = [](unsigned id) {
        return std::find(shown.begin(), shown.end(), id) != shown.end();
    };
    for (const int options : {0, optSort | 0, optSizeColumns | 0, optRangeSelect | 0}) {
        Records table(optHeaderRow | options);
        table.show();
        table.SetSelectOneCell(3, 1);
        table.SendMessage(WM_CONTEXTMENU, 0, -1);
        EXPECT_EQ(has(ID_TABLE_SORT_DOWN), (options & optSort) != 0);
        EXPECT_EQ(has(ID_TABLE_COLUMN_WIDTH), (options & optSizeColumns) != 0);
        EXPECT_EQ(has(ID_TABLE_SELECT_ALL), (options & optRangeSelect) != 0);
        EXPECT_TRUE(has(ID_TABLE_FIND));
        CPoint corner(table.cellRect(3, 1).left, table.cellRect(3, 1).bottom);
        table.ClientToScreen(corner);
        EXPECT_EQ(place, corner);
    }
    SetMenuAnswer([](const CMenu&, CPoint) { return ID_TABLE_SORT_UP; });
    Records table;
    table.show();
    for (const CPoint p : {table.header(2), table.at(2, 1)}) {  // over a header it is of its column
        CPoint screen = p;
        table.ClientToScreen(screen);
        table.SendMessage(WM_CONTEXTMENU, 0, MAKELPARAM(screen.x, screen.y));
        EXPECT_EQ(table.order(), p == table.header(2) ? "24153" : "23145");
    }
    SetMenuAnswer(nullptr);
}

TEST(TableCommands, SelectWholeRowsAndColumnsByKeysAndSumThem)
{
    Records table(optHeaderRow | optRangeSelect);
    table.show();
    const struct {
        unsigned held;
        int key;
        const char* selection;
        double sum;
        std::int64_t numbers;
    } cases[] = {{MK_SHIFT, VK_SPACE, "2,1-2,2", -3, 1},
                 {MK_CONTROL, VK_SPACE, "1,2-5,2", 26, 4},
                 {MK_CONTROL, 'A', "1,1-5,2", 26, 4}};
    for (const auto& c : cases) {
        table.SetSelectOneCell(2, 2);
        table.take();
        SetKeyStateOverride(static_cast<int>(c.held));
        table.key(c.key);
        SetKeyStateOverride(0);
        EXPECT_EQ(table.selection(), c.selection);
        EXPECT_FALSE(table.field());
        const SelectionSums sums = table.sumsOfSelection();
        EXPECT_EQ(sums.numbers, c.numbers);
        EXPECT_EQ(sums.sum, c.sum);
        EXPECT_FALSE(sums.partial);
    }
    EXPECT_TRUE(table.sumsOfSelection(0).partial);
}
