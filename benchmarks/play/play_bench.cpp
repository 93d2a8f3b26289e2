// Colours of a map in a window, from the message to the pixels: a move of palette play, another
// range, another scale, for maps of several sizes; and what a histogram tells of 4096 x 4096 cells.
#include "benchmarks/peers/pointer_chain.h"
#include "benchmarks/peers/qcustomplot_map.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/axes/maps/cells/AMapHistogram.h"
#include "pavane/axes/maps/ColorLook.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "platform/messages.h"
#include "platform/platform.h"
#include "tessel/AMatrix.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <string>

namespace
{

using namespace pavane;

constexpr int windowWidth = 1200;
constexpr int windowHeight = 800;

/// Noise and a jet; the last size is kept.
const AMatrix<float>& testMap(int n)
{
    static AMatrix<float> cells;
    if (cells.rows() == n)
        return cells;
    cells = AMatrix<float>();
    cells = AMatrix<float>(n, n);
    std::uint32_t state = 1;
    for (std::int64_t i = 0; i < cells.cells(); ++i) {
        state = state * 1664525u + 1013904223u;
        cells.data()[i] = (static_cast<float>(state >> 8) * 1e-9f - 8e-3f) * 0.1f;
    }
    for (int i = 0; i < n / 2; ++i)
        cells(n / 2 + i / 4, n / 2 + i) +=
            std::exp(-8.0f * static_cast<float>(i) / static_cast<float>(n));
    return cells;
}

struct MapWindow {
    explicit MapWindow(int n) : access(testMap(n))
    {
        auto* const axis = new A2DAxis(-1, 1, nullptr, 0);
        map = new AColorsGraph(axis, access, {10, -10, -10, 10, unsetMinimum, unsetMaximum}, 0);
        window.Create("", "map", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                      CRect(0, 0, windowWidth, windowHeight), nullptr, 0);
        window.SetSquareCells(0);
        window.SetAxis(axis, 1);
        window.SetMap(map);
        window.SetColorBar(new AAxisColorOP(*map), 1);
        window.SetPlayByMouse(1);
        show();
    }
    ~MapWindow()
    {
        window.DestroyWindow();
        letEventsRun();
    }
    void show()
    {
        window.UpdateWindow();
        letEventsRun();
    }
    void pointer(unsigned message, int i)
    {
        window.SendMessage(message, MK_RBUTTON, MAKELPARAM(400 + 7 * (i % 40), 300 + 3 * (i % 31)));
        show();
    }
    AFloatMatrixAccess access;
    AColorsGraph* map = nullptr;
    AAxisWnd window;
};

void ownMove(benchmark::State& state, int cells)
{
    MapWindow shown(cells);
    shown.pointer(WM_RBUTTONDOWN, 0);
    int i = 1;
    shown.pointer(WM_MOUSEMOVE, i++);
    for (auto unused : state)
        shown.pointer(WM_MOUSEMOVE, i++);
    shown.pointer(WM_RBUTTONUP, i);
}

void ownRange(benchmark::State& state, int cells)
{
    MapWindow shown(cells);
    ColorLook look(*shown.map);
    int i = 0;
    const auto next = [&] {
        look.range = {-1e-3 * (1 + i % 7), 0.1 + 0.01 * (i % 13)};
        ++i;
        shown.window.ShowColorLook(look);
        shown.show();
    };
    next();
    for (auto unused : state)
        next();
}

void ownScale(benchmark::State& state, int cells)
{
    MapWindow shown(cells);
    ColorLook look(*shown.map);
    int i = 0;
    const auto next = [&] {
        look.scale = ++i % 2 ? MapScaleKind::squareRoot : MapScaleKind::linear;
        shown.window.ShowColorLook(look);
        shown.show();
    };
    next();
    for (auto unused : state)
        next();
}

void peerMove(benchmark::State& state, int cells)
{
    QCustomPlotMap map(testMap(cells).data(), cells, windowWidth, windowHeight, false);
    int i = 0;
    for (auto unused : state)
        map.showColours(i++);
}

void peerRange(benchmark::State& state, int cells)
{
    QCustomPlotMap map(testMap(cells).data(), cells, windowWidth, windowHeight, false);
    int i = 0;
    for (auto unused : state) {
        map.showValues(-1e-3 * (1 + i % 7), 0.1 + 0.01 * (i % 13));
        ++i;
    }
}

void ownHistogram(benchmark::State& state, int cells)
{
    const AFloatMatrixAccess access(testMap(cells));
    for (auto unused : state) {
        AMapHistogram histogram;
        (void)histogram.set(access);
        const double p[] = {0.5, 1, 5, 50, 95, 99, 99.5};
        double values[7];
        histogram.percentiles(p, 7, values);
        auto counts = histogram.counts(histogram.least(), histogram.greatest(), 512);
        const MapNoise noise = histogram.noise();
        benchmark::DoNotOptimize(values);
        benchmark::DoNotOptimize(counts.data());
        benchmark::DoNotOptimize(noise);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 2;
    const auto add = [](const char* name, auto function, int cells, int rounds) {
        benchmark::RegisterBenchmark(name, function, cells)
            ->Iterations(rounds)
            ->Unit(benchmark::kMillisecond);
    };
    add("play/move_1k/pavane", ownMove, 1024, 40);
    add("play/range_1k/pavane", ownRange, 1024, 40);
    add("play/scale_1k/pavane", ownScale, 1024, 40);
    add("play/move_4k/pavane", ownMove, 4096, 40);
    add("play/range_4k/pavane", ownRange, 4096, 40);
    add("play/scale_4k/pavane", ownScale, 4096, 40);
    add("play/move_4k/qcustomplot", peerMove, 4096, 8);
    add("play/range_4k/qcustomplot", peerRange, 4096, 8);
    add("play/scale_4k/qcustomplot", peerRange, 4096, 8);
    add("play/histogram_4k/pavane", ownHistogram, 4096, 5);
    add("play/move_16k/pavane", ownMove, 16384, 40);
    add("play/range_16k/pavane", ownRange, 16384, 40);
    add("play/scale_16k/pavane", ownScale, 16384, 40);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShutdownPlatform();
    return 0;
}
