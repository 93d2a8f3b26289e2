// A window of several scales and panels.
#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/windows/AMultiPlotWnd.h"
#include "pavane/axes/windows/save_axis.h"
#include "platform/CMenu.h"
#include "platform/messages.h"
#include "platform/window_dc.h"

#include <cmath>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <set>

using namespace pavane;

namespace
{

double xs[] = {1, 2, 3, 4, 5, 6, 7, 8};
double amplitudes[] = {1, 5, 2, 8, 3, 9, 4, 6};
double weights[] = {1, 10, 100, 1000, 100, 10, 1, 10};
double phases[] = {-170, 170, 20, 10, 0, -90, 90, 45};

/// Amplitudes and weights (logarithmic) in panel 0, phases (downwards) in panel 1.
A2DAxisMulti* panels(int xDirect = 1)
{
    auto* const axis = new A2DAxisMulti(xDirect, 1, nullptr, 0);
    axis->setNameOY("Amplitude [Jy]");
    axis->addScale({"Weight", {}, 0, 0});
    axis->addScale({"Phase [deg]", {-180, 180}, -1, 1});
    double* const values[] = {amplitudes, weights, phases};
    for (int i = 0; i < 3; ++i) {
        auto* const curve =
            new AGraphXYLine(axis, xs, values[i], 8, nullptr, PS_SOLID, 1, RGB(0, 90, 180), 0);
        axis->setScaleOf(curve, i);
    }
    return axis;
}

struct MultiWindow : AMultiPlotWnd {
    CWnd top;
    std::vector<MultiStatus> statuses;
    std::function<void()> onRange;
    int left = 0;
    explicit MultiWindow(ABAxis* axis)
    {
        const CRect all(0, 0, 500, 400);
        top.Create("", "", WS_POPUP | WS_VISIBLE, all, nullptr, 0);
        Create("", "", WS_CHILD | WS_VISIBLE, all, &top, 1);
        SetPlot(axis, 1);
        UpdateWindow();
    }
    void OnMultiStatus(const MultiStatus& status) override { statuses.push_back(status); }
    void OnPanelsLeft(int step) override { left = step; }
    void OnRangeChanged() override
    {
        if (onRange)
            std::exchange(onRange, nullptr)();
    }
    void mouse(unsigned message, CPoint p, unsigned keys = 0)
    {
        SendMessage(message, keys, MAKELPARAM(p.x, p.y));
    }
    void drag(CPoint from, CPoint to, unsigned keys = 0)
    {
        mouse(WM_LBUTTONDOWN, from, MK_LBUTTON | keys);
        mouse(WM_MOUSEMOVE, {(from.x + to.x) / 2, (from.y + to.y) / 2}, MK_LBUTTON | keys);
        mouse(WM_MOUSEMOVE, to, MK_LBUTTON | keys);
        mouse(WM_LBUTTONUP, to, keys);
    }
    void wheel(CPoint p, int notches, unsigned keys = 0)
    {
        ClientToScreen(p);
        SendMessage(WM_MOUSEWHEEL,
                    keys | static_cast<WPARAM>(static_cast<std::uint16_t>(notches * WHEEL_DELTA))
                               << 16,
                    MAKELPARAM(p.x, p.y));
    }
    void key(int code, int modifiers = 0)
    {
        SetKeyStateOverride(modifiers);
        SendMessage(WM_KEYDOWN, static_cast<WPARAM>(code));
        SendMessage(WM_KEYUP, static_cast<WPARAM>(code));
        SetKeyStateOverride(-1);
    }
    CPoint inPanel(int panel, double across = 0.4, double down = 0.6) const
    {
        const CRect rect = GetAxis()->getPanelRect(panel);
        return {rect.left + static_cast<int>(across * rect.Width()),
                rect.top + static_cast<int>(down * rect.Height())};
    }
    CPoint onScale(int scale) const { return GetAxis()->getScaleRect(scale).CenterPoint(); }
    CPoint onX() const
    {
        const CRect rect = GetAxis()->getPanelRect(1);
        return {rect.CenterPoint().x + 30, rect.bottom + 5};
    }
};

/// Directions in which ranges differ: -1 for x.
std::set<int> changed(const MultiRanges& a, const MultiRanges& b)
{
    std::set<int> which;
    if (!(a.x == b.x))
        which.insert(-1);
    for (std::size_t i = 0; i < a.y.size(); ++i)
        if (!(a.y[i] == b.y[i]))
            which.insert(static_cast<int>(i));
    return which;
}

constexpr int alt = 0x20;
int menus = 0;

}  // namespace

