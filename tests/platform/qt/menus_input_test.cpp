#include "platform/clipboard.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "platform/qt/command_frame.h"
#include "platform/window_dc.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

namespace pavane
{

namespace
{

CMenu editMenu()
{
    CMenu menu;
    CMenu& edit = menu.AppendPopup("&Edit");
    edit.AppendMenu("&Undo\tCtrl+Z", 1);
    edit.AppendMenu("&Rectangle\t2", 2);
    edit.AppendPopup("&More").AppendMenu("&Clear\tDel", 3);
    return menu;
}

/// Takes every key, as drawing windows do.
struct GreedyWindow : CWnd {
    unsigned OnGetDlgCode() override { return DLGC_WANTALLKEYS; }
    void OnKeyDown(unsigned key, unsigned, unsigned) override { keys.push_back(key); }
    std::vector<unsigned> keys;
};

/// A frame with the menu and, in it with the focus, a window that takes every key.
struct MenuFrame : CommandFrame {
    GreedyWindow map;
    MenuFrame()
    {
        EXPECT_TRUE(map.Create("map", "", WS_CHILD | WS_VISIBLE, {0, 0, 50, 50}, this, 7));
        EXPECT_TRUE(SetMenu(editMenu()));
        QCoreApplication::processEvents();
        map.SetFocus();
    }
};

}  // namespace

TEST(Menu, KeysActUnlessTheWindowDisablesTheItem)
{
    MenuFrame frame;
    GreedyWindow& map = frame.map;
    EXPECT_FALSE(map.SetMenu(editMenu()));  // only a top-level window has one
    QWidget* const widget = widgetOfWindow(map);
    QTest::keyClick(widget, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(widget, Qt::Key_2);
    QTest::keyClick(widget, Qt::Key_Delete);
    EXPECT_EQ(frame.taken(), (Commands{{1, 0}, {2, 0}, {3, 0}}));
    EXPECT_EQ(frame.popups, 4);  // the inner popup's item asks for both
    frame.disabled = 3;
    QTest::keyClick(widget, Qt::Key_Delete);
    EXPECT_EQ(frame.taken(), Commands());
    map.keys.clear();
    QTest::keyClick(widget, Qt::Key_Left);
    frame.disabled = 0;
    map.SetCapture();  // drags keep their keys
    QTest::keyClick(widget, Qt::Key_Delete);
    EXPECT_EQ(frame.taken(), Commands());
    EXPECT_EQ(map.keys, (std::vector<unsigned>{unsigned{VK_LEFT}, unsigned{VK_DELETE}}));
    CWnd::ReleaseCapture();
}

TEST(Menu, KeysStayWithTheEditThatHasTheFocus)
{
    CommandFrame frame;
    CEdit edit;
    ASSERT_TRUE(edit.Create(shown, {10, 10, 110, 30}, &frame, 7));
    ASSERT_TRUE(frame.SetMenu(editMenu()));
    QCoreApplication::processEvents();
    edit.SetFocus();
    frame.commands.clear();
    QTest::keyClicks(widgetOfWindow(edit), "12");
    QTest::keyClick(widgetOfWindow(edit), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(edit.GetWindowText(), "");
    for (const auto& command : frame.taken())
        EXPECT_EQ(command, (CommandFrame::Command{7, EN_CHANGE}));
}

TEST(Menu, OpenPopupShowsWhatTheWindowAllows)
{
    CommandFrame frame;
    ASSERT_TRUE(frame.SetMenu(editMenu()));
    auto* const bar = qobject_cast<QMenuBar*>(menuBarWidget(frame.GetSafeHwnd()));
    frame.disabled = 1;
    QMenu* const popup = bar->actions()[0]->menu();
    popup->popup(QPoint(30, 60));
    EXPECT_EQ(frame.popups, 1);
    EXPECT_FALSE(popup->actions()[0]->isEnabled());
    QTest::keyClick(popup, Qt::Key_R);
    EXPECT_EQ(frame.taken(), (Commands{{2, 0}}));
    EXPECT_FALSE(popup->isVisible());
}

TEST(Menu, GivesTheKeyboardBackToTheWindow)
{
    MenuFrame frame;
    GreedyWindow& map = frame.map;
    QWidget* const bar = menuBarWidget(frame.GetSafeHwnd());
    const auto enterMenu = [&] {
        QTest::keyClick(widgetOfWindow(map), Qt::Key_E, Qt::AltModifier);
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
        EXPECT_TRUE(bar->hasFocus());
    };
    for (const Qt::Key key : {Qt::Key_5, Qt::Key_F7}) {
        enterMenu();
        QTest::keyClick(bar, key);
        EXPECT_FALSE(bar->hasFocus());
    }
    std::erase(map.keys, unsigned{VK_MENU});  // Alt itself
    EXPECT_EQ(map.keys, (std::vector<unsigned>{'5', VK_F1 + 6}));
    enterMenu();
    QTest::keyClick(bar, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(frame.taken(), (Commands{{1, 0}}));
    EXPECT_FALSE(bar->hasFocus());
}

TEST(Menu, TrackPopupMenuSendsWhatWasChosen)
{
    CommandFrame frame;
    CMenu menu = editMenu();
    CMenu& popup = *menu.GetSubMenu(0);
    popup.EnableMenuItem(2, MF_GRAYED);
    static unsigned wanted;
    SetMenuAnswer([](const CMenu&, CPoint) { return wanted; });
    const struct {
        unsigned answer;
        unsigned flags;
        int result;
        Commands commands;
    } cases[] = {{1, 0, 1, {{1, 0}}},
                 {3, TPM_RETURNCMD, 3, {}},
                 {2, 0, 0, {}},
                 {9, 0, 0, {}},
                 {0, TPM_RETURNCMD, 0, {}}};
    for (const auto& c : cases) {
        wanted = c.answer;
        EXPECT_EQ(popup.TrackPopupMenu(c.flags, {5, 5}, &frame), c.result) << c.answer;
        EXPECT_EQ(frame.taken(), c.commands) << c.answer;
    }
    SetMenuAnswer(nullptr);
    whenShown<QMenu>(&QApplication::activePopupWidget, [](QMenu& shown) {
        QTest::keyClick(&shown, Qt::Key_Down);
        QTest::keyClick(&shown, Qt::Key_Return);
    });
    EXPECT_EQ(popup.TrackPopupMenu(TPM_RIGHTBUTTON, {5, 5}, &frame), 1);
    EXPECT_EQ(frame.taken(), (Commands{{1, 0}}));
}

TEST(MessageBox, AnswersByKeysAndNotByASlip)
{
    CommandFrame frame;
    const struct {
        const char* name;
        unsigned type;
        std::vector<Qt::Key> keys;
        int answer;
    } cases[] = {
        {"ok", MB_OK | MB_ICONERROR, {Qt::Key_Return}, IDOK},
        {"ok, escape", MB_OK, {Qt::Key_Escape}, IDOK},
        {"cancel", MB_OKCANCEL | MB_ICONWARNING, {Qt::Key_Escape}, IDCANCEL},
        {"second answer", MB_YESNO | MB_DEFBUTTON2, {Qt::Key_Return}, IDNO},
        {"no slip", MB_YESNO | MB_ICONQUESTION, {Qt::Key_Escape, Qt::Key_Return}, IDYES},
        {"no is safe", MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2, {Qt::Key_Escape}, IDNO},
        {"not saved", MB_YESNOCANCEL | MB_ICONINFORMATION, {Qt::Key_Escape}, IDCANCEL},
    };
    for (const auto& c : cases) {
        whenShown<QMessageBox>(&QApplication::activeModalWidget, [&](QMessageBox& box) {
            EXPECT_EQ(box.parentWidget(), outerOfWindow(frame));
            EXPECT_EQ(box.text(), "<b>100%</b>");
            for (const Qt::Key key : c.keys)
                QTest::keyClick(&box, key);
        });
        EXPECT_EQ(AfxMessageBox("<b>100%</b>", c.type), c.answer) << c.name;
    }
    whenShown<QMessageBox>(&QApplication::activeModalWidget,
                           [&](QMessageBox&) { frame.DestroyWindow(); });
    EXPECT_EQ(AfxMessageBox("gone", MB_YESNOCANCEL), IDCANCEL);
}

TEST(FileDialog, AddsTheExtensionAndAsksBeforeItReplaces)
{
    CommandFrame frame;
    const char* const set = std::getenv("TEST_TMPDIR");
    const CString folder = set ? set : "/tmp";
    std::ofstream(folder + "/there.png") << "old";
    static std::vector<CString> asked;
    asked.clear();
    SetMessageFunction([](const CString& text, unsigned) {
        asked.push_back(text);
        return asked.size() == 1 ? IDNO : IDYES;
    });
    // refused once, then allowed
    for (int i = 0; i < 2; ++i)
        QTimer::singleShot(200 * i, qApp, [] {
            whenShown<QFileDialog>(&QApplication::activeModalWidget, [](QFileDialog& dialog) {
                auto* const edit = dialog.findChild<QLineEdit*>("fileNameEdit");
                if (edit->text().isEmpty())
                    edit->setText("there");
                QTest::keyClick(edit, Qt::Key_Return);
            });
        });
    CString name = folder + "/.png";
    EXPECT_EQ(fnFileDialog1(name, "PNG files (*.PNG)|*.png", "Save as", 0, "png", 0x1004, &frame),
              1);
    SetMessageFunction(nullptr);
    EXPECT_EQ(name, folder + "/there.png");
    EXPECT_EQ(asked, (std::vector<CString>(2, "there.png exists already.\nReplace it?")));

    whenShown<QFileDialog>(&QApplication::activeModalWidget,
                           [](QFileDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_EQ(fnFileDialog1(name, "Maps|*.fits", "Open", 1, "fits", 0), 0);
    EXPECT_EQ(name, folder + "/there.png");
}

TEST(Clipboard, TakesABitmapUnlessItRefuses)
{
    CString text;
    CBitmap bitmap;
    EXPECT_FALSE(SetClipboardBitmap(bitmap));
    ASSERT_TRUE(bitmap.CreateBitmap(7, 5, 2));
    EXPECT_TRUE(SetClipboardBitmap(bitmap));
    EXPECT_EQ(GetClipboardBitmapSize(), (CSize{14, 10}));
    EXPECT_FALSE(GetClipboardText(text));
    SetClipboardRefusal(1);
    EXPECT_FALSE(SetClipboardBitmap(bitmap));
    SetClipboardRefusal(0);
    EXPECT_EQ(GetClipboardBitmapSize(), (CSize{14, 10}));
}

}  // namespace pavane
