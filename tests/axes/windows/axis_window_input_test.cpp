#include "axes/windows/axis_window_fixture.h"
#include "platform/CMenu.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>

using namespace pavane;

namespace
{

std::map<unsigned, CMenu::Line> lines;
int menus = 0;
unsigned answer = 0;
unsigned takeMenu(const CMenu& menu, CPoint)
{
    ++menus;
    lines.clear();
    for (const CMenu::Line& line : menu.lines())
        lines[line.id] = {line.text, line.id, line.enabled, line.checked, nullptr, nullptr, 1,
                          nullptr,   -1};
    return answer;
}

/// Centre of area i in cells.
APoint<double> cellOf(const AxisWindow& window, int i)
{
    const auto* const area = static_cast<const ABTracker*>(window.GetTrackers()->trackerAt(i));
    const APoint<double> centre = area->GetCenter();
    return {window.GetMap()->RPXtoMPX(centre.x), window.GetMap()->RPYtoMPY(centre.y)};
}

/// Deletes itself in a handler.
struct Doomed : AxisWindow {
    int inStatus = 0, inAreas = 0, inRange = 0;
    int* lives;
    explicit Doomed(int& counter) : lives(&counter) { ++*lives; }
    ~Doomed() override { --*lives; }
    void OnStatus(const AxisStatus&) override { end(inStatus); }
    void OnAreasChanged() override { end(inAreas); }
    void OnRangeChanged() override { end(inRange); }

private:
    void end(int& here)
    {
        if (here)
            here = 0, delete this;
    }
};

}  // namespace

TEST(AxisWindowInput, MayBeDeletedByItsOwnHandlers)
{
    SetMenuAnswer(takeMenu);
    answer = ID_TRACK_COPY;
    const auto send = [](CWnd& w, unsigned message, CPoint p) {
        w.SendMessage(message, 0, MAKELPARAM(p.x, p.y));
    };
    const auto press = [](CWnd& w, int key) {
        w.SendMessage(WM_KEYDOWN, static_cast<WPARAM>(key));
    };
    const auto menu = [&](Doomed& w) {
        CPoint p = w.at(10, 10);
        w.ClientToScreen(p);
        send(w, WM_CONTEXTMENU, p);
    };
    const auto pull = [](Doomed& w) { w.drag({w.at(10, 10), w.at(20, 20)}); };
    const struct {
        int Doomed::*where;
        std::function<void(Doomed&)> what;
    } cases[] = {
        {&Doomed::inStatus, [&](Doomed& w) { send(w, WM_MOUSEMOVE, w.at(20, 20)); }},
        {&Doomed::inStatus, [&](Doomed& w) { send(w, WM_MOUSELEAVE, {}); }},
        {&Doomed::inStatus, [&](Doomed& w) { press(w, VK_DELETE); }},
        {&Doomed::inStatus, pull},
        {&Doomed::inAreas, menu},
        {&Doomed::inAreas, pull},
        {&Doomed::inAreas, [&](Doomed& w) { w.key('2'), press(w, VK_RETURN); }},
        {&Doomed::inAreas, [&](Doomed& w) { w.SetTrackers(nullptr, 0); }},
        {&Doomed::inRange, [&](Doomed& w) { press(w, VK_ADD); }},
    };
    for (const auto& c : cases) {
        int lives = 0;
        auto* const window = new Doomed(lives);
        window->ChooseTool(toolRect);
        window->drag({window->at(5, 5), window->at(15, 20)});
        window->ChooseTool(toolRect);
        window->drag({window->at(40, 40), window->at(50, 60)});
        window->GetTrackers()->ChangeActiveTrack(window, &c == cases + 4);
        window->*c.where = 1;
        c.what(*window);
        EXPECT_EQ(lives, 0) << &c - cases;
    }
    SetMenuAnswer(nullptr);
    answer = 0;
}

TEST(AxisWindowInput, DrawsTheShapeOfEachKey)
{
    AxisWindow window;
    const char* const classes[] = {"ARectTrackerInAxis", "ARotateRectTrackerInAxis",
                                   "AEllipseTrackerInAxis"};
    for (int i = 0; i < 3; ++i) {
        window.key('2' + i);
        window.drag({window.at(5 + 15 * i, 10), window.at(10, 12), window.at(14 + 15 * i, 25)});
        ASSERT_EQ(window.areas().trackerCount(), i + 1);
        EXPECT_STREQ(window.areas().trackerAt(i)->GetClassName(), classes[i]);
    }
}

TEST(AxisWindowInput, MovesAreasByCellsAndPixels)
{
    AxisWindow window;
    window.key('2');
    window.drag({window.at(20, 20), window.at(30, 40)});
    APoint<double> before = cellOf(window, 0);
    struct Case {
        int key, modifiers;
        double columns, rows;
    };
    for (const Case& c : {Case{VK_LEFT, 0, -1, 0},
                          {VK_RIGHT, MK_SHIFT, 10, 0},
                          {VK_UP, 0, 0, 1},
                          {VK_DOWN, MK_SHIFT, 0, -10}}) {
        window.key(c.key, c.modifiers);
        const APoint<double> now = cellOf(window, 0);
        EXPECT_NEAR(now.x - before.x, c.columns, 1e-9) << c.key;
        EXPECT_NEAR(now.y - before.y, c.rows, 1e-9) << c.key;
        before = now;
    }
    window.key(VK_RIGHT, MK_CONTROL);  // a pixel, here a sixth of a cell
    EXPECT_NEAR(cellOf(window, 0).x - before.x, 80.0 / window.GetAxis()->getGraphRect().Width(),
                0.01);
}