TEST(MultiPlotWindow, ZoomsAndPansWhatIsUnderThePointer)
{
    const struct {
        const char* what;
        std::function<void(MultiWindow&)> act;
        std::set<int> directions;
    } cases[] = {
        {"wheel on y", [](MultiWindow& w) { w.wheel(w.onScale(1), 2); }, {1}},
        {"wheel on x", [](MultiWindow& w) { w.wheel(w.onX(), 1); }, {-1}},
        {"Ctrl+wheel", [](MultiWindow& w) { w.wheel(w.inPanel(1), 1, MK_CONTROL); }, {-1}},
        {"Ctrl+Shift+wheel",
         [](MultiWindow& w) { w.wheel(w.inPanel(0), 1, MK_CONTROL | MK_SHIFT); },
         {0, 1}},
        {"band", [](MultiWindow& w) { w.drag(w.inPanel(0), w.inPanel(0, 0.7, 0.6)); }, {-1}},
        {"band with Shift",
         [](MultiWindow& w) { w.drag(w.inPanel(1), w.inPanel(1, 0.4, 0.8), MK_SHIFT); },
         {2}},
        {"wheel", [](MultiWindow& w) { w.wheel(w.inPanel(0, 0.4, 0.5), -1); }, {0, 1}},
        {"Shift+wheel", [](MultiWindow& w) { w.wheel(w.inPanel(1), -1, MK_SHIFT); }, {-1}},
        {"drag of y",
         [](MultiWindow& w) { w.drag(w.onScale(2), w.onScale(2) + CPoint(0, 30)); },
         {2}},
        {"drag of x", [](MultiWindow& w) { w.drag(w.onX(), w.onX() + CPoint(40, 0)); }, {-1}},
        {"middle button",
         [](MultiWindow& w) {
             w.mouse(WM_MBUTTONDOWN, w.inPanel(0), MK_MBUTTON);
             w.mouse(WM_MOUSEMOVE, w.inPanel(0, 0.3, 0.7), MK_MBUTTON);
             w.mouse(WM_MBUTTONUP, w.inPanel(0, 0.3, 0.7));
         },
         {-1, 0, 1}},
        {"Space",
         [](MultiWindow& w) {
             w.SendMessage(WM_KEYDOWN, VK_SPACE);
             w.drag(w.inPanel(1), w.inPanel(1, 0.45, 0.7));
             w.SendMessage(WM_KEYUP, VK_SPACE);
         },
         {-1, 2}},
        {"double click on y",
         [](MultiWindow& w) { w.mouse(WM_LBUTTONDBLCLK, w.onScale(1), MK_LBUTTON); },
         {1}},
        {"double click on x",
         [](MultiWindow& w) { w.mouse(WM_LBUTTONDBLCLK, w.onX(), MK_LBUTTON); },
         {-1}},
        {"0", [](MultiWindow& w) { w.key('0'); }, {0, 2}},
        {"plus on a scale",
         [](MultiWindow& w) {
             w.SetPlotFocus({MultiFocusKind::scale, 1, 2, -1, -1});
             w.key(VK_ADD);
         },
         {2}},
        {"plus on a panel",
         [](MultiWindow& w) {
             w.SetPlotFocus({MultiFocusKind::panel, 0, -1, -1, -1});
             w.key(VK_ADD);
             w.key(VK_ADD);
         },
         {-1}},
        {"arrow", [](MultiWindow& w) { w.key(VK_RIGHT); }, {-1}},
        {"click", [](MultiWindow& w) { w.drag(w.inPanel(0), w.inPanel(0)); }, {}},
    };
    for (const int xDirect : {1, -1}) {
        MultiWindow window(panels(xDirect));
        std::vector<MultiRanges> views{window.GetRanges()};
        for (const auto& c : cases) {
            SCOPED_TRACE(c.what);
            c.act(window);
            window.BeginView();  // the gesture is over
            window.EndView();
            window.UpdateWindow();
            EXPECT_EQ(CWnd::GetCapture(), nullptr);
            EXPECT_EQ(changed(views.back(), window.GetRanges()), c.directions);
            if (!c.directions.empty())
                views.push_back(window.GetRanges());
        }
        ASSERT_EQ(views.size(), std::size(cases));
        for (std::size_t i = views.size() - 1; i-- > 0;) {
            window.key(VK_LEFT, alt);
            EXPECT_EQ(window.GetRanges(), views[i]) << i;
        }
        EXPECT_FALSE(window.CanViewBack());
        EXPECT_FALSE(window.IsCommandEnabled(ID_ZOOM_MINUS));
        EXPECT_FALSE(window.IsRangeZoomed());
        for (std::size_t i = 1; i < views.size(); ++i)
            window.key(VK_RIGHT, alt);
        EXPECT_EQ(window.GetRanges(), views.back());
        for (std::size_t i = views.size() - 1; i-- > 0;) {
            window.key('7');
            EXPECT_EQ(window.GetRanges(), views[i]) << i;
        }
        EXPECT_FALSE(window.CanViewBack());
    }
}

