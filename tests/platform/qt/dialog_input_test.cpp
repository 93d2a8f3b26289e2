#include "platform/CDialog.h"
#include "platform/qt/command_frame.h"
#include "platform/qt/press_keys.h"

#include <QDialog>
#include <QLineEdit>

namespace pavane
{

namespace
{

constexpr DlgItem items[] = {
    {ControlKind::edit, 11, "", 5, 5, 50, 12, WS_TABSTOP},
    {ControlKind::radioButton, 12, "a", 5, 20, 50, 10, WS_TABSTOP | WS_GROUP},
    {ControlKind::radioButton, 13, "b", 5, 32, 50, 10},
    {ControlKind::radioButton, 14, "c", 60, 20, 50, 10, WS_TABSTOP | WS_GROUP},
    {ControlKind::radioButton, 15, "d", 60, 32, 50, 10},
    {ControlKind::placeholder, 16, "", 5, 50, 50, 20, WS_TABSTOP, WS_EX_CLIENTEDGE},
    {ControlKind::comboBox, 17, "", 60, 5, 50, 80, WS_TABSTOP},
    {ControlKind::groupBox, 18, "&Group", 2, 2, 116, 70, WS_GROUP},
    {ControlKind::defaultButton, IDOK, "OK", 5, 75, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 60, 75, 50, 14, WS_TABSTOP},
};
constexpr DlgTemplate areaDialog{9100, "Area", 120, 95, items, 10};
constexpr DlgTemplate empty{9101, "Empty", 50, 50, nullptr, 0};

struct AreaDialog : CDialog {
    explicit AreaDialog(CWnd* parent) : CDialog(areaDialog, parent) {}
    int OnInitDialog() override
    {
        if (atInit)
            atInit();
        return 1;
    }
    int OnCommand(unsigned id, unsigned code, CWnd* control) override
    {
        if (code == BN_CLICKED)
            clicked.push_back(id);
        if (atCommand && code == BN_CLICKED)
            return atCommand(), 1;
        return CDialog::OnCommand(id, code, control);
    }
    std::function<void()> atInit;
    std::function<void()> atCommand;
    std::vector<unsigned> clicked;
};

unsigned focusedId()
{
    const CWnd* const focus = CWnd::GetFocus();
    return focus ? focus->GetDlgCtrlID() : 0;
}

}  // namespace

TEST(CDialog, EndsByKeysAndButtons)
{
    CommandFrame frame;
    const struct {
        const char* name;
        const char* keys;
        int result;
    } cases[] = {
        {"default button", "Return", IDOK},
        {"escape", "Esc", IDCANCEL},
        {"button with the focus", "Backtab Return", IDCANCEL},
        {"space", "Backtab Backtab Space", IDOK},
    };
    for (const auto& c : cases) {
        AreaDialog dialog(&frame);
        pressKeys(c.keys);
        EXPECT_EQ(dialog.DoModal(), c.result) << c.name;
        EXPECT_EQ(dialog.GetSafeHwnd(), HWND{0}) << c.name;
        EXPECT_TRUE(QTest::qWaitForWindowActive(outerOfWindow(frame))) << c.name;
    }
    AreaDialog closed(&frame);
    whenShown<QDialog>(&QApplication::activeModalWidget, [](QDialog& d) { d.close(); });
    EXPECT_EQ(closed.DoModal(), IDCANCEL);
    CDialog bare(empty, &frame);
    pressKeys("Enter");
    EXPECT_EQ(bare.DoModal(), IDOK);
    EXPECT_EQ(CDialog(9199u, &frame).DoModal(), -1);
}

TEST(CDialog, EndsWhereverItIsEnded)
{
    CommandFrame frame;
    AreaDialog early(&frame);
    early.atInit = [&] { early.EndDialog(77); };
    EXPECT_EQ(early.DoModal(), 77);
    early.atInit = [&] { early.DestroyWindow(); };
    EXPECT_EQ(early.DoModal(), -1);

    auto doomed = std::make_unique<AreaDialog>(&frame);
    doomed->atCommand = [&] { doomed.reset(); };
    pressKeys("Return");
    EXPECT_EQ(doomed->DoModal(), -1);
    EXPECT_EQ(doomed, nullptr);

    AreaDialog outside(&frame);
    AreaDialog inside(&outside);
    outside.atCommand = [&] { outside.EndDialog(100 + inside.DoModal()); };
    pressKeys("Return Esc");
    EXPECT_EQ(outside.DoModal(), 100 + IDCANCEL);

    AreaDialog modeless(&frame);
    ASSERT_TRUE(modeless.CreateModeless());
    frame.EnableWindow(0);
    EXPECT_TRUE(modeless.IsWindowEnabled());
    modeless.SendMessage(WM_CLOSE);
    EXPECT_EQ(modeless.GetSafeHwnd(), HWND{0});
}

TEST(CDialog, IsAnsweredByATestWithoutBeingShown)
{
    SetDialogAnswer([](CDialog& dialog) {
        EXPECT_FALSE(dialog.IsWindowVisible());
        dialog.SetDlgItemText(11, "3.5");
        dialog.SendMessage(WM_COMMAND, 12);
        return 5;
    });
    CommandFrame frame;
    AreaDialog dialog(&frame);
    EXPECT_EQ(dialog.DoModal(), 5);
    EXPECT_EQ(dialog.clicked, (std::vector<unsigned>{12}));
    SetDialogAnswer([](CDialog& d) { return static_cast<int>(d.SendMessage(WM_COMMAND, IDOK)); });
    AreaDialog ended(&frame);
    ended.atCommand = [&] { ended.EndDialog(9); };
    EXPECT_EQ(ended.DoModal(), 9);
    SetDialogAnswer(nullptr);
}

TEST(CDialog, GroupsRadioButtons)
{
    CommandFrame frame;
    AreaDialog dialog(&frame);
    ASSERT_TRUE(dialog.CreateModeless());
    const auto radio = [&](unsigned id) { return static_cast<CButton*>(dialog.GetDlgItem(id)); };
    for (unsigned id : {12u, 14u, 15u, 13u})
        radio(id)->SetCheck(1);
    EXPECT_EQ(radio(12)->GetCheck(), 0);
    EXPECT_EQ(radio(13)->GetCheck(), 1);
    EXPECT_EQ(radio(14)->GetCheck(), 0);
    EXPECT_EQ(radio(15)->GetCheck(), 1);
    radio(13)->SetCheck(0);
    EXPECT_EQ(radio(13)->GetCheck() + radio(12)->GetCheck(), 0);
}

TEST(CDialog, WindowTakesThePlaceOfAControl)
{
    CommandFrame frame;
    AreaDialog dialog(&frame);
    ASSERT_TRUE(dialog.CreateModeless());
    CRect before;
    dialog.GetDlgItem(16)->GetWindowRect(before);
    const auto isBelow = [&](unsigned lower, unsigned upper) {
        const std::vector<CWnd*> all = dialog.GetChildren();
        return std::find(all.begin(), all.end(), dialog.GetDlgItem(lower)) <
               std::find(all.begin(), all.end(), dialog.GetDlgItem(upper));
    };
    EXPECT_TRUE(isBelow(18, 11));  // a group box covers nothing
    CWnd map;
    EXPECT_FALSE(dialog.ReplaceControl(99, map, "map", " ", WS_TABSTOP));
    ASSERT_TRUE(dialog.ReplaceControl(16, map, "map", " ", WS_TABSTOP));
    EXPECT_EQ(dialog.GetDlgItem(16), &map);
    EXPECT_EQ(map.GetExStyle(), WS_EX_CLIENTEDGE);
    CRect after;
    map.GetWindowRect(after);
    EXPECT_EQ(after, before);
    EXPECT_TRUE(isBelow(15, 16) && isBelow(16, 17));
    dialog.ShowWindow(SW_SHOW);
    dialog.GetDlgItem(11)->SetFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return outerOfWindow(dialog)->isActiveWindow(); }));
    static_cast<CButton*>(dialog.GetDlgItem(12))->SetCheck(1);
    static_cast<CButton*>(dialog.GetDlgItem(15))->SetCheck(1);
    std::vector<unsigned> way;
    for (int i = 0; i < 7; ++i) {
        dialog.NextDlgCtrl();
        way.push_back(focusedId());
    }
    EXPECT_EQ(way, (std::vector<unsigned>{12, 15, 16, 17, IDOK, IDCANCEL, 11}));
    dialog.PrevDlgCtrl();
    EXPECT_EQ(focusedId(), unsigned{IDCANCEL});
}

TEST(CDialog, TakesItsSizeFromDialogUnits)
{
    CommandFrame frame;
    AreaDialog dialog(&frame);
    ASSERT_TRUE(dialog.CreateModeless());
    CRect rect;
    dialog.GetClientRect(rect);
    EXPECT_EQ(rect, CRect(0, 0, 210, 154));  // 120 x 95 units of 7/4 and 13/8
    EXPECT_EQ(dialog.MapDialogRect({4, 8, 8, 16}), CRect(7, 13, 14, 26));
    dialog.SetClientSize(200, 100);
    dialog.GetClientRect(rect);
    EXPECT_EQ(rect, CRect(0, 0, 200, 100));
}

}  // namespace pavane
