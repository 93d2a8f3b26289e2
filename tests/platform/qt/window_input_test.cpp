#include "platform/drop_files.h"
#include "platform/resources.h"
#include "platform/system_colors.h"
#include "platform/test_window.h"

#include <cmath>
#include <gtest/gtest.h>
#include <QApplication>
#include <QBackingStore>
#include <QDialog>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWindow>
#include <random>

using namespace pavane;

namespace
{

QWindow* nativeOf(const CWnd& window)
{
    CRect rect;
    window.GetWindowRect(rect);
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->isVisible() && top->geometry().contains(rect.left + 1, rect.top + 1))
            return top->windowHandle();
    }
    return nullptr;
}

/// Shown, active, and settled.
struct ActiveWindow : TestWindow {
    QWindow* native = nullptr;
    ActiveWindow() : TestWindow(nullptr, WS_VISIBLE, {50, 60, 350, 260})
    {
        settle();
        native = nativeOf(*this);
        native->requestActivate();
        (void)QTest::qWaitForWindowActive(native);
        settle();
    }
};

/// Runs `act` once a loop waits.
template <class Act>
void later(Act act)
{
    QTimer::singleShot(0, qApp, act);
}

/// What is on the screen of a window, in device pixels. The screen without a display gives back no
/// more pixels than units, so on a fine one it is what the toolkit composed.
QImage grabbed(QWindow* native)
{
    if (native->devicePixelRatio() == 1.0)
        return native->screen()->grabWindow(native->winId()).toImage();
    const QWidget* const top = QApplication::topLevelAt(native->geometry().topLeft());
    return *static_cast<QImage*>(top->backingStore()->paintDevice());
}

COLORREF shown(QWindow* native, int x, int y)
{
    const QImage image = grabbed(native);
    const double ratio = native->devicePixelRatio();
    const QRgb p =
        image.pixel(static_cast<int>((x + 0.5) * ratio), static_cast<int>((y + 0.5) * ratio));
    return RGB(qRed(p), qGreen(p), qBlue(p));
}

constexpr COLORREF red = RGB(255, 0, 0);

}  // namespace

TEST(RealInput, DroppedFilesComeAfterTheDragAndOnlyFromThisMachine)
{
    struct Target : ActiveWindow {
        std::vector<CString> came;
        LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override
        {
            if (message == WM_DROPFILES)
                came = DroppedFiles(lParam);
            return ActiveWindow::WindowProc(message, wParam, lParam);
        }
    } window;
    TestWindow child(&window, WS_VISIBLE, {100, 50, 200, 150});
    settle();
    const auto drop = [&](const std::vector<const char*>& addresses, Qt::DropActions actions) {
        QMimeData data;
        QList<QUrl> urls;
        for (const char* address : addresses)
            urls += QUrl(address);
        data.setUrls(urls);
        window.came.clear();
        const QPoint inChild(121, 81);
        QDragEnterEvent enter(inChild, actions, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window.native, &enter);
        QDropEvent event(inChild, actions, &data, Qt::LeftButton, {});
        if (enter.isAccepted())
            QCoreApplication::sendEvent(window.native, &event);
        EXPECT_TRUE(window.came.empty());  // not yet
        settle();
        return window.came;
    };
    using Files = std::vector<CString>;
    EXPECT_EQ(drop({"file:///a.fits"}, Qt::CopyAction), Files());
    DragAcceptFiles(window);
    const Qt::DropActions any = Qt::CopyAction | Qt::MoveAction;
    EXPECT_EQ(drop({"file:///tmp/a%20b.fits", "http://host/x", "file:///c.reg"}, any),
              (Files{"/tmp/a b.fits", "/c.reg"}));
    EXPECT_EQ(drop({"http://host/x"}, any), Files());
    EXPECT_EQ(drop({"file:///a.fits"}, Qt::MoveAction), Files());
    window.EnableWindow(0);
    EXPECT_EQ(drop({"file:///a.fits"}, any), Files());
}

