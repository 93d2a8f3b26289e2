#include "platform/test_window.h"

#include <gtest/gtest.h>
#include <memory>
#include <QApplication>
#include <QTest>
#include <QWindow>
#include <random>

using namespace pavane;

namespace
{

/// Windows that come and go while a hand that knows no rest plays with them.
class Playground
{
public:
    explicit Playground(unsigned seed) : random_(seed)
    {
        top_ = std::make_unique<TestWindow>(nullptr, WS_VISIBLE, CRect(0, 0, 400, 300));
        settle();
    }
    void play(int steps)
    {
        for (int i = 0; i < steps; ++i) {
            act();
            if (i % 8 == 0)
                settle();
        }
        SetMessageWatchdog(5000);
    }
    int drags() const { return drags_; }

private:
    int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
    CRect place()
    {
        const int x = below(380) - 40;
        const int y = below(280) - 40;
        return {x, y, x + below(300), y + below(200)};
    }
    TestWindow* any()
    {
        return windows_.empty() ? top_.get() : windows_[random_() % windows_.size()];
    }
    void make()
    {
        CWnd* const parent = any()->GetSafeHwnd() ? any() : top_.get();
        if (!parent->GetSafeHwnd())
            return;
        constexpr unsigned styles[] = {0, WS_BORDER, WS_VSCROLL | WS_HSCROLL, WS_TABSTOP};
        auto* const window = new TestWindow(parent, WS_VISIBLE | styles[below(4)], place());
        windows_.push_back(window);
        window->draw = [this](CPaintDC& dc) {
            dc.FillSolidRect(place(), 0);
            if (below(20) == 0)
                act();
        };
        window->on[WM_LBUTTONDOWN] = [this, window] {
            if (depth_ >= 3)
                return;
            ++depth_;
            ++drags_;
            SetMessageWatchdog(1);
            window->PostMessage(WM_MOUSEMOVE);
            (void)dragLoop(window, [this](CPoint) { act(); });  // any end will do
            --depth_;
        };
        const unsigned talkative[] = {WM_KEYDOWN, WM_KILLFOCUS,      WM_SIZE,       WM_SHOWWINDOW,
                                      WM_TIMER,   WM_CAPTURECHANGED, WM_CANCELMODE, WM_MOUSELEAVE};
        window->on[talkative[below(8)]] = [this] {
            if (below(3) == 0 && depth_ < 6) {
                ++depth_;
                act();
                --depth_;
            }
        };
    }
    void act()
    {
        TestWindow* const w = any();
        switch (below(16)) {
        case 0:
        case 1:
        case 2:
            return make();
        case 3:
            std::erase(windows_, w == top_.get() ? nullptr : w);
            if (w != top_.get())
                delete w;
            return;
        case 4:
            if (w != top_.get())
                w->DestroyWindow();
            return;
        case 5:
            return static_cast<void>(w->ShowWindow(below(2) ? SW_HIDE : SW_SHOW));
        case 6:
            return static_cast<void>(w->EnableWindow(below(2)));
        case 7:
            return static_cast<void>(below(2) ? w->SetCapture() : w->SetFocus());
        case 8:
            return static_cast<void>(w->MoveWindow(place()));
        case 9:
            return static_cast<void>(w->SetTimer(1, 1));
        case 10:
            return w->InvalidateRect(place());
        case 11:
            return w->UpdateWindow();
        case 12:
            return w->ScrollWindow(below(9) - 4, below(9) - 4, place());
        case 13:
            return CClientDC(w).FillSolidRect(place(), 255);
        case 14:
            return static_cast<void>(w->PostMessage(WM_LBUTTONDOWN));
        default:
            return input();
        }
    }
    void input()
    {
        QWindow* const native = QApplication::topLevelWindows().value(0);
        if (!native || depth_ > 3)
            return;
        const QPoint at(below(400), below(300));
        const auto button = below(4) ? Qt::LeftButton : Qt::RightButton;
        switch (below(4)) {
        case 0:
            return QTest::mouseMove(native, at);
        case 1:
            return QTest::mousePress(native, button, {}, at);
        case 2:
            return QTest::mouseRelease(native, button, {}, at);
        default:
            return QTest::keyClick(native, below(2) ? Qt::Key_Tab : Qt::Key_Escape);
        }
    }

    std::mt19937 random_;
    std::unique_ptr<TestWindow> top_;  // after its children in the order of destruction
    std::vector<TestWindow*> windows_;
    int depth_ = 0;
    int drags_ = 0;

public:
    ~Playground()
    {
        for (TestWindow* const w : windows_)
            w->on.clear();
        for (TestWindow* const w : windows_)
            delete w;
    }
};

}  // namespace

TEST(Windows, SurviveWhateverIsDoneToThemInWhateverHandler)
{
    int drags = 0;
    for (unsigned seed = 1; seed <= 4; ++seed) {
        SCOPED_TRACE(seed);
        Playground playground(seed);
        playground.play(1500);
        drags += playground.drags();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_GT(drags, 100);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
}