TEST(MultiPlotWindow, KeepsWhatIsUnderThePointerAndThePlotsInTheirPlaces)
{
    MultiWindow window(panels());
    const CPoint p = window.inPanel(0, 0.3, 0.3);
    const CRect plot = window.GetAxis()->getPanelRect(1);
    const auto x = [&] {
        return xAtPixel(*window.GetAxis(), window.GetAxis()->getPanelRect(0), p.x);
    };
    const double before = x(), weight = window.GetAxis()->GPYtoRPY(1, p.y);
    for (int i = 0; i < 8; ++i) {
        window.wheel(p, 1, MK_CONTROL);
        window.wheel(p, 1, MK_CONTROL | MK_SHIFT);
        window.UpdateWindow();
        EXPECT_NEAR(x(), before, 0.02);
        EXPECT_NEAR(std::log10(window.GetAxis()->GPYtoRPY(1, p.y)), std::log10(weight), 0.02);
        EXPECT_GE(window.GetAxis()->getPanelRect(1).left, plot.left);
    }
}

TEST(MultiPlotWindow, GivesDragsUp)
{
    std::unique_ptr<MultiWindow> window;
    const struct {
        const char* what;
        std::function<void()> interrupt;
        int keeps = 0;  ///< what was dragged so far
    } cases[] = {
        {"Escape", [&] { window->key(VK_ESCAPE); }},
        {"right press",
         [&] {
             window->mouse(WM_RBUTTONDOWN, {200, 100}, MK_LBUTTON | MK_RBUTTON);
             window->mouse(WM_RBUTTONUP, {200, 100}, MK_LBUTTON);
         }},
        {"capture lost", [&] { CWnd::ReleaseCapture(); }, 1},
        {"another page", [&] { window->GetAxis()->setPanels(1, 1), window->ShowPage(1); }},
        {"another axis", [&] { window->SetPlot(panels(), 1); }, 1},
        {"no axis", [&] { window->SetPlot(nullptr, 0); }, 1},
        {"other data", [&] { window->DataChanged(), window->UpdateWindow(); }},
        {"closed", [&] { window->DestroyWindow(); }, 1},
        {"deleted", [&] { window.reset(); }, 1},
    };
    SetMenuAnswer([](const CMenu&, CPoint) { return ++menus, 0u; });
    for (const auto& c : cases)
        for (const int onAxis : {0, 1, 2}) {
            SCOPED_TRACE(testing::Message() << c.what << ' ' << onAxis);
            window = std::make_unique<MultiWindow>(panels());
            window->ZoomDirection(0, 5, 2);
            window->BeginView();
            window->EndView();
            const MultiRanges before = window->GetRanges();
            const CPoint from = onAxis == 1 ? window->onScale(0) : window->inPanel(0);
            if (onAxis == 2)
                window->SendMessage(WM_KEYDOWN, VK_SPACE);
            window->mouse(WM_LBUTTONDOWN, from, MK_LBUTTON);
            window->mouse(WM_MOUSEMOVE, from + CPoint(20, 25), MK_LBUTTON);
            EXPECT_EQ(window->GetRanges() == before, onAxis == 0);
            c.interrupt();
            if (window && window->GetSafeHwnd()) {
                const MultiRanges after = window->GetRanges();
                const int isNew = c.what == CString("other data");
                EXPECT_TRUE(c.keeps || isNew || after == before);
                window->mouse(WM_MOUSEMOVE, from + CPoint(60, 60), MK_LBUTTON);
                window->mouse(WM_LBUTTONUP, from + CPoint(60, 60));
                EXPECT_EQ(window->GetRanges(), after);
                EXPECT_FALSE(isNew && window->IsRangeZoomed());
            }
            EXPECT_EQ(CWnd::GetCapture(), nullptr);
        }
    EXPECT_EQ(menus, 0);
    SetMenuAnswer(nullptr);
}

