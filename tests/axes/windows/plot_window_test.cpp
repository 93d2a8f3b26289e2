// A window that shows an axis without areas.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/CMenu.h"
#include "platform/messages.h"
#include "platform/picture.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

using namespace pavane;

namespace
{

/// An axis that knows nothing of layouts: it places its graph rectangle while it draws.
struct Cross : ABAxis {
    using ABAxis::ABAxis;
    void draw(CDC& dc, CRect& rect) override
    {
        setDc(&dc);
        setUpParameters();
        setGraphRect(CRect(rect.left + 20, rect.top + 20, rect.right - 20, rect.bottom - 20));
        line(graphRect_.left, graphRect_.top, graphRect_.right, graphRect_.bottom);
        setDc(nullptr);
    }
};

double xs[] = {1, 2, 3, 4};
double ys[] = {1, 1000, 10, 100};

ABAxis* curve(int xDirect, int yDirect)
{
    auto* const axis = new A2DAxis(xDirect, yDirect, nullptr, 0);
    new AGraphXYLine(axis, xs, ys, 4, nullptr, PS_SOLID, 1, 0, 0);  // the axis owns it
    return axis;
}

ABAxis* cross()
{
    TMinMax range{-5, 5, 0, 1};
    return new Cross(1, 1, &range, 0);
}

template <class Base>
struct Shown : Base {
    CWnd top;
    std::vector<AxisStatus> statuses;
    std::function<void()> onRange;
    explicit Shown(ABAxis* axis)
    {
        const CRect all(0, 0, 400, 300);
        top.Create("", "", WS_POPUP | WS_VISIBLE, all, nullptr, 0);
        this->Create("", "", WS_CHILD | WS_VISIBLE, all, &top, 1);
        this->SetPlot(axis, 1);
        this->UpdateWindow();
    }
    void OnStatus(const AxisStatus& status) override { statuses.push_back(status); }
    void OnRangeChanged() override
    {
        if (onRange)
            std::exchange(onRange, nullptr)();
    }
    void mouse(unsigned message, CPoint p, unsigned keys = 0)
    {
        this->SendMessage(message, keys, MAKELPARAM(p.x, p.y));
    }
    void press(CPoint from, CPoint to)
    {
        mouse(WM_LBUTTONDOWN, from, MK_LBUTTON);
        mouse(WM_MOUSEMOVE, to, MK_LBUTTON);
    }
    void key(int code) { this->SendMessage(WM_KEYDOWN, static_cast<WPARAM>(code)); }
    TMinMax range() const { return this->GetPlot()->getMinMax(); }
};
using PlotWindow = Shown<APlotWnd>;

const CPoint from(300, 80), to(150, 200);

int menus = 0;

}  // namespace

TEST(PlotWindow, ShowsWhatLiesInARubberBandOfAnyAxis)
{
    for (ABAxis* const axis : {curve(1, 1), curve(-1, 0), cross()}) {
        SCOPED_TRACE(testing::Message() << axis->GetAxisType() << ", " << axis->getYDirect());
        PlotWindow window(axis);
        const TMinMax whole = window.range();
        const double xa = axis->GPXtoRPX(from.x), xb = axis->GPXtoRPX(to.x);
        const double ya = axis->GPYtoRPY(from.y), yb = axis->GPYtoRPY(to.y);
        window.press(from, to);
        EXPECT_EQ(window.contentDrawings(), 1);
        EXPECT_TRUE(window.statuses.back().inPlot);
        EXPECT_DOUBLE_EQ(window.statuses.back().y, yb);
        window.mouse(WM_LBUTTONUP, to);
        EXPECT_EQ(CWnd::GetCapture(), nullptr);
        EXPECT_EQ(window.range().xMin, std::min(xa, xb));
        EXPECT_EQ(window.range().xMax, std::max(xa, xb));
        EXPECT_EQ(window.range().yMin, std::min(ya, yb));
        EXPECT_EQ(window.range().yMax, std::max(ya, yb));
        window.key(VK_ADD);
        window.key('0');
        EXPECT_FALSE(window.IsRangeZoomed());
        EXPECT_EQ(window.range(), whole);
        for (int i = 0; i < 3; ++i)
            window.key('7');
        EXPECT_FALSE(window.IsCommandEnabled(ID_ZOOM_MINUS));
        EXPECT_EQ(window.range(), whole);
        window.press(from, from + CPoint(2, 90));  // a click that shook
        window.mouse(WM_LBUTTONUP, from);
        EXPECT_EQ(window.range(), whole);
        // pictures of another size leave the pointer where it is
        window.UpdateWindow();
        CPicture picture(200, 900);
        window.DrawPicture(*picture.dc(), CRect(0, 0, 200, 900));
        EXPECT_DOUBLE_EQ(axis->GPXtoRPX(from.x), xa);
        EXPECT_DOUBLE_EQ(window.StatusAt(from).y, ya);
    }
}

TEST(PlotWindow, ShowsAllOfOtherData)
{
    double x[] = {0, 8}, y[] = {1, 2};
    auto* const axis = new A2DAxis(1, 1, nullptr, 0);
    new AGraphXYLine(axis, x, y, 2, nullptr, PS_SOLID, 1, 0, 0);
    PlotWindow window(axis);
    window.press(from, to);
    window.mouse(WM_LBUTTONUP, to);
    y[1] = 90;
    window.DataChanged();
    window.UpdateWindow();
    EXPECT_GE(window.range().yMax, 90);
    EXPECT_EQ(window.GetWholeRange(), window.range());
    EXPECT_FALSE(window.IsCommandEnabled(ID_ZOOM_MINUS));
}