TEST(RealInput, BecomesMessagesInClientCoordinates)
{
    ActiveWindow window;
    TestWindow child(&window, WS_VISIBLE | WS_BORDER, {100, 50, 200, 150});
    settle();
    std::vector<CPoint> points;
    child.on[WM_LBUTTONDOWN] = child.on[WM_MOUSEMOVE] = [&] {
        points.push_back({GET_X_LPARAM(child.last), GET_Y_LPARAM(child.last)});
    };
    QTest::mouseMove(window.native, QPoint(121, 81));
    QTest::mousePress(window.native, Qt::LeftButton, {}, QPoint(121, 81));
    QTest::mouseRelease(window.native, Qt::LeftButton, {}, QPoint(121, 81));
    settle();
    EXPECT_EQ(points, (std::vector<CPoint>{{20, 30}, {20, 30}}));
    EXPECT_EQ(child.count(WM_LBUTTONUP), 1);
    QTest::mouseMove(window.native, QPoint(10, 10));
    settle();
    EXPECT_EQ(child.count(WM_MOUSELEAVE), 1);
}

TEST(RealInput, DragsThroughALoopAndGivesTheRestBack)
{
    ActiveWindow window;
    TestWindow other(&window, WS_VISIBLE, {200, 0, 300, 200});
    DragEnd end = DragEnd::none;
    std::vector<CPoint> moves;
    window.on[WM_LBUTTONDOWN] = [&] {
        end = dragLoop(&window, [&](CPoint p) { moves.push_back(p); });
    };
    later([&] {
        QTest::mouseMove(window.native, QPoint(60, 70));
        QTest::mouseMove(window.native, QPoint(250, 90));  // over the other
        QTest::mouseRelease(window.native, Qt::LeftButton, {}, QPoint(250, 90));
        QTest::keyClick(window.native, Qt::Key_A);
    });
    QTest::mousePress(window.native, Qt::LeftButton, {}, QPoint(50, 50));
    EXPECT_EQ(end, DragEnd::released);
    EXPECT_EQ(moves, (std::vector<CPoint>{{60, 70}, {250, 90}}));
    EXPECT_EQ(other.count(WM_MOUSEMOVE), 0);
    settle();
    EXPECT_EQ(window.count(WM_KEYDOWN), 1);
    EXPECT_EQ(window.count(WM_CHAR), 1);
}

TEST(RealInput, CancelsADragByKeyOrButtonWithoutAMenu)
{
    for (const bool byKey : {true, false}) {
        ActiveWindow window;
        DragEnd end = DragEnd::none;
        window.on[WM_LBUTTONDOWN] = [&] { end = dragLoop(&window); };
        later([&] {
            if (byKey)
                QTest::keyClick(window.native, Qt::Key_Escape);
            else
                QTest::mousePress(window.native, Qt::RightButton, {}, QPoint(9, 9));
        });
        QTest::mousePress(window.native, Qt::LeftButton, {}, QPoint(50, 50));
        EXPECT_EQ(end, DragEnd::cancelled);
        if (!byKey)
            QTest::mouseRelease(window.native, Qt::RightButton, {}, QPoint(9, 9));
        QTest::mouseRelease(window.native, Qt::LeftButton, {}, QPoint(9, 9));
        settle();
        EXPECT_EQ(window.count(WM_LBUTTONUP), 1);
        EXPECT_EQ(window.count(WM_CONTEXTMENU), 0);
        QTest::mouseClick(window.native, Qt::RightButton, {}, QPoint(9, 9));
        settle();
        EXPECT_EQ(window.count(WM_CONTEXTMENU), 1);
    }
}

TEST(RealInput, EndsADragWhenADialogOpens)
{
    ActiveWindow window;
    DragEnd end = DragEnd::none;
    window.on[WM_LBUTTONDOWN] = [&] { end = dragLoop(&window); };
    later([] {
        QDialog dialog;
        QTimer::singleShot(50, &dialog, &QDialog::reject);
        dialog.exec();
    });
    QTest::mousePress(window.native, Qt::LeftButton, {}, QPoint(50, 50));
    EXPECT_EQ(end, DragEnd::lost);
    QTest::mouseRelease(window.native, Qt::LeftButton, {}, QPoint(50, 50));
}