TEST(MultiPlotWindow, AMiddleDragEndsWithItsAxis)
{
    for (ABAxis* const next : {static_cast<ABAxis*>(nullptr), static_cast<ABAxis*>(panels())}) {
        MultiWindow window(panels());
        window.ZoomDirection(-1, 4, 2);
        window.mouse(WM_MBUTTONDOWN, window.inPanel(0), MK_MBUTTON);
        window.mouse(WM_MOUSEMOVE, window.inPanel(0, 0.3, 0.7), MK_MBUTTON);
        EXPECT_EQ(CWnd::GetCapture(), &window);
        window.SetPlot(next, 1);
        EXPECT_EQ(CWnd::GetCapture(), nullptr);
    }
}

TEST(MultiPlotWindow, OneDragIsOneStepWhateverElseIsPressed)
{
    const struct {
        const char* what;
        std::function<void(MultiWindow&)> press;
    } cases[] = {
        {"arrow", [](MultiWindow& w) { w.key(VK_RIGHT); }},
        {"plus", [](MultiWindow& w) { w.key(VK_ADD); }},
        {"another panel", [](MultiWindow& w) { w.NextPanel(1); }},
        {"another column",
         [](MultiWindow& w) {
             w.SetPlotFocus({MultiFocusKind::scale, 1, 2, -1, -1});
         }},
    };
    for (const auto& c : cases)
        for (const int isBand : {0, 1}) {
            SCOPED_TRACE(testing::Message() << c.what << ' ' << isBand);
            auto* const axis = panels();
            axis->setPanels(2, 0);
            MultiWindow window(axis);
            window.ZoomDirection(-1, 4, 2);
            window.BeginView();
            window.EndView();
            window.UpdateWindow();
            const MultiRanges before = window.GetRanges();
            const CPoint from = isBand ? window.inPanel(0) : window.onX() + CPoint(0, 0);
            window.mouse(WM_LBUTTONDOWN, from, MK_LBUTTON);
            window.mouse(WM_MOUSEMOVE, from + CPoint(40, 0), MK_LBUTTON);
            c.press(window);
            if (isBand) {
                const CRect plot = window.GetAxis()->getPanelRect(0);
                const double left = xAtPixel(*window.GetAxis(), plot, from.x);
                window.mouse(WM_LBUTTONUP, from + CPoint(40, 0));
                EXPECT_NEAR(window.GetRanges().x.min, left, 1e-9);
                window.key('7');
            } else {
                window.key(VK_ESCAPE);
                window.mouse(WM_LBUTTONUP, from + CPoint(40, 0));
            }
            EXPECT_EQ(window.GetRanges(), before);
            window.key('7');
            EXPECT_FALSE(window.IsCommandEnabled(ID_ZOOM_MINUS));
            EXPECT_FALSE(window.CanViewBack());
        }
}

