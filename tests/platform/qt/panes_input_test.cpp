#include "platform/qt/command_frame.h"
#include "platform/splitter.h"
#include "platform/tab_control.h"

namespace pavane
{

namespace
{

struct Pane : CWnd {
    explicit Pane(CWnd* parent)
    {
        Create("Pane", "", WS_CHILD | WS_VISIBLE | WS_TABSTOP, {0, 0, 9, 9}, parent, 0);
    }
    CRect place() const
    {
        CRect rect;
        GetWindowRect(rect);
        GetParent()->ScreenToClient(rect);
        return rect;
    }
};

}  // namespace

TEST(CTabCtrl, ShowsThePageOfTheChosenTab)
{
    CommandFrame frame;
    CTabCtrl tabs;
    ASSERT_TRUE(tabs.Create(shown, {10, 10, 310, 210}, &frame, 5));
    Pane first(&tabs), second(&tabs), third(&tabs), stranger(&frame);
    EXPECT_EQ(tabs.InsertItem(0, "&Second", &second), 0);
    EXPECT_EQ(tabs.InsertItem(0, "First", &first), 0);
    EXPECT_EQ(tabs.InsertItem(9, "Third", &third), 2);
    EXPECT_EQ(tabs.InsertItem(1, "Other", &stranger), -1);
    const auto visible = [&] {
        return first.IsWindowVisible() + 2 * second.IsWindowVisible() + 4 * third.IsWindowVisible();
    };
    EXPECT_EQ(tabs.GetCurSel(), 1);
    EXPECT_EQ(visible(), 2);
    EXPECT_EQ(tabs.SetCurSel(0), 1);
    EXPECT_EQ(tabs.SetCurSel(7), 0);
    EXPECT_EQ(visible(), 1);
    EXPECT_EQ(first.place(), tabs.GetPageRect());
    EXPECT_EQ(tabs.GetPageRect().bottom, 200);
    EXPECT_EQ(frame.taken(), Commands());
    const CRect tab = tabs.GetItemRect(2);
    QWidget* const bar = widgetOfWindow(tabs)->childAt(tab.left + 4, tab.top + 4);
    QTest::mouseClick(bar, Qt::LeftButton, {}, QPoint(tab.left + 4, tab.top + 4));
    EXPECT_EQ(frame.taken(), (Commands{{5, TCN_SELCHANGE}}));
    EXPECT_EQ(visible(), 4);
    EXPECT_TRUE(tabs.SelectNext(1));
    EXPECT_EQ(tabs.GetCurSel(), 0);
    EXPECT_TRUE(tabs.SelectNext(-5));
    EXPECT_EQ(tabs.GetCurSel(), 1);
    EXPECT_EQ(frame.taken(), (Commands{{5, TCN_SELCHANGE}, {5, TCN_SELCHANGE}}));
    tabs.SetFocus();
    EXPECT_EQ(CWnd::GetFocus(), &tabs);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_EQ(visible(), 4);
    third.DestroyWindow();
    EXPECT_EQ(tabs.GetItemPage(2), nullptr);
    tabs.MoveWindow({10, 10, 210, 110});
    EXPECT_TRUE(tabs.DeleteItem(2));
    EXPECT_EQ(tabs.GetItemText(tabs.GetCurSel()) + tabs.GetItemText(9), "&Second");
    EXPECT_EQ(second.place(), tabs.GetPageRect());
    EXPECT_EQ(visible(), 2);
    frame.on = [&](unsigned, unsigned) { tabs.DestroyWindow(); };
    EXPECT_TRUE(tabs.SelectNext(1));
    EXPECT_EQ(tabs.GetItemCount() + tabs.InsertItem(0, "x"), -1);
}

TEST(CSplitterWnd, MovesItsBarByPointerAndKeys)
{
    for (const auto split : {CSplitterWnd::Split::columns, CSplitterWnd::Split::rows}) {
        CommandFrame frame;
        CSplitterWnd splitter;
        const bool across = split == CSplitterWnd::Split::columns;
        ASSERT_TRUE(splitter.Create(split, shown, {0, 0, 206, 206}, &frame, 6));
        Pane first(&splitter), second(&splitter);
        splitter.SetPanes(&first, &second);
        splitter.SetShare(0.25);
        EXPECT_EQ(splitter.GetSplit(), 50);
        EXPECT_EQ(first.place(), across ? CRect(0, 0, 50, 206) : CRect(0, 0, 206, 50));
        EXPECT_EQ(second.place(), across ? CRect(56, 0, 206, 206) : CRect(0, 56, 206, 206));
        splitter.SetSplit(1000);
        EXPECT_EQ(splitter.GetSplit(), 168);  // the other one keeps 32
        splitter.SetSplit(100);
        QWidget* const widget = widgetOfWindow(splitter);
        const auto at = [&](int pixels) {
            return across ? QPoint(pixels, 20) : QPoint(20, pixels);
        };
        for (const bool cancels : {false, true}) {
            QTimer::singleShot(0, qApp, [&, cancels] {
                QTest::mouseMove(widget, at(123));
                if (cancels)
                    QTest::keyClick(frame.GetSafeHwnd() ? outerOfWindow(frame) : widget,
                                    Qt::Key_Escape);
                QTest::mouseRelease(widget, Qt::LeftButton, {}, at(123));
            });
            QTest::mousePress(widget, Qt::LeftButton, {}, at(splitter.GetSplit() + 3));
            EXPECT_EQ(splitter.GetSplit(), 120);  // Escape brought back what the release had left
            EXPECT_EQ(frame.taken(), cancels ? Commands() : (Commands{{6, SPN_MOVED}}));
        }
        splitter.SetFocus();
        QTest::keyClick(widget, across ? Qt::Key_Right : Qt::Key_Down);
        EXPECT_EQ(splitter.GetSplit(), 128);
        QTest::keyClick(widget, Qt::Key_Home);
        EXPECT_EQ(splitter.GetSplit(), 32);
        QTest::keyClick(widget, across ? Qt::Key_Left : Qt::Key_Up);
        EXPECT_EQ(frame.taken(), (Commands{{6, SPN_MOVED}, {6, SPN_MOVED}}));
        splitter.ShowOnly(1);
        EXPECT_EQ(second.place(), CRect(0, 0, 206, 206));
        EXPECT_FALSE(first.IsWindowVisible());
        splitter.ShowOnly(-1);
        EXPECT_TRUE(first.IsWindowVisible());
        splitter.MoveWindow({0, 0, 20, 20});
        EXPECT_EQ(splitter.GetSplit(), 7);
    }
}

}  // namespace pavane
