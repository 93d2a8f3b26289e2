// Large collections of areas in data values over a map of 4096 x 4096 cells: load, hit test, redraw
// of a window of 1200 x 800, mask, steps of undo, and one move of a drag of all of them in a window
// that shows the map. Time should grow with the number of areas.

#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPEllipseTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "platform/platform.h"
#include "platform/window_dc.h"
#include "tessel/ABitMatrix.h"
#include "tessel/AFile.h"
#include "tessel/AMatrix.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace
{

using namespace pavane;

constexpr int mapSize = 4096;
const TMinMax mapRange{2048, -2047, -2048, 2047, 0, 1};  // values fall with the column

/// A map window with its axis.
struct Plot {
    Plot()
    {
        axis.setGraphRect({60, 20, 1180, 760});
        axis.setMinMax({-2047, 2048, -2048, 2047, 0, 1});
    }
    ABAxis axis{-1, 1, nullptr, 0};
};

/// Places spread over the map without a pattern that a grid could follow.
APoint<double> place(int i)
{
    const double golden = 0.6180339887498949;
    const double x = std::fmod(i * golden, 1.0);
    const double y = std::fmod(i * 0.7548776662466927, 1.0);
    return {-2000 + 4000 * x, -2000 + 4000 * y};
}

ABTracker* area(int i)
{
    const APoint<double> p = place(i);
    const double size = 4 + i % 13;
    if (i % 3 == 0) {
        auto* const rect = new ARPRectTracker;
        rect->SetRect({p.x, p.y, p.x + size, p.y + size});
        return rect;
    }
    if (i % 3 == 1) {
        auto* const ellipse = new ARPEllipseTracker;
        ellipse->SetRect({p.x, p.y, p.x + size, p.y + 2 * size});
        ellipse->SetAngle(i * 0.01);
        return ellipse;
    }
    auto* const polygon = new ARPAreaTracker;
    for (const APoint<double> corner : {APoint<double>{0, 0}, {1, 0.2}, {0.8, 1}, {0.1, 0.7}})
        (void)polygon->points().Add({p.x + corner.x * size, p.y + corner.y * size});
    polygon->SetStyle(polygon->GetStyle() | trackerReady);
    return polygon;
}

void fill(ATrackerArrayInAxis& areas, int n, int active = 0)
{
    areas.BeginEdits("fill");
    for (int i = 0; i < n; ++i) {
        ABTracker* const tracker = area(i);
        tracker->SetActive(active);
        (void)areas.Add(tracker, 0);
    }
    areas.EndEdits(nullptr);
    areas.history().clear();
}

void load(benchmark::State& state, int n)
{
    const std::string name = "/tmp/pavane-bench-areas-" + std::to_string(::getpid());
    {
        ATrackerArrayInAxis areas;
        fill(areas, n);
        AFile out(name, AFile::writeOnly | AFile::create);
        if (!areas.Store(out))
            state.SkipWithError("cannot store");
    }
    for (auto _ : state) {
        ATrackerArrayInAxis areas;
        AFile in(name, AFile::readOnly);
        if (!areas.Load(in) || areas.count() != n)
            state.SkipWithError("cannot load");
    }
    std::remove(name.c_str());
}

void hitTest(benchmark::State& state, int n)
{
    Plot plot;
    ATrackerArrayInAxis areas;
    areas.SetAxis(&plot.axis);
    fill(areas, n);
    CPoint p(60, 20);
    benchmark::DoNotOptimize(areas.TopmostAt(p, nullptr));
    for (auto _ : state) {
        p = {60 + (p.x * 7 + 13) % 1120, 20 + (p.y * 5 + 31) % 740};
        benchmark::DoNotOptimize(areas.TopmostAt(p, nullptr));
    }
}

void drawAll(benchmark::State& state, int n, int active)
{
    Plot plot;
    ATrackerArrayInAxis areas;
    areas.SetAxis(&plot.axis);
    fill(areas, n, active);
    CBitmap bitmap;
    (void)bitmap.CreateBitmap(1200, 800, 1);
    CMemoryDC dc(bitmap);
    for (auto _ : state)
        areas.Draw(&dc, nullptr);
}

void redraw(benchmark::State& state, int n) { drawAll(state, n, 0); }

/// All areas active, as new trackers are.
void redrawActive(benchmark::State& state, int n) { drawAll(state, n, 1); }

void redrawAfterZoom(benchmark::State& state, int n)
{
    Plot plot;
    ATrackerArrayInAxis areas;
    areas.SetAxis(&plot.axis);
    fill(areas, n);
    CBitmap bitmap;
    (void)bitmap.CreateBitmap(1200, 800, 1);
    CMemoryDC dc(bitmap);
    int odd = 0;
    for (auto _ : state) {
        odd = !odd;
        plot.axis.setMinMax({-2047.0 - odd, 2048, -2048, 2047, 0, 1});
        areas.Draw(&dc, nullptr);
    }
}

void mask(benchmark::State& state, int n)
{
    ATrackerArrayInAxis areas;
    fill(areas, n);
    ABitMatrix bits(mapSize, mapSize);
    for (auto _ : state)
        areas.FillMatrix(bits, mapSize, mapSize, mapRange);
    if (!bits.count())
        state.SkipWithError("empty mask");
}

/// One move of a polygon of four points among n areas, with its step of undo.
void edit(benchmark::State& state, int n)
{
    ATrackerArrayInAxis areas;
    fill(areas, n);
    ShapeValues shape;
    (void)areas.GetShape(n / 3 * 3 - 1, shape);
    for (auto _ : state) {
        shape.points[0].x += 0.25;
        for (APoint<double>& p : shape.points)
            p.y += 0.125;
        if (!areas.SetShape(nullptr, n / 3 * 3 - 1, shape))
            state.SkipWithError("not changed");
    }
    state.counters["bytes a step"] = static_cast<double>(areas.history().bytesUsed()) /
                                     static_cast<double>(areas.history().steps());
}

/// Ten thousand steps back and forth; the time of one.
void undo(benchmark::State& state, int n)
{
    ATrackerArrayInAxis areas;
    fill(areas, n);
    ShapeValues shape;
    for (int k = 0; k < 10000; ++k) {
        const int i = (k * 37) % n;
        (void)areas.GetShape(i, shape);
        shape.rect = {shape.rect.left + 1, shape.rect.top, shape.rect.right + 1, shape.rect.bottom};
        for (APoint<double>& p : shape.points)
            p.x += 1;
        (void)areas.SetShape(nullptr, i, shape);
    }
    int back = 1;
    for (auto _ : state)
        if (back ? !areas.Undo(nullptr) : !areas.Redo(nullptr))
            back = !back;
}

/// A window on a map that notes the time when a message comes between the moves of a drag.
struct DragWindow : AAxisWnd {
    DragWindow() : cells(mapSize, mapSize), access(cells)
    {
        for (int r = 0; r < mapSize; ++r)
            for (int c = 0; c < mapSize; ++c)
                cells(r, c) = static_cast<float>(r % 97 + c % 89);
        axis = new A2DAxis(-1, 1, nullptr, 0);
        auto* const map = new AColorsGraph(axis, access, mapRange, 0);
        Create("", "map", WS_OVERLAPPEDWINDOW | WS_VISIBLE, CRect(0, 0, 1200, 800), nullptr, 0);
        SetSquareCells(0);
        SetAxis(axis, 1);
        SetMap(map);
    }
    ~DragWindow() override { DestroyWindow(); }
    LRESULT WindowProc(unsigned message, WPARAM w, LPARAM l) override
    {
        if (message == WM_USER)
            noted.push_back(std::chrono::steady_clock::now());
        return AAxisWnd::WindowProc(message, w, l);
    }
    void post(unsigned message, CPoint p, unsigned keys = MK_LBUTTON)
    {
        (void)PostMessage(message, keys, MAKELPARAM(p.x, p.y));
    }
    AMatrix<float> cells;
    AFloatMatrixAccess access;
    A2DAxis* axis;
    std::vector<std::chrono::steady_clock::time_point> noted;
};

/// All areas are selected and go to and fro with the pointer.
void dragAll(benchmark::State& state, int n)
{
    constexpr int moves = 10;
    DragWindow window;
    ATrackerArrayInAxis& areas = *window.GetTrackers();
    fill(areas, n);
    areas.SelectAll(&window);
    window.UpdateWindow();
    ShapeValues shape;
    (void)areas.GetShape(n - 1, shape);
    const APoint<double> in = shape.points.empty()
                                  ? APoint<double>{shape.rect.left + 2, shape.rect.top + 2}
                                  : APoint<double>{shape.points[0].x / 2 + shape.points[2].x / 2,
                                                   shape.points[0].y / 2 + shape.points[2].y / 2};
    const CPoint press(window.axis->RPXtoGPX(in.x), window.axis->RPYtoGPY(in.y));
    for (auto _ : state) {
        window.noted.clear();
        window.post(WM_MOUSEMOVE, {press.x + 2, press.y + 2});
        window.post(WM_USER, {});
        for (int i = 0; i < moves; ++i)
            window.post(WM_MOUSEMOVE, {press.x + (i % 2 ? 3 : -3), press.y + i % 3});
        window.post(WM_USER, {});
        (void)window.PostMessage(WM_KEYDOWN, VK_ESCAPE, 0);
        window.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(press.x, press.y));
        if (window.noted.size() != 2 || areas.lastDragEnd() != DragEnd::escaped)
            return state.SkipWithError("no drag");
        const std::chrono::duration<double> took = window.noted[1] - window.noted[0];
        state.SetIterationTime(took.count() / moves);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    const struct {
        const char* name;
        void (*run)(benchmark::State&, int);
        benchmark::TimeUnit unit;
    } jobs[] = {{"load", load, benchmark::kMillisecond},
                {"hit-test", hitTest, benchmark::kMicrosecond},
                {"redraw", redraw, benchmark::kMillisecond},
                {"redraw-active", redrawActive, benchmark::kMillisecond},
                {"redraw-after-zoom", redrawAfterZoom, benchmark::kMillisecond},
                {"mask-4k", mask, benchmark::kMillisecond},
                {"edit", edit, benchmark::kMicrosecond},
                {"undo", undo, benchmark::kMicrosecond}};
    const auto nameOf = [](const char* job, int n) {
        return "areas/" + std::string(job) + "-" + std::to_string(n) + "/pavane";
    };
    for (const auto& job : jobs)
        for (const int n : {5000, 10000, 20000})
            benchmark::RegisterBenchmark(nameOf(job.name, n).c_str(), job.run, n)->Unit(job.unit);
    // as many as have soft outlines
    benchmark::RegisterBenchmark(nameOf("redraw", 500).c_str(), redraw, 500)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(nameOf("redraw-active", 500).c_str(), redrawActive, 500)
        ->Unit(benchmark::kMillisecond);
    for (const int n : {5000, 10000, 20000})
        benchmark::RegisterBenchmark(nameOf("drag-all", n).c_str(), dragAll, n)
            ->Unit(benchmark::kMillisecond)
            ->UseManualTime();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShutdownPlatform();
    return 0;
}