TEST(MultiPlotWindow, AHostsCurrentScaleKeepsItsRange)
{
    for (const int current : {0, 1, 2}) {
        MultiWindow window(panels());
        window.GetAxis()->setCurrentScale(current);
        const MultiRanges before = window.GetRanges();
        window.wheel(window.inPanel(1), 1, MK_CONTROL);
        EXPECT_EQ(changed(before, window.GetRanges()), std::set<int>{-1});
        window.BeginView();
        window.EndView();
        window.ZoomDirection(0, 5, 2);
        EXPECT_EQ(changed(before, window.GetRanges()), (std::set<int>{-1, 0}));
        EXPECT_EQ(window.GetAxis()->getCurrentScale(), current);
        window.key(VK_LEFT, alt);
        window.key(VK_LEFT, alt);
        EXPECT_EQ(window.GetRanges(), before);
    }
}

TEST(MultiPlotWindow, OtherDataKeepTheRangesThatTheHostGave)
{
    const struct {
        const char* what;
        std::function<void(A2DAxisMulti&)> change;
        std::vector<TMnMx> ranges;  ///< unset: not looked at
    } cases[] = {
        {"none", [](A2DAxisMulti&) {}, {{1, 9}, {1, 1000}, {-180, 180}}},
        {"a scale goes",
         [](A2DAxisMulti& a) {
             a.deleteGraph(a.childs()(1));
             a.deleteScale(1);
         },
         {{1, 9}, {-180, 180}}},
        {"one changes",
         [](A2DAxisMulti& a) {
             AYScale scale = a.getScale(2);
             scale.range = {-360, 360};
             a.setScale(2, scale);
         },
         {{1, 9}, {1, 1000}, {-360, 360}}},
        {"the first is given",
         [](A2DAxisMulti& a) {
             AYScale scale = a.getScale(0);
             scale.range = {0, 20};
             a.setScale(0, scale);
         },
         {{0, 20}, {1, 1000}, {-180, 180}}},
    };
    for (const auto& c : cases)
        for (const int drawnBetween : {0, 1}) {
            SCOPED_TRACE(testing::Message() << c.what << ' ' << drawnBetween);
            MultiWindow window(panels());
            window.ZoomDirection(2, 0, 4);
            c.change(*window.GetAxis());
            if (drawnBetween) {
                window.ContentChanged();
                window.UpdateWindow();
            }
            window.DataChanged();
            window.UpdateWindow();
            EXPECT_EQ(window.GetRanges().y, c.ranges);
            EXPECT_EQ(window.GetWholeRanges().y, c.ranges);
        }
}

TEST(MultiPlotWindow, MoreOfTheSameKeepsTheView)
{
    MultiWindow window(panels());
    window.GetAxis()->setPanels(1, 1);
    window.ContentChanged();
    window.ShowPage(1);
    window.ZoomDirection(2, 0, 4);
    window.BeginView();
    window.EndView();
    window.SetPlotFocus({MultiFocusKind::curve, 1, 2, 2, 5});
    const MultiRanges before = window.GetRanges();
    const MultiFocus focus = window.GetPlotFocus();
    static double moreX[] = {1, 5, 20}, moreY[] = {1, 50, 2};
    window.FillAxis([&] {
        A2DAxisMulti& axis = *window.GetAxis();
        axis.deleteGraph(axis.childs()(0));
        AGraph* const more =
            new AGraphXYLine(&axis, moreX, moreY, 3, nullptr, PS_SOLID, 1, RGB(0, 90, 180), 0);
        axis.setScaleOf(more, 0);
        AYScale scale = axis.getScale(0);
        scale.range = {};
        axis.setScale(0, scale);
        scale = axis.getScale(2);
        scale.range = {-200, 200};
        axis.setScale(2, scale);
        axis.setMinMax({});
    });
    window.UpdateWindow();
    EXPECT_EQ(window.GetRanges().x, (TMnMx{1, 20}));
    EXPECT_EQ(window.GetRanges().y[0], (TMnMx{1, 50}));
    EXPECT_EQ(window.GetRanges().y[2], before.y[2]);
    EXPECT_EQ(window.GetWholeRanges().y[2], (TMnMx{-200, 200}));
    EXPECT_EQ(window.GetWholeRange().xMax, 20);
    EXPECT_EQ(window.GetAxis()->getPage(), 1);
    EXPECT_EQ(window.GetPlotFocus().panel, focus.panel);
    EXPECT_TRUE(window.CanViewBack());
    window.ViewBack();
    EXPECT_EQ(window.GetRanges().y[2], (TMnMx{-200, 200}));  // all of it is more now
    window.ViewForward();
    EXPECT_EQ(window.GetRanges().y[2], before.y[2]);
    window.key('7');
    EXPECT_EQ(window.GetRanges().y[2], (TMnMx{-200, 200}));
    window.SetPlotFocus({MultiFocusKind::scale, 1, 2, -1, -1});
    window.ZoomFocus(2);
    EXPECT_NEAR(window.GetRanges().y[2].max, 100, 1);
}

