#include "tables/observation/freq_fixture.h"

#include <gtest/gtest.h>

using namespace pavane;

TEST(FreqGroupsWindow, TextsAreToTheLetter)
{
    ShownGroups shown(4, 2, 2);
    (void)shown.groups.DeleteItems(1, 2);
    shown.groups(0).set(1);
    shown.window.ReConstruct();
    AFreqGroupTbl& table = shown.window.GroupTbl();
    AFreqGroupInfoTbl& list = shown.window.InfoTbl();
    AFreqIDTbl& ids = shown.window.IDTbl();
    EXPECT_EQ(table.columns() * 10 + table.rows(), 42);
    const struct {
        CString is, text;
    } cases[] = {{table.hdrCellAsStr(0, 0, nullptr), ""},
                 {table.hdrCellAsStr(0, 4, nullptr), "IF 4 [MHz]"},
                 {table.hdrCellAsStr(2, 0, nullptr), "Ch. 2"},
                 {table.cellAsStr(2, 2, nullptr), "4983.490000"},
                 {table.cellAsStr(3, 2, nullptr), ""},
                 {list.hdrCellAsStr(2, 0, nullptr), "  Frequency group #2"},
                 {list.cellAsStr(1, 1, nullptr), "  IF1..IF2"},
                 {list.cellAsStr(2, 1, nullptr), "IF4"},
                 {list.cellAsStr(1, 2, nullptr), "4974.990000"},
                 {list.cellAsStr(1, 3, nullptr), "4983.490000"},
                 {list.cellAsStr(3, 1, nullptr), ""},
                 {ids.hdrCellAsStr(2, 0, nullptr), "Freq. ID 11"},
                 {ids.cellAsStr(2, 3, nullptr), "5999.490000"}};
    for (const auto& c : cases)
        EXPECT_EQ(c.is, c.text);
    ids.SetSelectOneCell(2, 1);
    EXPECT_EQ(table.cellAsStr(1, 1, nullptr), "5974.990000");
    EXPECT_EQ(list.cellAsStr(1, 2, nullptr), "5974.990000");
    table.ChangeFreqID(2);
    EXPECT_EQ(table.GetFreqID(), 1);
    AFreqGroupTbl alone;  // no groups, then none of no IF
    AFreqGroupArray none;
    for (AFreqGroupArray* const groups : {static_cast<AFreqGroupArray*>(nullptr), &none}) {
        alone.SetParameters(groups);
        EXPECT_EQ(alone.hdrCellAsStr(0, 1, nullptr), "No IF [MHz]");
        EXPECT_EQ(alone.hdrCellAsStr(7, 0, nullptr), "Freq. 7");
        EXPECT_EQ(alone.cellAsStr(1, 1, nullptr), "");
        EXPECT_EQ(alone.columns() * 10 + alone.rows(), 10);
        EXPECT_EQ(alone.AddFreqGroup(), -1);
        EXPECT_FALSE(alone.AllInOne() || alone.DeleteFreqGroup(0) || alone.Undo());
        alone.OnFixedStepGroup();
    }
}

TEST(FreqGroupsWindow, MakesAndDeletesGroupsByKeys)
{
    ShownGroups shown(5);
    AFreqGroupTbl& table = shown.window.GroupTbl();
    AFreqGroupInfoTbl& list = shown.window.InfoTbl();
    ASelectRect two{1, 2, 3, 3};
    table.SetSelectRect(two);
    shown.key(table, VK_SPACE);
    shown.key(table, VK_INSERT);
    EXPECT_EQ(shown.state(), "10000 01000 01100 00100 00010 00001 |00000");
    EXPECT_EQ(shown.listSelection(), "3,1-3,1");
    EXPECT_EQ(list.rows(), 6);
    EXPECT_TRUE(shown.window.IsModified());
    EXPECT_GT(shown.frame.told, 0);
    shown.mark("10100");
    EXPECT_EQ(table.AddFreqGroup(), -1);
    EXPECT_EQ(shown.message, "Infalid selection. Selected IFs must be neighbor");
    EXPECT_EQ(shown.state(), "10000 01000 01100 00100 00010 00001 |10100");
    shown.key(list, VK_DELETE);  // the marks before its IFs go
    EXPECT_EQ(shown.state(), "10000 01000 00100 00010 00001 |00100");
    EXPECT_EQ(shown.listSelection(), "3,1-3,1");
    shown.key(list, 'Z', MK_CONTROL);
    EXPECT_EQ(shown.state(), "10000 01000 01100 00100 00010 00001 |10100");
    shown.key(table, '1', MK_CONTROL);
    EXPECT_EQ(shown.state(), "11111 |00000");
    EXPECT_EQ(shown.listSelection(), "1,1-1,1");
    ShownGroups::step = 2;
    shown.key(table, 'T', MK_CONTROL);
    EXPECT_EQ(shown.message, "1");
    EXPECT_EQ(shown.state(), "11000 00110 00001 |00000");
    ShownGroups::step = 99;  // held by the spin control
    shown.key(table, 'T', MK_CONTROL);
    EXPECT_EQ(shown.state(), "11111 |00000");
    ShownGroups::step = 0;
    shown.key(table, 'T', MK_CONTROL);
    EXPECT_EQ(shown.state(), "11111 |00000");
    ShownGroups::step = 1;
    shown.key(table, 'T', MK_CONTROL);
    ASelectRect rows{4, 1, 2, 3};
    list.SetSelectRect(rows);
    shown.key(list, VK_DELETE);
    EXPECT_EQ(shown.state(), "10000 00001 |00000");
    shown.key(table, 'Z', MK_CONTROL);
    EXPECT_EQ(list.rows(), 5);
    shown.key(list, VK_DELETE, MK_CONTROL);
    EXPECT_EQ(shown.state(), "|00000");
    while (shown.window.Undo()) {
    }
    EXPECT_EQ(shown.state(), "10000 01000 00100 00010 00001 |00000");
    EXPECT_FALSE(shown.window.IsModified());
}