TEST(RealInput, LetsAnEditHaveItsKeysDuringADrag)
{
    ActiveWindow window;
    QWidget* const host = QApplication::topLevelAt(QPoint(60, 70));
    ASSERT_NE(host, nullptr);
    auto* const edit = new QLineEdit(host->findChildren<QWidget*>().value(0));
    edit->show();
    edit->setFocus();
    settle();
    DragEnd end = DragEnd::none;
    window.on[WM_LBUTTONDOWN] = [&] { end = dragLoop(&window); };
    later([&] {
        QTest::keyClick(window.native, Qt::Key_X);
        QTest::keyClick(window.native, Qt::Key_Escape);
    });
    QTest::mousePress(window.native, Qt::LeftButton, {}, QPoint(150, 150));
    EXPECT_EQ(end, DragEnd::cancelled);
    EXPECT_EQ(edit->text(), QStringLiteral("x"));
    EXPECT_EQ(CWnd::GetFocus(), &window);  // the nearest window of ours
}

TEST(RealInput, IsOfferedToTheTopLevelWindowFirst)
{
    struct Splash : ActiveWindow {
        int offered = 0;
        int PreTranslateMessage(const MSG& m) override
        {
            ++offered;
            return m.message == WM_KEYDOWN;
        }
    } window;
    TestWindow child(&window, WS_VISIBLE, {0, 0, 50, 50});
    child.SetFocus();
    settle();
    QTest::keyClick(window.native, Qt::Key_B);
    QTest::mouseClick(window.native, Qt::LeftButton, {}, QPoint(5, 5));
    settle();
    EXPECT_EQ(child.count(WM_KEYDOWN), 0);
    EXPECT_EQ(child.count(WM_LBUTTONDOWN), 1);
    EXPECT_GE(window.offered, 4);
}

TEST(RealInput, NamesKeysAndTellsDoubleClicksFromTwo)
{
    ActiveWindow window;
    struct Keys : TestWindow {
        using TestWindow::TestWindow;
        std::vector<unsigned> keys;
        void OnKeyDown(unsigned key, unsigned, unsigned) override { keys.push_back(key); }
    } child(&window, WS_VISIBLE, {0, 0, 100, 100});
    child.SetFocus();
    settle();
    const Qt::Key pressed[] = {Qt::Key_Z,    Qt::Key_7,      Qt::Key_Exclam, Qt::Key_Backtab,
                               Qt::Key_Left, Qt::Key_Delete, Qt::Key_F3,     Qt::Key_Plus};
    for (const Qt::Key key : pressed)
        QTest::keyClick(window.native, key);
    EXPECT_EQ(child.keys, (std::vector<unsigned>{'Z', '7', '1', VK_TAB, VK_LEFT, VK_DELETE,
                                                 VK_F1 + 2, VK_OEM_PLUS}));
    QTest::mouseDClick(window.native, Qt::LeftButton, {}, QPoint(5, 5));
    settle();
    EXPECT_EQ(child.count(WM_LBUTTONDOWN), 1);
    EXPECT_EQ(child.count(WM_LBUTTONDBLCLK), 1);
    EXPECT_EQ(child.count(WM_LBUTTONUP), 2);
}

TEST(RealInput, GoesToTheParentOfADisabledWindow)
{
    ActiveWindow window;
    TestWindow child(&window, WS_VISIBLE | WS_DISABLED, {0, 0, 100, 100});
    settle();
    QTest::mouseClick(window.native, Qt::LeftButton, {}, QPoint(50, 40));
    settle();
    EXPECT_EQ(child.count(WM_LBUTTONDOWN), 0);
    EXPECT_EQ(window.count(WM_LBUTTONDOWN), 1);
    EXPECT_EQ(child.EnableWindow(1), 1);
    EXPECT_EQ(child.count(WM_ENABLE), 1);
}