TEST(MultiPlotWindow, MayGoOrGetAnotherAxisWhileItTellsOfARange)
{
    for (const int gone : {0, 1})
        for (const int how : {0, 1, 2}) {
            auto* const window = new MultiWindow(panels());
            window->onRange = [&] { gone ? delete window : window->SetPlot(panels(), 1); };
            if (how == 0)
                window->wheel(window->inPanel(0), 1, MK_CONTROL);
            else if (how == 1)
                window->drag(window->inPanel(0), window->inPanel(0, 0.8));
            else
                window->SendMessage(WM_KEYDOWN, VK_ADD);
            EXPECT_EQ(CWnd::GetCapture(), nullptr);
            if (!gone)
                delete window;
        }
}

TEST(MultiPlotWindow, TellsWhatComesToLieUnderTheRestingPointer)
{
    MultiWindow window(panels());
    window.GetAxis()->setPanels(1, 1);
    window.UpdateWindow();
    const CPoint p = window.inPanel(0, 0.2);
    window.mouse(WM_MOUSEMOVE, p);
    const struct {
        const char* what;
        std::function<void()> act;
    } cases[] = {{"a key", [&] { window.key(VK_ADD); }},
                 {"back", [&] { window.ViewBack(); }},
                 {"a wheel", [&] { window.wheel(p, 1, MK_CONTROL | MK_SHIFT); }},
                 {"a range",
                  [&] {
                      window.ShowRanges({{2, 3}, {}});
                  }},
                 {"all", [&] { window.key('0'); }},
                 {"a page", [&] { window.key(VK_NEXT); }},
                 {"more", [&] { window.FillAxis([] {}); }}};
    for (const auto& c : cases) {
        window.statuses.clear();
        c.act();
        ASSERT_FALSE(window.statuses.empty()) << c.what;
        const MultiStatus now = statusAt(*window.GetAxis(), p);
        EXPECT_EQ(window.statuses.back().x, now.x) << c.what;
        EXPECT_EQ(window.statuses.back().panel, now.panel) << c.what;
        EXPECT_EQ(window.GetLineAt(), now.x) << c.what;
    }
    // the point that keys walk to is told last, though it moves what is under the pointer
    window.ShowRanges({{1, 2}, {}});
    window.SetPlotFocus({MultiFocusKind::curve, 1, 2, 2, 1});
    window.key(VK_END);
    EXPECT_EQ(window.statuses.back().x, 8);
    window.SendMessage(WM_MOUSELEAVE);
    window.statuses.clear();
    window.key(VK_SUBTRACT);
    EXPECT_TRUE(window.statuses.empty());
}

