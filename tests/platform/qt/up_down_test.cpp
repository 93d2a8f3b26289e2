#include "platform/CDialog.h"
#include "platform/core/whole_number.h"
#include "platform/progress.h"
#include "platform/qt/command_frame.h"
#include "platform/up_down.h"

#include <climits>

namespace pavane
{

namespace
{

constexpr DlgItem items[] = {
    {ControlKind::edit, 1019, "", 5, 5, 50, 12, WS_TABSTOP | ES_NOLIMIT},
    {ControlKind::upDown, 1020, "", 56, 5, 10, 12, WS_TABSTOP},
    {ControlKind::progress, 1021, "", 5, 20, 60, 8},
    {ControlKind::upDown, 1022, "", 70, 5, 10, 12},
};
constexpr DlgTemplate countDialog{9200, "Count", 90, 40, items, 4};

struct CountDialog : CDialog {
    explicit CountDialog(CWnd* parent) : CDialog(countDialog, parent)
    {
        EXPECT_TRUE(CreateModeless());
        ShowWindow(SW_SHOW);
        EXPECT_TRUE(QTest::qWaitForWindowActive(outerOfWindow(*this)));
    }
    int OnCommand(unsigned id, unsigned code, CWnd*) override
    {
        if (code == EN_CHANGE)
            commands.push_back({id, code});
        return endsNow ? DestroyWindow() : 1;
    }
    CUpDownCtrl& arrows() { return *static_cast<CUpDownCtrl*>(GetDlgItem(1020)); }
    Commands commands;
    bool endsNow = false;
};

}  // namespace

TEST(WholeNumbers, AreReadWhole)
{
    const struct {
        const char* text;
        int value;  // -7: none
    } rows[] = {{"12", 12},
                {" +5\t", 5},
                {"-3", -3},
                {"007", 7},
                {"4294967296", INT_MAX},
                {"-99999999999999999999", INT_MIN},
                {"", -7},
                {"-", -7},
                {"1.5", -7},
                {"1 2", -7},
                {"0x1", -7},
                {"\xd9\xa3", -7}};
    for (const auto& row : rows) {
        int value = -7;
        EXPECT_EQ(readWholeNumber(row.text, value), row.value != -7) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST(UpDown, StepsTheNumberInItsEdit)
{
    CommandFrame frame;
    CountDialog dialog(&frame);
    CUpDownCtrl& arrows = dialog.arrows();
    EXPECT_EQ(arrows.GetBuddy(), dialog.GetDlgItem(1019));
    EXPECT_EQ(static_cast<CUpDownCtrl*>(dialog.GetDlgItem(1022))->GetBuddy(), nullptr);
    arrows.SetRange(-2, 7);
    QWidget* const edit = widgetOfWindow(*dialog.GetDlgItem(1019));
    const struct {
        const char* text;
        int key;       // 0: none
        int position;  // before the key
        bool isInRange;
        const char* after;
    } rows[] = {
        {"3", Qt::Key_Up, 3, true, "4"},     {"3", Qt::Key_Down, 3, true, "2"},
        {"7", Qt::Key_Up, 7, true, "7"},     {"-2", Qt::Key_Down, -2, true, "-2"},
        {"99", 0, 7, false, "99"},           {"99", Qt::Key_Up, 7, false, "7"},
        {"99", Qt::Key_Down, 7, false, "6"}, {"-99999999999", Qt::Key_Up, -2, false, "-1"},
    };
    for (const auto& row : rows) {
        dialog.SetDlgItemText(1019, row.text);
        dialog.commands.clear();
        int isInRange = -1;
        EXPECT_EQ(arrows.GetPos(&isInRange), row.position) << row.text;
        EXPECT_EQ(isInRange, row.isInRange) << row.text;
        if (row.key)
            QTest::keyClick(edit, static_cast<Qt::Key>(row.key));
        EXPECT_EQ(dialog.GetDlgItemText(1019), row.after) << row.text;
        EXPECT_EQ(dialog.commands, row.after == CString(row.text)
                                       ? Commands()
                                       : (Commands{{1019, EN_CHANGE}, {1020, ID_SPIN_CHANGED}}));
    }
    EXPECT_EQ(arrows.SetPos(500), -1);
    dialog.SetDlgItemText(1019, "x");
    EXPECT_EQ(arrows.GetPos(), 7);  // the last one
    QTest::keyClick(edit, Qt::Key_Down);
    EXPECT_EQ(dialog.GetDlgItemText(1019), "6");
    QWidget* const buttons = widgetOfWindow(arrows);
    QTest::mousePress(buttons, Qt::LeftButton, {}, QPoint(4, buttons->height() - 3));
    EXPECT_TRUE(QTest::qWaitFor([&] { return arrows.GetPos() == -2; }));  // held
    QTest::mouseRelease(buttons, Qt::LeftButton, {}, QPoint(4, 2));
    dialog.GetDlgItem(1019)->EnableWindow(0);
    QTest::mouseClick(buttons, Qt::LeftButton, {}, QPoint(4, 2));
    EXPECT_EQ(arrows.GetPos(), -2);
    dialog.GetDlgItem(1019)->DestroyWindow();
    arrows.SetRange(INT_MIN, INT_MAX);
    EXPECT_EQ(arrows.SetPos(INT_MAX), -2);
    QTest::mouseClick(buttons, Qt::LeftButton, {}, QPoint(4, 2));
    EXPECT_EQ(arrows.GetPos(), INT_MAX);
}

TEST(Dialogs, HaveLongEditsAndProgress)
{
    CommandFrame frame;
    CountDialog dialog(&frame);
    const CString caption(10000, 'c');
    dialog.SetDlgItemText(1019, caption);
    EXPECT_EQ(dialog.GetDlgItemText(1019), caption);
    auto& bar = *static_cast<CProgressCtrl*>(dialog.GetDlgItem(1021));
    const int rows[][4] = {{0, 10, 4, 4}, {0, 10, 99, 10}, {5, 8, 1, 5}, {3, 3, 9, 0}};
    for (const auto& [min, max, set, shows] : rows) {
        bar.SetRange(min, max);
        bar.SetPos(set);
        EXPECT_EQ(bar.GetPos(), shows) << min << " " << max << " " << set;
    }
    dialog.endsNow = true;
    dialog.arrows().SetPos(5);
    EXPECT_EQ(dialog.GetSafeHwnd(), HWND{0});
}

}  // namespace pavane