TEST(RealInput, MovesTheFocusByTabInADialogUnlessTheWindowWantsTheKey)
{
    struct Dialog : ActiveWindow {
        int IsDialog() const override { return 1; }
    } dialog;
    struct Choosy : TestWindow {
        using TestWindow::TestWindow;
        unsigned code = 0;
        unsigned OnGetDlgCode() override { return code; }
    };
    constexpr unsigned stop = WS_VISIBLE | WS_TABSTOP;
    Choosy first(&dialog, stop, {0, 0, 50, 50});
    Choosy unreachable(&dialog, WS_VISIBLE, {50, 0, 100, 50});
    Choosy second(&dialog, stop, {100, 0, 150, 50});
    first.SetFocus();
    settle();
    QTest::keyClick(dialog.native, Qt::Key_Tab);
    EXPECT_EQ(CWnd::GetFocus(), &second);
    QTest::keyClick(dialog.native, Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(CWnd::GetFocus(), &first);
    EXPECT_EQ(first.count(WM_KEYDOWN), 0);
    first.code = DLGC_WANTALLKEYS;
    QTest::keyClick(dialog.native, Qt::Key_Tab);
    QTest::keyClick(dialog.native, Qt::Key_Escape);
    EXPECT_EQ(CWnd::GetFocus(), &first);
    EXPECT_EQ(first.count(WM_KEYDOWN), 2);
}

TEST(RealInput, ChoosesTheCursorOfTheClass)
{
    WNDCLASSA crossed;
    crossed.className = "crossed";
    crossed.cursor = IDC_CROSS;
    AfxRegisterClass(crossed);
    WNDCLASSA found;
    EXPECT_EQ(GetClassInfo("crossed", found) + GetClassInfo("unknown", found), 1);
    ActiveWindow window;
    CWnd child;
    child.Create("crossed", "", WS_CHILD | WS_VISIBLE, {0, 0, 50, 50}, &window, 0);
    settle();
    QTest::mouseMove(window.native, QPoint(100, 100));
    settle();
    EXPECT_EQ(GetCursor(), IDC_ARROW);
    QTest::mouseMove(window.native, QPoint(20, 20));
    settle();
    EXPECT_EQ(GetCursor(), IDC_CROSS);
    EXPECT_EQ(SetCursor(IDC_SIZEALL), IDC_CROSS);

    static constexpr const char* rows[] = {"#.", ".#"};
    static constexpr CursorTemplate drawing{4711, 1, 1, rows, 2};
    AddResourceModule({nullptr, 0, nullptr, 0, &drawing, 1});
    const HCURSOR drawn = LoadCursor(4711);
    EXPECT_EQ(LoadCursor(4711), drawn);
    EXPECT_EQ(LoadCursor(4712), HCURSOR{0});
    SetCursor(drawn);
    const QWidget* const under = QApplication::widgetAt(QPoint(70, 80));
    EXPECT_EQ(under->cursor().hotSpot(), QPoint(1, 1));
    EXPECT_EQ(under->cursor().pixmap().deviceIndependentSize(), QSizeF(32, 32));
}

TEST(Screen, ShowsWhatWasScrolledInAnyOrderOfPaintsAndScrolls)
{
    ActiveWindow window;
    if (window.native->devicePixelRatio() != std::round(window.native->devicePixelRatio()))
        GTEST_SKIP() << "pixels are mixed there";
    TestWindow child(&window, WS_VISIBLE, {30, 20, 250, 170});
    TestWindow above(&child, WS_VISIBLE, {5, 5, 40, 20});
    window.draw =
        child.draw = [](CPaintDC& dc) { dc.FillSolidRect(dc.paintRect(), RGB(0, 90, 0)); };
    settle();
    {
        CClientDC dc(&child);
        const CRect all(0, 60, 220, 150);
        dc.FillSolidRect({50, 70, 60, 80}, red);  // not on the screen yet
        dc.ScrollDC(40, 20, &all, &all, nullptr, nullptr);
        settle();
        EXPECT_EQ(shown(window.native, 30 + 95, 20 + 95), red);
    }
    std::mt19937 random(7);
    const auto below = [&](int limit) { return static_cast<int>(random() % unsigned(limit)); };
    const auto place = [&] {
        const CPoint p{below(200), below(140)};
        return CRect(p.x, p.y, p.x + 5 + below(120), p.y + 5 + below(90));
    };
    for (int round = 0; round < 60; ++round) {
        for (int step = below(6); step >= 0; --step) {
            TestWindow& w = below(3) ? child : window;
            CClientDC dc(&w);
            const CRect rect = place();
            switch (below(5)) {
            case 0:
                dc.FillSolidRect(rect, RGB(below(255), below(255), below(255)));
                break;
            case 1:
                w.InvalidateRect(rect);
                break;
            case 2:
                w.UpdateWindow();
                break;
            case 3:
                w.ScrollWindow(below(20) - 10, below(40) - 20, rect);
                break;
            default:
                dc.ScrollDC(below(40) - 20, below(20) - 10, &rect, &rect, nullptr, nullptr);
            }
        }
        settle();
        const QImage image = grabbed(window.native);
        const int ratio = static_cast<int>(window.native->devicePixelRatio());
        const CClientDC own(&window), inner(&child), top(&above);
        for (int y = 0; y < 200; ++y) {
            for (int x = 0; x < 300; ++x) {
                const bool inChild = CRect(30, 20, 250, 170).PtInRect({x, y});
                const bool inTop = CRect(35, 25, 70, 40).PtInRect({x, y});
                const COLORREF wanted = inTop     ? top.GetPixel(x - 35, y - 25)
                                        : inChild ? inner.GetPixel(x - 30, y - 20)
                                                  : own.GetPixel(x, y);
                const QRgb p = image.pixel(x * ratio, y * ratio);
                ASSERT_EQ(RGB(qRed(p), qGreen(p), qBlue(p)), wanted)
                    << x << ' ' << y << " in round " << round;
            }
        }
    }
}

TEST(RealInput, AsksTheWindowBeforeAScrollBarMoves)
{
    ActiveWindow window;
    struct Scrolled : TestWindow {
        using TestWindow::TestWindow;
        std::vector<unsigned> scrolled;
        void OnVScroll(unsigned code, unsigned) override { scrolled.push_back(code); }
    } child(&window, WS_VISIBLE | WS_VSCROLL, {0, 0, 100, 100});
    child.SetScrollRange(SB_VERT, 0, 50, 10);
    auto* const bar = QApplication::widgetAt(QPoint(145, 110))->window()->findChild<QScrollBar*>();
    ASSERT_NE(bar, nullptr);
    bar->triggerAction(QAbstractSlider::SliderPageStepAdd);
    EXPECT_EQ(child.count(WM_VSCROLL), 1);
    EXPECT_EQ(child.last, 10);
    EXPECT_EQ(child.GetScrollPos(SB_VERT), 0);
    bar->setSliderDown(true);
    bar->setSliderPosition(33);
    bar->setSliderDown(false);
    EXPECT_EQ(child.scrolled,
              (std::vector<unsigned>{SB_PAGEDOWN, SB_THUMBTRACK, SB_THUMBPOSITION}));
    EXPECT_EQ(child.last, 33);
}

TEST(RealInput, AsksForAContextMenuByKey)
{
    ActiveWindow window;
    QTest::keyClick(window.native, Qt::Key_Menu);
    EXPECT_EQ(window.count(WM_CONTEXTMENU), 1);
    QTest::keyClick(window.native, Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(window.count(WM_CONTEXTMENU), 2);
}

TEST(RealInput, TellsOfAnotherPaletteAndItsColours)
{
    ActiveWindow window;
    TestWindow child(&window);
    const QPalette before = QApplication::palette();
    QPalette dark(Qt::black, Qt::black);
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::yellow);
    QApplication::setPalette(dark);
    settle();
    EXPECT_EQ(child.count(WM_SYSCOLORCHANGE), 1);
    EXPECT_EQ(GetSysColor(COLOR_WINDOWTEXT), RGB(255, 255, 0));
    EXPECT_GT(ContrastRatio(GetSysColor(COLOR_BTNSHADOW), GetSysColor(COLOR_WINDOW)), 1.4);
    QApplication::setPalette(before);
    settle();
    EXPECT_EQ(child.count(WM_SYSCOLORCHANGE), 2);
}

TEST(RealInput, TellsWhichKeysAreHeldUnlessATestSaysOtherwise)
{
    ActiveWindow window;
    std::vector<int> held;
    window.on[WM_KEYDOWN] = [&] {
        held.push_back((GetKeyState(VK_SHIFT) < 0) + 2 * (GetKeyState(VK_CONTROL) < 0));
    };
    QTest::keyClick(window.native, Qt::Key_A, Qt::ShiftModifier);
    SetKeyStateOverride(MK_CONTROL);
    QTest::keyClick(window.native, Qt::Key_A, Qt::ShiftModifier);
    SetKeyStateOverride(-1);
    EXPECT_EQ(held, (std::vector<int>{0, 1, 2, 2}));  // Shift goes down before the letter
}

TEST(Windows, LeaveNothingBehind)
{
    const auto cycle = [] {
        ActiveWindow window;
        TestWindow child(&window, WS_VISIBLE | WS_VSCROLL, {0, 0, 50, 50});
        child.SetTimer(1, 1000);
        settle();
        window.SendMessage(WM_CLOSE);
    };
    const auto widgets = [] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return QApplication::allWidgets().size() + QGuiApplication::allWindows().size();
    };
    cycle();
    const auto before = widgets();
    for (int i = 0; i < 200; ++i)
        cycle();
    EXPECT_EQ(widgets(), before);
}

