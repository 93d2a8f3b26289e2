#include "platform/clipboard.h"
#include "platform/qt/command_frame.h"
#include "platform/slider.h"

#include <QAbstractButton>

namespace pavane
{

namespace
{

/// An edit that keeps keys from its native side.
struct PickyEdit : CEdit {
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override
    {
        keys.push_back(key);
        if (key != 'A')
            CEdit::OnKeyDown(key, repeat, flags);
    }
    std::vector<unsigned> keys;
};

}  // namespace

TEST(Controls, TellOfTheUsersChangesOnly)
{
    CommandFrame frame;
    CComboBox combo;
    CListBox list;
    CSpinButtonCtrl spin;
    CButton check;
    ASSERT_TRUE(combo.Create(shown | CBS_DROPDOWNLIST, {10, 10, 110, 210}, &frame, 1));
    ASSERT_TRUE(list.Create(shown, {10, 50, 110, 150}, &frame, 2));
    ASSERT_TRUE(spin.Create(shown, {120, 10, 180, 32}, &frame, 3));
    ASSERT_TRUE(check.Create("&On", CButton::Kind::check, shown, {120, 50, 180, 70}, &frame, 4));
    for (const char* text : {"Area 1", "Area 2", "Area 3"}) {
        combo.AddString(text);
        list.AddString(text);
    }
    spin.SetRange(0, 5);
    EXPECT_EQ(combo.GetCurSel(), -1);
    combo.SetCurSel(1);
    list.SetCurSel(1);
    spin.SetPos(9);
    check.SetCheck(1);
    EXPECT_EQ(frame.taken(), Commands());
    EXPECT_EQ(spin.GetPos(), 5);
    EXPECT_EQ(combo.GetWindowText(), "Area 2");

    QTest::keyClick(widgetOfWindow(combo), Qt::Key_Down);
    EXPECT_EQ(frame.taken(), (Commands{{1, CBN_SELCHANGE}}));
    EXPECT_EQ(combo.GetCurSel(), 2);
    QTest::keyClick(widgetOfWindow(list), Qt::Key_Up);
    EXPECT_EQ(frame.taken(), (Commands{{2, LBN_SELCHANGE}}));
    QTest::keyClick(widgetOfWindow(spin), Qt::Key_Down);
    EXPECT_EQ(frame.taken(), (Commands{{3, ID_SPIN_CHANGED}}));
    QTest::mouseClick(widgetOfWindow(check), Qt::LeftButton, Qt::NoModifier, QPoint(8, 10));
    EXPECT_EQ(frame.taken(), (Commands{{4, BN_CLICKED}}));
    EXPECT_FALSE(check.GetCheck());
}

TEST(Controls, AreReachedByTheirLetterFromAWindowThatTakesAllKeys)
{
    struct Window : CWnd {
        std::vector<unsigned> keys;
        unsigned OnGetDlgCode() override { return DLGC_WANTALLKEYS; }
        void OnKeyDown(unsigned key, unsigned, unsigned) override { keys.push_back(key); }
    };
    CommandFrame frame;
    Window window;
    CButton button;
    ASSERT_TRUE(window.Create("", "", shown, {10, 10, 110, 110}, &frame, 1));
    ASSERT_TRUE(button.Create("&Go", CButton::Kind::push, shown, {120, 10, 180, 40}, &frame, 2));
    (void)window.SetFocus();
    QTest::keyClick(widgetOfWindow(window), Qt::Key_G, Qt::AltModifier);
    EXPECT_EQ(frame.taken(), (Commands{{2, BN_CLICKED}}));  // before any key that follows
    QTest::keyClick(widgetOfWindow(window), Qt::Key_H, Qt::AltModifier);
    QTest::keyClick(widgetOfWindow(window), Qt::Key_G);
    EXPECT_EQ(window.keys, (std::vector<unsigned>{VK_MENU, VK_MENU, 'H', 'G'}));
}

TEST(Controls, AreGoneRoundByTabInAWindowThatTakesAllKeys)
{
    struct Frame : CommandFrame {
        unsigned OnGetDlgCode() override { return DLGC_WANTALLKEYS; }
    } frame;
    CButton first, second;
    CSliderCtrl third;
    ASSERT_TRUE(first.Create("1", CButton::Kind::push, shown, {10, 10, 50, 40}, &frame, 1));
    ASSERT_TRUE(second.Create("2", CButton::Kind::check, shown, {60, 10, 99, 40}, &frame, 2));
    ASSERT_TRUE(third.Create(shown, {10, 50, 99, 80}, &frame, 3));
    (void)first.SetFocus();
    for (const CWnd* const next : {static_cast<CWnd*>(&second), static_cast<CWnd*>(&third)}) {
        QTest::keyClick(widgetOfWindow(*CWnd::GetFocus()), Qt::Key_Tab);
        EXPECT_EQ(CWnd::GetFocus(), next);
    }
    QTest::keyClick(widgetOfWindow(third), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(CWnd::GetFocus(), &second);
}

TEST(Controls, KeepNoChoiceThatWasDeleted)
{
    CommandFrame frame;
    CComboBox combo;
    CListBox list;
    ASSERT_TRUE(combo.Create(shown | CBS_DROPDOWNLIST, {10, 10, 110, 210}, &frame, 1));
    ASSERT_TRUE(list.Create(shown, {10, 50, 110, 150}, &frame, 2));
    EXPECT_EQ(combo.DeleteString(0), -1);
    for (const char* text : {"a", "b", "c"}) {
        combo.AddString(text);
        list.AddString(text);
    }
    combo.SetCurSel(1);
    list.SetCurSel(1);
    EXPECT_EQ(combo.DeleteString(1), 2);
    EXPECT_EQ(list.DeleteString(1), 2);
    EXPECT_EQ(combo.GetCurSel(), -1);
    EXPECT_EQ(list.GetCurSel(), -1);
    EXPECT_EQ(combo.SetCurSel(2), -1);
    EXPECT_EQ(combo.GetLBText(1) + list.GetText(1) + combo.GetLBText(2), "cc");
    EXPECT_EQ(frame.taken(), Commands());
    CRect rect;
    combo.GetWindowRect(rect);
    EXPECT_LE(rect.Height(), 24);  // the list below is not part of it
}

TEST(Controls, EditOffersKeysToItsObjectFirst)
{
    CommandFrame frame;
    PickyEdit edit;
    ASSERT_TRUE(edit.Create(shown, {10, 10, 110, 30}, &frame, 1));
    edit.SetFocus();
    QTest::keyClicks(widgetOfWindow(edit), "bad");
    QTest::keyClick(widgetOfWindow(edit), Qt::Key_Tab);
    EXPECT_EQ(edit.GetWindowText(), "bd");
    EXPECT_EQ(edit.keys, (std::vector<unsigned>{'B', 'A', 'D', unsigned{VK_TAB}}));
    EXPECT_EQ(frame.commands.back(), (CommandFrame::Command{1, EN_CHANGE}));
    edit.SetWindowText(CString(200, 'x'));
    EXPECT_EQ(edit.GetWindowText().size(), 128u);
    edit.SetSel(2, -1);
    QTest::keyClick(widgetOfWindow(edit), Qt::Key_Delete);
    EXPECT_EQ(edit.GetWindowText(), "xx");
    edit.SetReadOnly(1);
    QTest::keyClicks(widgetOfWindow(edit), "b");
    EXPECT_EQ(edit.GetWindowText(), "xx");
}

TEST(Controls, EditForAPlaceInAnotherWindow)
{
    CommandFrame frame;
    CEdit edit;
    ASSERT_TRUE(edit.Create(WS_CHILD | WS_VISIBLE, {10, 10, 60, 24}, &frame, 1));
    EXPECT_FALSE(edit.GetModify());
    edit.SetWindowText("12345");
    EXPECT_FALSE(edit.GetModify());
    edit.SetFocus();
    int first = 0, last = 0;
    edit.SetSel(1, 3);
    edit.GetSel(first, last);
    EXPECT_TRUE(first == 1 && last == 3);
    QTest::keyClicks(widgetOfWindow(edit), "x");
    EXPECT_TRUE(edit.GetModify());
    edit.GetSel(first, last);
    EXPECT_TRUE(first == 2 && last == 2);
    edit.SetModify(0);
    EXPECT_FALSE(edit.GetModify());
    edit.LimitText(0);
    edit.SetWindowText(CString(200, 'x'));
    EXPECT_EQ(edit.GetWindowText().size(), 200u);
    edit.SetWindowText("");
    edit.EnableWindow(0);  // no caret
    // all of the rectangle is the field's, and no frame is drawn in it
    const QImage grabbed = widgetOfWindow(edit)->grab().toImage();
    EXPECT_EQ(grabbed.size(), QSize(50, 14) * grabbed.devicePixelRatio());
    const QImage plain = grabbed.copy(grabbed.rect().adjusted(20, 5, -20, -5));
    for (const QPoint& p : {QPoint(0, 0), QPoint(grabbed.width() - 1, grabbed.height() - 1)})
        EXPECT_EQ(grabbed.pixel(p), plain.pixel(0, 0));
}

TEST(Controls, ComboStandsAsHighAsItsItemsAndListsInTheRest)
{
    CommandFrame frame;
    CComboBox combo;
    const CRect place(10, 10, 110, 231);
    ASSERT_TRUE(combo.Create(shown | CBS_DROPDOWNLIST, place, &frame, 1));
    const auto height = [&] { return widgetOfWindow(combo)->height(); };
    EXPECT_TRUE(combo.SetItemHeight(-1, 15));
    EXPECT_EQ(height(), 21);
    combo.MoveWindow(place);
    EXPECT_EQ(height(), 21);
    EXPECT_TRUE(combo.SetItemHeight(0, 25));
    EXPECT_FALSE(combo.SetItemHeight(-2, 25));
    for (const char* text : {"Beta", "alpha", "Bravo", "b", "c", "d", "e", "f", "g", "h", "i", "j"})
        combo.AddString(text);
    combo.SetFocus();
    QTest::keyClicks(widgetOfWindow(combo), "br");  // typed letters choose
    EXPECT_EQ(combo.GetCurSel(), 2);
    EXPECT_EQ(combo.SelectString(-1, "b"), 0);
    EXPECT_EQ(combo.SelectString(0, "B"), 2);
    EXPECT_EQ(combo.SelectString(3, "b"), 0);
    EXPECT_EQ(combo.SelectString(0, "x"), -1);
    EXPECT_EQ(combo.GetCurSel(), 0);
    (void)frame.taken();
    combo.ShowDropDown(1);
    EXPECT_TRUE(combo.GetDroppedState());
    QTest::qWait(0);
    const QWidget* const list = QApplication::activePopupWidget();
    ASSERT_NE(list, nullptr);
    EXPECT_GE(list->mapToGlobal(QPoint()).y(),
              widgetOfWindow(combo)->mapToGlobal(QPoint(0, 20)).y());
    EXPECT_LE(list->height(), 210);
    EXPECT_GE(list->height(), 8 * 25);
    combo.ShowDropDown(0);
    QTest::qWait(0);
    EXPECT_EQ(frame.taken(),
              (Commands{{1, CBN_DROPDOWN}, {1, CBN_CLOSEUP}, {1, CBN_SELENDCANCEL}}));
    EXPECT_EQ(CWnd::GetFocus(), &combo);
}

TEST(Clipboard, TakesSeveralFormsAtOnceAndGivesEachBack)
{
    const std::vector<ClipboardData> forms = {{"text/plain", CString("a\tb\r\n\0c", 8)},
                                              {"text/csv", "\"a\",b\r\n"},
                                              {"text/html", "<table><td>&lt;b&gt;</table>"},
                                              {"application/x-pavane-cells", CString("\0\xFF", 2)}};
    ASSERT_TRUE(SetClipboardData(forms));
    CString bytes;
    for (const ClipboardData& form : forms) {
        EXPECT_TRUE(IsClipboardFormatAvailable(form.type)) << form.type;
        EXPECT_TRUE(GetClipboardData(form.type, bytes)) << form.type;
        EXPECT_EQ(bytes, form.bytes);
    }
    EXPECT_TRUE(GetClipboardText(bytes) && bytes == forms[0].bytes);
    EXPECT_FALSE(GetClipboardData("image/png", bytes) || !bytes.empty());
    SetClipboardRefusal(1);
    EXPECT_FALSE(SetClipboardData(forms) || GetClipboardData("text/csv", bytes) ||
                 IsClipboardFormatAvailable("text/csv"));
    SetClipboardRefusal(0);
    EXPECT_FALSE(SetClipboardData({}));
    ASSERT_TRUE(SetClipboardText("x"));
    EXPECT_FALSE(IsClipboardFormatAvailable("text/csv"));
}

TEST(Controls, EditMayRefuseToLoseTheFocus)
{
    CommandFrame frame;
    CEdit first;
    CEdit second;
    ASSERT_TRUE(first.Create(shown, {10, 10, 110, 30}, &frame, 1));
    ASSERT_TRUE(second.Create(shown, {10, 40, 110, 60}, &frame, 2));
    first.SetFocus();
    int refused = 0;
    frame.on = [&](unsigned id, unsigned code) {
        if (id == 1 && code == EN_KILLFOCUS && refused++ == 0)
            first.SetFocus();
    };
    QTest::mouseClick(widgetOfWindow(second), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    EXPECT_EQ(CWnd::GetFocus(), &first);
    EXPECT_EQ(refused, 1);
    QTest::mouseClick(widgetOfWindow(second), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    EXPECT_EQ(CWnd::GetFocus(), &second);
    EXPECT_EQ(refused, 2);
}

TEST(Controls, MayEndInTheirOwnNotice)
{
    CommandFrame frame;
    auto edit = std::make_unique<CEdit>();
    auto button = std::make_unique<CButton>();
    ASSERT_TRUE(edit->Create(shown, {10, 10, 110, 30}, &frame, 1));
    ASSERT_TRUE(button->Create("x", CButton::Kind::push, shown, {10, 40, 60, 60}, &frame, 2));
    frame.on = [&](unsigned id, unsigned code) {
        if (id == 1 && code == EN_KILLFOCUS)
            edit.reset();
        if (id == 2 && code == BN_CLICKED)
            button.reset();
    };
    edit->SetFocus();
    frame.SetFocus();
    EXPECT_EQ(edit, nullptr);
    QTest::mouseClick(widgetOfWindow(*button), Qt::LeftButton);
    EXPECT_EQ(button, nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST(Controls, WheelLeavesAListWithoutTheFocusAlone)
{
    CommandFrame frame;
    CComboBox combo;
    ASSERT_TRUE(combo.Create(shown | CBS_DROPDOWNLIST, {10, 10, 110, 210}, &frame, 1));
    combo.AddString("a");
    combo.AddString("b");
    combo.SetCurSel(0);
    const auto turn = [&] {
        const QPointF place(20, 10);
        QWidget* const widget = widgetOfWindow(combo);
        QWheelEvent wheel(place, widget->mapToGlobal(place), QPoint(), QPoint(0, -120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(widget, &wheel);
        return combo.GetCurSel();
    };
    frame.SetFocus();
    EXPECT_EQ(turn(), 0);
    combo.SetFocus();
    EXPECT_EQ(turn(), 1);
}

TEST(CToolBar, SendsCommandsAndKeepsOneOfAGroup)
{
    CommandFrame frame;
    CommandFrame owner;
    CToolBar bar;
    ASSERT_TRUE(bar.Create(shown, {0, 0, 300, 30}, &frame, 50));
    const char* const rows[] = {"####", "#++#", "####"};
    for (unsigned id : {101u, 102u, 0u, 103u})
        bar.AddButton({id, "tip", rows, 3, 0, id == 101 || id == 102 ? 1 : 0, id == 103});
    CComboBox combo;
    ASSERT_TRUE(combo.Create(shown | CBS_DROPDOWNLIST, {0, 0, 80, 200}, &bar, 104));
    ASSERT_TRUE(bar.AddControl(&combo, 80));
    combo.AddString("a");
    const auto click = [&](unsigned id, int fromRight) {
        const CRect r = bar.GetButtonRect(id);
        QWidget* const widget = widgetOfWindow(bar)->childAt(r.left + 2, r.top + 2);
        QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier,
                          QPoint(fromRight ? widget->width() - fromRight : 6, 10));
    };
    EXPECT_EQ(bar.SendMessage(TB_CHECKBUTTON, 101, 1), 1);
    click(102, 0);
    EXPECT_EQ(frame.taken(), (Commands{{102, 0}}));
    EXPECT_FALSE(bar.IsButtonChecked(101));
    EXPECT_TRUE(bar.IsButtonChecked(102));
    bar.CheckButton(102, 0);  // none of a group, too
    EXPECT_FALSE(bar.IsButtonChecked(102));
    EXPECT_EQ(bar.SendMessage(TB_ENABLEBUTTON, 102, 0), 1);
    click(102, 0);
    EXPECT_EQ(frame.taken(), Commands());
    bar.SetOwner(&owner);
    click(103, 4);
    click(103, 0);
    QTest::keyClick(widgetOfWindow(combo), Qt::Key_Down);
    EXPECT_EQ(owner.taken(), (Commands{{103, TBN_DROPDOWN}, {103, 0}, {104, CBN_SELCHANGE}}));
    EXPECT_EQ(bar.GetBarHeight(300) * 2 - 2, bar.GetBarHeight(120));  // a second row
}

TEST(CToolBar, IsOneStopOfTheTabKey)
{
    CommandFrame frame;
    CToolBar bar;
    ASSERT_TRUE(bar.Create(shown, {0, 0, 300, 30}, &frame, 50));
    for (unsigned id : {101u, 102u, 103u})
        bar.AddButton({id, "tip", nullptr, 0, 0, 0, 0});
    bar.EnableButton(101, 0);
    bar.SetFocus();
    const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    EXPECT_EQ(CWnd::GetFocus(), &bar);
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    press(Qt::Key_Home);
    press(Qt::Key_Space);
    EXPECT_EQ(frame.taken(), (Commands{{103, 0}, {102, 0}}));
    int stops = 0;
    for (const QWidget* button : widgetOfWindow(bar)->findChildren<QAbstractButton*>())
        stops += button->focusPolicy() == Qt::TabFocus ? 1 : 0;
    EXPECT_EQ(stops, 1);
}

}  // namespace pavane
