#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/calibration/windows/ABaselineWnd.h"
#include "pavane/calibration/windows/AClosureWnd.h"
#include "platform/messages.h"
#include "tests/calibration/made_data.h"

namespace pavane
{

namespace
{

struct Opened {
    AUVXFile file;
    std::vector<UvBaseline> baselines;
    explicit Opened(const std::string& name, const std::vector<double>& seconds = {0, 2, 4, 6})
    {
        const std::vector<MadeGroup> groups = madeGroups(5, seconds);
        for (std::size_t i = 0; i < 10; ++i)
            baselines.push_back({1, groups[i].a, groups[i].b, 4});
        std::string error;
        EXPECT_TRUE(file.open(savedData(name, groups), error)) << error;
    }
};

struct PiecesOfBaselines : ABaselineWnd {
    using ABaselineWnd::readMore;
};

/// Three points, of which there is always more as long as something is left.
struct HeldChart : AChartWnd {
    int isLeft = 1, charts = 0;
    double ReadDone() const override { return 0; }
    int readMore(std::string&) override { return isLeft; }
    PanelChart makeChart() override
    {
        ++charts;
        PanelChart chart;
        chart.panels.push_back({"", {{"", 0, 10, 0, {{{0, 1, 2}, {1, 2, 3}, {}, 1, 0}}}}});
        return chart;
    }
    using AChartWnd::beginReading;
    void mouse(unsigned message, CPoint p)
    {
        SendMessage(message, message == WM_MBUTTONDOWN ? MK_MBUTTON : MK_LBUTTON,
                    MAKELPARAM(p.x, p.y));
    }
};

int make(AChartWnd& window)
{
    return window.Create(window.GetWndClassName(), "", WS_OVERLAPPEDWINDOW, CRect(0, 0, 700, 600),
                         nullptr, 0);
}

}  // namespace

TEST(ChartWindows, PagesOfClosurePhases)
{
    Opened opened("closure_window.uvfits");
    AClosureWnd window;
    ASSERT_TRUE(make(window));
    window.SetPanelsOfPage(4);
    window.SetData(&opened.file, closureTriangles(telescopesOf(opened.baselines), opened.baselines),
                   {}, {}, madeModel());
    EXPECT_TRUE(window.IsReading());
    window.ReadAll();
    EXPECT_FALSE(window.IsReading());
    EXPECT_EQ(window.ReadError(), "");
    ASSERT_TRUE(window.GetAxis());
    window.ShowWindow(SW_SHOW);
    window.UpdateWindow();
    EXPECT_EQ(window.GetAxis()->getPanelCount(), 10);
    EXPECT_EQ(window.GetAxis()->getPages(), 3);
    const CString caption = window.GetAxis()->getPanelCaption(0);
    EXPECT_EQ(caption.substr(0, 5), "1-2-3");
    EXPECT_NE(caption.find("\u03c7\u00b2 "), CString::npos) << caption;
    const int pages[] = {1, 2, 0};
    for (const int page : pages) {
        window.SendMessage(WM_KEYDOWN, 'N', 0);
        EXPECT_EQ(window.GetAxis()->getPage(), page);
    }
    window.ShowNext(-1);
    EXPECT_EQ(window.GetAxis()->getPage(), 2);
    window.SetPanelsOfPage(1000);
    EXPECT_EQ(window.GetPanelsOfPage(), AChartWnd::mostPanels);
    window.UpdateWindow();
    EXPECT_EQ(window.GetAxis()->getPages(), 1);
    window.SetData(nullptr);
    EXPECT_FALSE(window.GetAxis());
    window.ShowNext(1);
    window.DestroyWindow();
}

TEST(ChartWindows, NextBaselinesAreThoseOfTheNextTelescope)
{
    Opened opened("baseline_window.uvfits");
    ABaselineWnd window;
    ASSERT_TRUE(make(window));
    for (const BaselinePlot plot : {BaselinePlot::time, BaselinePlot::channels}) {
        window.SetData(&opened.file, opened.baselines, plot, {}, madeModel());
        window.ReadAll();
        ASSERT_TRUE(window.GetAxis());
        const struct {
            int step, telescope, panels;
        } cases[] = {{1, 0, 4}, {1, 1, 4}, {-1, 0, 4}, {-1, -1, 10}, {-1, 4, 4}, {1, -1, 10}};
        for (const auto& c : cases) {
            window.ShowNext(c.step);
            EXPECT_EQ(window.GetTelescope(), c.telescope);
            EXPECT_EQ(window.GetAxis()->getPanelCount(), c.panels);
        }
    }
    window.SetPanelsOfPage(1);
    window.ShowNext(-1);
    EXPECT_EQ(window.GetAxis()->getPage(), 9);
    // closed while there is something to read
    window.SetData(&opened.file, opened.baselines);
    window.DestroyWindow();
}

TEST(ChartWindows, WhatIsReadIsShownInTheViewThatWasChosen)
{
    Opened opened("reading_window.uvfits");
    for (const BaselinePlot plot : {BaselinePlot::time, BaselinePlot::channels}) {
        ABaselineWnd window;
        ASSERT_TRUE(make(window));
        window.SetPanelsOfPage(3);
        window.SetData(&opened.file, opened.baselines, plot);
        window.StopReading();  // before anything was read
        EXPECT_TRUE(window.IsStopped());
        window.ShowWindow(SW_SHOW);
        window.UpdateWindow();
        ASSERT_TRUE(window.GetAxis());
        EXPECT_EQ(window.GetAxis()->getPages(), 4);
        window.ShowPage(2);
        window.ZoomDirection(1, 45, 2);
        const TMnMx zoomed = window.GetRanges().y[1];
        EXPECT_EQ(zoomed, (TMnMx{-67.5, 112.5}));
        window.ResumeReading();
        EXPECT_TRUE(window.IsReading());
        window.ReadAll();
        window.UpdateWindow();
        EXPECT_FALSE(window.IsStopped() || window.IsReading());
        EXPECT_EQ(window.GetRanges().y[1], zoomed);
        EXPECT_LT(window.GetRanges().x.min, window.GetRanges().x.max);
        EXPECT_EQ(window.GetAxis()->getPage(), 2);
        EXPECT_TRUE(window.CanViewBack());
        window.SetPanelsOfPage(7);
        EXPECT_EQ(window.GetAxis()->getPage(), 0);  // of panel 6
        EXPECT_EQ(window.GetAxis()->getPages(), 2);
        EXPECT_EQ(window.GetRanges().y[1], zoomed);
        window.ShowNext(1);
        window.SetPanelsOfPage(1);
        EXPECT_EQ(window.GetTelescope(), -1);
        EXPECT_EQ(window.GetAxis()->getPages(), 10);
        window.DestroyWindow();
    }
}

TEST(ChartWindows, APartOfABandpassIsShown)
{
    std::vector<double> seconds(1500);  // more than is read at once
    for (std::size_t i = 0; i < seconds.size(); ++i)
        seconds[i] = 2.0 * static_cast<double>(i);
    Opened opened("long_window.uvfits", seconds);
    for (const BaselinePlot plot : {BaselinePlot::time, BaselinePlot::channels}) {
        PiecesOfBaselines window;
        ASSERT_TRUE(make(window));
        window.SetData(&opened.file, opened.baselines, plot);
        const auto points = [&] {
            const CurvePoints found = window.GetAxis()->childs()(1)->getPoints();
            EXPECT_TRUE(found.n > 0 && found.y[0] > 0);
            return found.n;
        };
        std::string error;
        ASSERT_TRUE(window.readMore(error));
        window.StopReading();
        EXPECT_TRUE(window.IsStopped());
        EXPECT_GT(window.ReadDone(), 0);
        EXPECT_LT(window.ReadDone(), 1);
        const std::int64_t part = points();
        EXPECT_LT(part, plot == BaselinePlot::time ? 1500 : 5);
        window.ResumeReading();
        window.ReadAll();
        EXPECT_EQ(points(), plot == BaselinePlot::time ? 1500 : 4);
        window.DestroyWindow();
    }
}

TEST(ChartWindows, ADragMayOutlastReading)
{
    constexpr unsigned readTimer = 40;
    for (const unsigned button : {WM_LBUTTONDOWN, WM_MBUTTONDOWN})
        for (const int isGivenUp : {0, 1}) {
            HeldChart window;
            ASSERT_TRUE(make(window));
            window.ShowWindow(SW_SHOW);
            window.beginReading();
            window.StopReading();
            window.ResumeReading();
            window.UpdateWindow();
            window.ZoomDirection(0, 5, 4);
            const TMnMx zoomed = window.GetRanges().y[0];
            const CPoint from = button == WM_LBUTTONDOWN
                                    ? window.GetAxis()->getScaleRect(0).CenterPoint()
                                    : window.GetAxis()->getPanelRect(0).CenterPoint();
            window.mouse(button, from);
            window.mouse(WM_MOUSEMOVE, {from.x, from.y + 30});
            window.isLeft = 0;
            const int charts = window.charts;
            window.SendMessage(WM_TIMER, readTimer);
            EXPECT_TRUE(window.IsReading());
            EXPECT_EQ(window.charts, charts);
            EXPECT_EQ(CWnd::GetCapture(), &window);
            window.mouse(WM_MOUSEMOVE, {from.x, from.y + 60});
            TMnMx dragged = window.GetRanges().y[0];
            EXPECT_GT(dragged.min, zoomed.min);
            if (isGivenUp) {
                window.SendMessage(WM_KEYDOWN, VK_ESCAPE);
                dragged = zoomed;
            }
            window.mouse(button == WM_LBUTTONDOWN ? WM_LBUTTONUP : WM_MBUTTONUP, from);
            EXPECT_EQ(CWnd::GetCapture(), nullptr);
            EXPECT_TRUE(window.IsReading());
            window.SendMessage(WM_TIMER, readTimer);
            EXPECT_FALSE(window.IsReading() || window.IsStopped());
            EXPECT_EQ(window.charts, charts + 1);
            EXPECT_EQ(window.GetRanges().y[0], dragged);
            window.DestroyWindow();
        }
}

}  // namespace pavane