TEST(PlotWindow, WhatIsZoomedStaysAndAllIsMoreWhenTheDataGrow)
{
    for (const int isZoomed : {0, 1}) {
        double x[] = {1, 2, 3, 4}, y[] = {1, 2, 3, 4};
        auto* const axis = new A2DAxis(1, 1, nullptr, 0);
        new AGraphXYLine(axis, x, y, 4, nullptr, PS_SOLID, 1, 0, 0);
        PlotWindow window(axis);
        const TMinMax all = window.GetWholeRange();
        window.ZoomAbout({200, 150}, 2);
        const TMinMax zoomed = window.range();
        if (!isZoomed) {
            window.ZoomBack();
            window.ViewForward(), window.ViewBack();
        }
        x[3] = 40;
        window.DataGrew();
        const TMinMax more = window.GetWholeRange();
        EXPECT_GT(more.xMax, 39);
        EXPECT_EQ(more.yMax, all.yMax);
        EXPECT_TRUE(samePairs(window.range(), isZoomed ? zoomed : more));
        isZoomed ? window.ViewBack() : window.ViewForward();
        EXPECT_TRUE(samePairs(window.range(), isZoomed ? more : zoomed));
        isZoomed ? window.ViewForward() : window.ViewBack();
        EXPECT_TRUE(samePairs(window.range(), isZoomed ? zoomed : more));
        window.ZoomBack();
        EXPECT_TRUE(samePairs(window.range(), more));
    }
}

TEST(PlotWindow, GivesARubberBandUp)
{
    std::unique_ptr<PlotWindow> window;
    const auto menu = [](const CMenu&, CPoint) { return ++menus, 0u; };
    const struct {
        const char* what;
        std::function<void()> interrupt;
        int other = 0;  ///< another axis is shown, or another range
    } cases[] = {
        {"Escape", [&] { window->key(VK_ESCAPE); }},
        {"right press",
         [&] {
             window->mouse(WM_RBUTTONDOWN, to, MK_LBUTTON | MK_RBUTTON);
             window->mouse(WM_RBUTTONUP, to, MK_LBUTTON);
         }},
        {"capture lost", [&] { CWnd::ReleaseCapture(); }},
        {"another axis", [&] { window->SetPlot(cross(), 1); }, 1},
        {"no axis", [&] { window->SetPlot(nullptr, 0); }, 1},
        {"another range",
         [&] {
             window->SetNewMinMax({2, 3, 1, 9});
         },
         1},
        {"closed", [&] { window->DestroyWindow(); }},
        {"deleted", [&] { window.reset(); }, 1},
    };
    SetMenuAnswer(menu);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        window = std::make_unique<PlotWindow>(curve(1, 1));
        const TMinMax whole = window->range();
        window->press(from, to);
        c.interrupt();
        const TMinMax shown = window && window->GetPlot() ? window->range() : TMinMax();
        if (window && window->GetSafeHwnd()) {
            window->mouse(WM_MOUSEMOVE, to + CPoint(5, 5), MK_LBUTTON);
            window->mouse(WM_LBUTTONUP, to);
        }
        EXPECT_EQ(window && window->GetPlot() ? window->range() : TMinMax(), shown);
        EXPECT_EQ(shown == whole, !c.other);
        EXPECT_EQ(CWnd::GetCapture(), nullptr);
    }
    EXPECT_EQ(menus, 0);
    SetMenuAnswer(nullptr);
}

TEST(PlotWindow, MayGoOrGetAnotherAxisWhileItTellsOfTheRange)
{
    for (const int gone : {0, 1})
        for (const int panned : {0, 1}) {
            auto* const window = new PlotWindow(curve(1, -1));
            if (panned) {
                window->ZoomAbout(from, 3);
                window->UpdateWindow();
            }
            window->onRange = [&] { gone ? delete window : window->SetPlot(cross(), 1); };
            if (panned) {
                window->mouse(WM_MBUTTONDOWN, from, MK_MBUTTON);
                window->mouse(WM_MOUSEMOVE, to, MK_MBUTTON);
            } else {
                window->press(from, to);
                window->mouse(WM_LBUTTONUP, to);
            }
            EXPECT_EQ(CWnd::GetCapture(), nullptr);
            if (!gone) {
                EXPECT_EQ(window->range().xMin, -5);
                delete window;
            }
        }
}

TEST(PlotWindow, OfAreasTakesAnyAxisToo)
{
    Shown<AAxisWnd> window(cross());
    EXPECT_EQ(window.GetAxis(), nullptr);
    window.ChooseTool(toolRect);
    window.PostMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(to.x, to.y));
    window.PostMessage(WM_LBUTTONUP, 0, MAKELPARAM(to.x, to.y));
    window.mouse(WM_LBUTTONDOWN, from, MK_LBUTTON);
    EXPECT_EQ(window.GetTrackers()->trackerCount(), 1);
    window.press({40, 40}, {90, 60});  // no band
    window.mouse(WM_LBUTTONUP, {90, 60});
    EXPECT_FALSE(window.IsRangeZoomed());
}