TEST(MultiPlotWindow, ShowsALineAtThePointerInAllPanelsWithoutDrawingThePlot)
{
    MultiWindow window(panels());
    window.SetFocus();
    const CPoint p = window.inPanel(0, 0.25, 0.5);
    const auto columnAt = [&](int panel) {
        window.UpdateWindow();
        CBitmap bitmap;
        bitmap.CreateBitmap(500, 400, 1);
        CMemoryDC memory(bitmap);
        const CWindowDC own(&window);
        memory.BitBlt(0, 0, 500, 400, &own, 0, 0, SRCCOPY);
        const CRect rect = window.GetAxis()->getPanelRect(panel);
        int same = 0;
        for (int y = rect.top + 3; y < rect.bottom - 3; ++y)
            same += memory.GetPixel(p.x, y) == RGB(96, 96, 96);
        return same == rect.Height() - 6;
    };
    const int drawings = window.contentDrawings();
    for (const int shown : {1, 0, 1}) {
        if (shown)
            window.mouse(WM_MOUSEMOVE, p);
        else
            window.SendMessage(WM_MOUSELEAVE);
        EXPECT_EQ(columnAt(0), shown);
        EXPECT_EQ(columnAt(1), shown);
        EXPECT_EQ(window.statuses.back().nearest.size(), shown ? 3u : 0u);
    }
    EXPECT_EQ(window.contentDrawings(), drawings);
    window.SetPointerLine(0);
    EXPECT_FALSE(columnAt(0));
    window.mouse(WM_MOUSEMOVE, p);
    EXPECT_TRUE(std::isnan(window.GetLineAt()));
}

TEST(MultiPlotWindow, DrawsThePanelOfAChangedGraphAlone)
{
    MultiWindow window(panels());
    AGraph* const graph = window.GetAxis()->childs()(2);
    const auto pixels = [&] {
        window.UpdateWindow();
        CBitmap bitmap;
        bitmap.CreateBitmap(500, 400, 1);
        CMemoryDC memory(bitmap);
        const CWindowDC own(&window);
        memory.BitBlt(0, 0, 500, 400, &own, 0, 0, SRCCOPY);
        return std::vector<std::uint32_t>(bitmap.bits(), bitmap.bits() + 500 * 400);
    };
    const auto before = pixels();
    for (const double value : {-100., 20.}) {
        phases[2] = value;
        const int drawings = window.contentDrawings();
        window.GraphChanged(graph);
        const auto patched = pixels();
        EXPECT_EQ(window.contentDrawings(), drawings);
        window.ContentChanged();
        EXPECT_EQ(patched, pixels());
        EXPECT_EQ(patched == before, value == 20);
    }
    window.GetAxis()->deleteGraph(graph);
    window.GraphChanged(graph);
    EXPECT_NE(pixels(), before);
}

TEST(MultiPlotWindow, TellsScreenReadersWhatKeysReach)
{
    static std::vector<AccessId> heard;
    const auto listener = SetAccessListener([](unsigned event, HWND, AccessId part) {
        if (event == EVENT_OBJECT_FOCUS || event == EVENT_OBJECT_VALUECHANGE)
            heard.push_back(part);
    });
    MultiWindow window(panels());
    window.SetFocus();
    const struct {
        int key, modifiers;
        const char *name, *value;
    } cases[] = {
        {VK_TAB, 0, "Amplitude", "1 to 9 Jy"},
        {VK_TAB, 0, "Amplitude", "Point 4 of 8: 4.00, 8 Jy"},
        {VK_RIGHT, 0, "Amplitude", "Point 5 of 8: 5.00, 3 Jy"},
        {VK_END, 0, "Amplitude", "Point 8 of 8: 8.00, 6 Jy"},
        {VK_LEFT, MK_SHIFT, "Amplitude", "Point 1 of 8: 1.00, 1 Jy"},
        {VK_TAB, 0, "Weight", "1 to 1000, logarithmic"},
        {VK_TAB, MK_SHIFT, "Amplitude", "Point 4 of 8: 4.00, 8 Jy"},
        {VK_F6, 0, "Panel 2 of 2", ""},
        {VK_TAB, 0, "Phase", "-180 to 180 deg, downwards"},
        {VK_F6, MK_SHIFT, "Panel 1 of 2", ""},
    };
    AccessSource* const source = window.GetAccess();
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.key << ' ' << c.name);
        window.key(c.key, c.modifiers);
        window.UpdateWindow();
        AccessPart part;
        ASSERT_TRUE(source->GetAccessPart(source->GetAccessFocus(), part));
        EXPECT_EQ(heard.back(), source->GetAccessFocus());
        EXPECT_EQ(part.name, c.name);
        EXPECT_EQ(part.value, c.value);
        EXPECT_TRUE(part.state & STATE_SYSTEM_FOCUSED);
        EXPECT_FALSE(part.rect.IsRectEmpty());
    }
    window.key(VK_F6, MK_SHIFT);
    EXPECT_EQ(window.left, -1);
    for (const AccessId id : source->GetAccessChildren()) {
        AccessPart part;
        EXPECT_TRUE(source->AccessSetFocus(id));
        EXPECT_TRUE(source->GetAccessPart(id, part));
        EXPECT_EQ(source->GetAccessFocus(), id);
    }
    window.GetAxis()->setPanels(1, 1);
    window.ContentChanged();
    for (const int key : {VK_NEXT, VK_NEXT, VK_PRIOR, VK_PRIOR}) {
        window.key(key);
        EXPECT_EQ(window.GetAxis()->getPage(), key == VK_NEXT);
        EXPECT_EQ(window.GetPlotFocus().panel, key == VK_NEXT);
    }
    SetAccessListener(listener);
}