TEST(AxisWindowInput, TakesAWheelGestureForOneStepOfTheAreasHistory)
{
    AxisWindow window;
    const auto steps = [&] { return window.GetTrackers()->zoomHistory().count(); };
    const CPoint p = window.at(20, 20);
    window.wheel(-1, p);  // nothing to pan
    EXPECT_EQ(steps(), 0);
    for (int i = 0; i < 5; ++i)
        window.wheel(1, p, MK_CONTROL);
    EXPECT_EQ(steps(), 1);
    AxisWindow::runFor(550);
    const TMinMax zoomed = window.GetAxis()->getMinMax();
    window.wheel(-2, p);
    window.wheel(1, p, MK_SHIFT);
    EXPECT_EQ(steps(), 2);
    EXPECT_LT(window.GetAxis()->getMinMax().yMin, zoomed.yMin);
    window.key('7');
    EXPECT_EQ(window.GetAxis()->getMinMax(), zoomed);
    for (int i = 0; i < 500; ++i)
        window.wheel(9, p, MK_CONTROL);
    EXPECT_GE(window.GetAxis()->getMinMax().xMax - window.GetAxis()->getMinMax().xMin, 2);
    for (int i = 0; i < 500; ++i)
        window.wheel(-9, CPoint(-50, 9999), MK_CONTROL);
    EXPECT_FALSE(window.IsRangeZoomed());
}

TEST(AxisWindowInput, PansWithTheMiddleButtonAndSpace)
{
    AxisWindow window;
    window.ZoomAbout(window.at(30, 40), 4);
    AxisWindow::runFor(550);
    window.UpdateWindow();
    const CPoint from = window.at(30, 40);
    const CPoint to(from.x + 40, from.y - 30);
    const double x = window.GetAxis()->GPXtoRPX(from.x);
    for (const int space : {0, 1}) {
        const unsigned key = space ? MK_LBUTTON : MK_MBUTTON;
        const CPoint a = space ? to : from, b = space ? from : to;
        if (space)
            window.key('2'), window.SendMessage(WM_KEYDOWN, VK_SPACE);
        window.SendMessage(space ? WM_LBUTTONDOWN : WM_MBUTTONDOWN, key, MAKELPARAM(a.x, a.y));
        for (const CPoint& p : {CPoint(a.x + 9, a.y), b})
            window.SendMessage(WM_MOUSEMOVE, key, MAKELPARAM(p.x, p.y));
        window.SendMessage(space ? WM_LBUTTONUP : WM_MBUTTONUP, 0, MAKELPARAM(b.x, b.y));
        EXPECT_EQ(CWnd::GetCapture(), nullptr);
        window.UpdateWindow();
        EXPECT_NEAR(window.GetAxis()->GPXtoRPX(b.x), x, 0.05);
        EXPECT_EQ(window.GetTrackers()->zoomHistory().count(), 2 + space);
    }
    EXPECT_EQ(window.GetTrackers()->trackerCount(), 0);
}

TEST(AxisWindowInput, ShowsNoMenuAfterTheRightButtonCancelled)
{
    AxisWindow window;
    SetMenuAnswer(takeMenu);
    menus = 0;
    answer = 0;
    const CPoint p = window.at(20, 20);
    const auto press = [&](unsigned message) {
        window.SendMessage(message, MK_RBUTTON, MAKELPARAM(p.x, p.y));
    };
    CPoint screen = p;
    window.ClientToScreen(screen);
    const auto menu = [&] {
        window.SendMessage(WM_CONTEXTMENU, 0, MAKELPARAM(screen.x, screen.y));
    };
    window.key('2');
    window.post(WM_MOUSEMOVE, window.at(30, 30));
    window.post(WM_RBUTTONDOWN, window.at(30, 30), MK_LBUTTON | MK_RBUTTON);
    window.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(p.x, p.y));
    EXPECT_EQ(window.GetTrackers()->trackerCount(), 0);
    press(WM_RBUTTONUP);  // which asks for the menu
    EXPECT_EQ(menus, 0);
    press(WM_RBUTTONDOWN);
    press(WM_RBUTTONUP);
    EXPECT_EQ(menus, 1);
    EXPECT_FALSE(lines[ID_TRACK_UNDO].enabled);
    window.key('2');
    window.drag({p, window.at(40, 40)});
    answer = ID_TRACK_DELETE;
    menu();
    EXPECT_EQ(lines[ID_TRACK_UNDO].text.substr(0, 6), "&Undo ");
    EXPECT_EQ(window.GetTrackers()->trackerCount(), 0);
    SetMenuAnswer(nullptr);
}