TEST(FreqGroupsWindow, AsksBeforeItCloses)
{
    const struct {
        const char* change;
        int ask, answer, closes;
        const char* message;
    } cases[] = {
        {"none", 1, IDYES, 0, "There is no frequency group."},
        {"whole", 1, IDNO, 1, ""},
        {"gap", 0, IDYES, 0, "In no group: IF1."},
        {"gap", 1, IDYES, 1, "In no group: IF1.\nClose all the same?"},
        {"gap", 1, IDNO, 0, "In no group: IF1.\nClose all the same?"},
    };
    for (const auto& c : cases) {
        ShownGroups shown(3);
        const std::string change = c.change;
        if (change != "whole")
            (void)shown.groups.DeleteItems(0, change == "none" ? 3 : 1);
        ShownGroups::answer = c.answer;
        EXPECT_EQ(shown.window.IsValidClose(c.ask), c.closes) << change;
        EXPECT_EQ(shown.message, c.message);
    }
    ShownGroups::answer = IDOK;
    AFreqGroupsWnd empty;
    EXPECT_TRUE(empty.IsValidClose(1));
}

TEST(FreqGroupsWindow, ItsTablesFollowEachOther)
{
    ShownGroups shown(30, 3, 2);
    AFreqGroupTbl& table = shown.window.GroupTbl();
    table.SetSelectOneCell(2, 7);
    EXPECT_EQ(shown.listSelection(), "7,1-7,1");
    shown.window.InfoTbl().SetSelectOneCell(29, 1);
    EXPECT_EQ(table.getSelectRect().anchorColumn, 7);  // scrolled, not selected
    shown.window.IDTbl().SetFocus();
    EXPECT_EQ(&shown.window.ActiveTable(), &shown.window.IDTbl());
    EXPECT_FALSE(shown.window.FocusNextTable(1));
    EXPECT_TRUE(shown.window.FocusNextTable(0) && shown.window.FocusNextTable(0));
    EXPECT_EQ(&shown.window.ActiveTable(), &shown.window.InfoTbl());
    EXPECT_FALSE(shown.window.FocusNextTable(0));
    EXPECT_TRUE(shown.window.IDTbl().ToggleMark(1));
    EXPECT_FALSE(shown.groups.GetFqIDMark().get(1));
    EXPECT_EQ(shown.window.UndoLabel(), "Unmark");
    EXPECT_TRUE(shown.window.Undo());
    EXPECT_TRUE(shown.groups.GetFqIDMark().get(1));
    table.SetFocus();
    shown.window.SetDirect(1);
    EXPECT_EQ(CWnd::GetFocus(), &table);
    EXPECT_EQ(table.getSelectRect().anchorColumn, 7);
    shown.window.SendMessage(WM_COMMAND, ID_FREQ_DELETE_GROUP);
    EXPECT_EQ(shown.groups.count(), 29);
    EXPECT_EQ(table.GetGroupNumber(6), -1);
    EXPECT_EQ(table.describeItem(6), "not marked, in no frequency group");
    shown.groups(1).set(0);
    EXPECT_EQ(table.describeItem(0), "not marked, Frequency group #1, #2");
    // what neighbours look like, and IFs that no group has
    const auto ground = [&](int column) { return table.GetCellBkColor(1, column, 0); };
    for (int c = 1; c < 30; ++c)
        EXPECT_NE(ground(c), ground(c + 1)) << c;
    EXPECT_EQ(ground(7), table.GetGroupBkColor(-1));
    // a host that loads other groups
    AFreqGroupArray loaded(shown.groups.FqTbl());
    (void)loaded.DeleteItems(1, 29);
    shown.groups = loaded;
    shown.window.ReConstruct();
    EXPECT_EQ(shown.window.InfoTbl().rows(), 1);
    EXPECT_FALSE(shown.window.canUndo() || shown.window.IsModified());
}

TEST(FreqGroupsWindow, GoesWithItsFrameWhileItTells)
{
    struct Killer : CWnd {
        std::unique_ptr<AFreqGroupsWnd> window;
        int OnCommand(unsigned, unsigned code, CWnd*) override
        {
            if (code == MTN_GROUPS)
                window.reset();
            return 1;
        }
    } frame;
    frame.CreateEx(0, "", "", WS_POPUP | WS_VISIBLE, {0, 0, 300, 200}, nullptr, 0);
    AFreqGroupArray groups(ShownGroups::frequencies(3, 1, 1));
    for (const unsigned command : {ID_FREQ_ALL_IN_ONE, ID_MARK_ALL, ID_FREQ_DELETE_ALL}) {
        frame.window = std::make_unique<AFreqGroupsWnd>();
        frame.window->SetParameters(&groups);
        frame.window->Create("", "", WS_CHILD | WS_VISIBLE, {0, 0, 300, 200}, &frame, 9);
        frame.window->SendMessage(WM_COMMAND, command);
        EXPECT_FALSE(frame.window);
    }
}