TEST(Focus, IsKnownBeforeTheWindowIsActive)
{
    ActiveWindow first;
    TestWindow second(nullptr, WS_VISIBLE, {400, 60, 500, 160});
    TestWindow child(&second, WS_VISIBLE, {0, 0, 50, 50});
    first.native->requestActivate();
    settle();
    first.seen.clear();
    EXPECT_EQ(child.SetFocus(), &first);
    EXPECT_EQ(CWnd::GetFocus(), &child);
    EXPECT_TRUE(QTest::qWaitFor([&] { return child.count(WM_SETFOCUS) == 1; }, 2000));
    EXPECT_EQ(first.count(WM_KILLFOCUS), 1);
    child.DestroyWindow();
    EXPECT_EQ(CWnd::GetFocus(), &second);  // never nowhere
}

TEST(Screen, ShowsWhatWasPaintedWhereItWasPainted)
{
    ActiveWindow window;
    window.draw = [](CPaintDC& dc) { dc.FillSolidRect({0, 0, 300, 200}, red); };
    window.InvalidateRect({10, 20, 60, 21});
    window.UpdateWindow();
    EXPECT_EQ(shown(window.native, 11, 20), red);
    EXPECT_EQ(shown(window.native, 59, 20), red);
    EXPECT_NE(shown(window.native, 61, 20), red);
    EXPECT_NE(shown(window.native, 30, 23), red);
    {
        CClientDC dc(&window);
        dc.FillSolidRect({100, 100, 120, 120}, red);
        dc.FillSolidRect({200, 150, 220, 160}, red);
    }
    settle();
    EXPECT_EQ(shown(window.native, 110, 110), red);
    EXPECT_EQ(shown(window.native, 219, 155), red);
    window.draw = nullptr;
    window.native->resize(320, 220);
    settle();
    EXPECT_EQ(shown(window.native, 110, 110), red);
}

TEST(Screen, LosesNoLineOfOnePixel)
{
    ActiveWindow window;
    window.draw = [](CPaintDC& dc) {
        dc.FillSolidRect({0, 0, 300, 200}, RGB(255, 255, 255));
        for (int x = 0; x < 300; x += 5)
            dc.FillSolidRect({x, 0, x + 1, 200}, RGB(0, 0, 0));
    };
    window.Invalidate();
    window.UpdateWindow();
    settle();
    const QImage image = grabbed(window.native);
    ASSERT_EQ(image.width(), qRound(300 * window.native->devicePixelRatio()));
    int dark = 0;
    bool wasDark = false;
    for (int x = 0; x < image.width(); ++x) {
        const bool isDark = qGray(image.pixel(x, image.height() / 2)) < 160;
        dark += isDark && !wasDark;
        wasDark = isDark;
    }
    EXPECT_EQ(dark, 60);
}