TEST(MultiPlotWindow, TakesAnyAxis)
{
    const auto many = [](int scales, int inOnePanel) {
        auto* const axis = new A2DAxisMulti(1, 1, nullptr, 0);
        for (int i = 0; i < scales; ++i)
            axis->addScale({"", {0, 1}, 1, inOnePanel ? 0 : i});
        return axis;
    };
    auto* const odd = panels();
    for (const TMnMx& range : {TMnMx{5, 5}, TMnMx{9, 1}, TMnMx{-HUGE_VAL, 1}, TMnMx{0, NAN}}) {
        AYScale scale{"", range, odd->getScaleCount() % 2, 1};
        scale.weight = 0;
        odd->addScale(scale);
    }
    AYScale empty = odd->getScale(2);
    empty.weight = 0;
    odd->setScale(2, empty);
    for (ABAxis* const axis :
         {static_cast<ABAxis*>(new A2DAxis(1, 1, nullptr, 0)), static_cast<ABAxis*>(many(0, 0)),
          static_cast<ABAxis*>(many(1, 1)), static_cast<ABAxis*>(many(1000, 0)),
          static_cast<ABAxis*>(many(1000, 1)), static_cast<ABAxis*>(odd)}) {
        MultiWindow window(axis);
        for (const int key :
             {VK_TAB, VK_TAB, VK_ADD, VK_F6, VK_RIGHT, VK_UP, VK_NEXT, int{'0'}, int{'7'}})
            window.key(key);
        for (const CPoint p : {CPoint(250, 150), CPoint(10, 200), CPoint(250, 395)}) {
            window.wheel(p, 1, MK_CONTROL);
            window.drag(p, p + CPoint(30, 40));
            window.mouse(WM_LBUTTONDBLCLK, p);
            window.UpdateWindow();
        }
        if (window.GetAxis() && window.GetAxis()->getScaleCount() > 1) {
            window.GetAxis()->deleteScale(1);
            window.UpdateWindow();
            window.key(VK_LEFT, alt);
        }
    }
}

TEST(SavedAxis, IsOfTheKindThatTheNameEndsIn)
{
    const struct {
        const char* name;
        CSize size;
        const char* start;  ///< of the file; "": there is none
    } cases[] = {{"axis.png", {300, 200}, "\x89PNG"}, {"axis.svg", {300, 200}, "<?xml"},
                 {"axis.pdf", {300, 200}, "%PDF"},    {"none.png", {0, 200}, ""},
                 {"none.pdf", {300, 40000}, ""},      {"no/folder.png", {300, 200}, ""}};
    for (const auto& c : cases) {
        const std::unique_ptr<A2DAxisMulti> axis(panels());
        CString error;
        const std::string file = testing::TempDir() + c.name, start = c.start;
        EXPECT_EQ(SaveAxis(*axis, c.size, file, error), !start.empty()) << c.name;
        EXPECT_EQ(error.empty(), !start.empty()) << error;
        std::string read(start.size(), 0);
        std::ifstream(file, std::ios::binary).read(read.data(), std::ssize(read));
        EXPECT_EQ(read, start) << c.name;
    }
}
