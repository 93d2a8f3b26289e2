// Windows: one move of a drag over a map, panning and zooming a big map, and the time from the
// start of pavane-view to its first picture, each beside what the toolkit or another library takes.
#include "benchmarks/peers/pointer_chain.h"
#include "benchmarks/peers/qcustomplot_map.h"
#include "benchmarks/peers/rubber_band.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/collections/tool_modes.h"
#include "platform/platform.h"
#include "tessel/AMatrix.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <memory>
#include <spawn.h>
#include <string>
#include <sys/wait.h>

extern char** environ;

namespace
{

using namespace pavane;

constexpr int windowWidth = 1200;
constexpr int windowHeight = 800;

constexpr ChainPoint middleOfTheMap = {windowWidth / 2, windowHeight / 2};

/// Made once for each size.
const AMatrix<float>& jetMap(int n)
{
    static AMatrix<float> cells;
    if (cells.rows() == n)
        return cells;
    cells = AMatrix<float>(n, n);
    for (int r = 0; r < n; ++r)
        for (int c = 0; c < n; ++c) {
            const double x = (c - n / 2.0) / n, y = (r - n / 2.0) / n;
            const double bend = y - 0.3 * x * x;
            cells(r, c) = static_cast<float>(std::exp(-400 * bend * bend - 8 * x * x) +
                                             1e-3 * std::sin(r * 12.9898 + c * 78.233));
        }
    return cells;
}

/// An axis window on a square map of n x n cells.
struct MapWindow {
    explicit MapWindow(int n) : access(jetMap(n))
    {
        axis = new A2DAxis(-1, 1, nullptr, 0);
        const TMinMax centres = {10, -10, -10, 10, unsetMinimum, unsetMaximum};
        map = new AColorsGraph(axis, access, centres, 0);
        window.Create("", "map", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                      CRect(0, 0, windowWidth, windowHeight), nullptr, 0);
        window.SetSquareCells(0);
        window.SetAxis(axis, 1);
        window.SetMap(map);
        window.UpdateWindow();
        letEventsRun();
    }
    ~MapWindow()
    {
        window.DestroyWindow();
        letEventsRun();
    }
    AFloatMatrixAccess access;
    A2DAxis* axis = nullptr;
    AColorsGraph* map = nullptr;
    AAxisWnd window;
};

/// A swing that grows, shrinks and crosses itself, as a hand does.
ChainPoint swing(int i)
{
    const double t = i * 0.05;
    return {windowWidth / 2 + static_cast<int>(300 * std::sin(t)),
            windowHeight / 2 + static_cast<int>(200 * std::sin(1.3 * t + 0.4))};
}

constexpr int movesOfADrag = 200;

void dragArea(benchmark::State& state)
{
    MapWindow shown(2048);
    for (auto _ : state) {
        shown.window.GetTrackers()->BeginMode(&shown.window, toolRect);
        state.SetIterationTime(secondsPerMove(middleOfTheMap, movesOfADrag, swing));
        if (shown.window.GetTrackers()->trackerCount() != 1) {
            state.SkipWithError("no area was drawn");
            return;
        }
        shown.window.GetTrackers()->Clear(&shown.window);
    }
}

void dragBand(benchmark::State& state)
{
    std::unique_ptr<RubberBandWindow> band;
    {
        MapWindow shown(2048);
        CBitmap picture;
        picture.CreateBitmap(windowWidth, windowHeight, 1);
        CMemoryDC dc(picture);
        shown.window.DrawPicture(dc, CRect(0, 0, windowWidth, windowHeight));
        band = std::make_unique<RubberBandWindow>(picture.bits(), windowWidth, windowHeight);
    }
    for (auto _ : state)
        state.SetIterationTime(secondsPerMove(middleOfTheMap, movesOfADrag, swing));
}

/// Moves until a range comes again: parts of a zoom take twice as long as others.
constexpr int movesOfASwing = 63;

/// The i-th range of a slow pan (`zoom` 0) or zoom, as fractions of the whole.
struct Part {
    double x0, x1, y0, y1;
};
Part partOf(int i, int zoom)
{
    const double width = zoom ? 0.2 + 0.35 * (1 + std::sin(i * 0.1)) : 0.6;
    const double x = zoom ? 0.5 - width / 2 : 0.2 + 0.2 * std::sin(i * 0.1);
    const double y = zoom ? 0.5 - width / 2 : 0.2 + 0.2 * std::cos(i * 0.1);
    return {x, x + width, y, y + width};
}

/// The two windows whose ranges are changed, each until the pixels are on the window.
struct OwnWindow : MapWindow {
    OwnWindow() : MapWindow(4096) {}
    void show(const Part& part)
    {
        const TMinMax whole = window.GetWholeRange();
        TMinMax range = whole;
        range.xMin = whole.xMin + part.x0 * (whole.xMax - whole.xMin);
        range.xMax = whole.xMin + part.x1 * (whole.xMax - whole.xMin);
        range.yMin = whole.yMin + part.y0 * (whole.yMax - whole.yMin);
        range.yMax = whole.yMin + part.y1 * (whole.yMax - whole.yMin);
        window.SetNewMinMax(range);
        window.UpdateWindow();
        letEventsRun();
    }
};

template <bool interpolates>
struct PeerWindow {
    void show(const Part& part) { map.show(part.x0, part.x1, part.y0, part.y1); }
    QCustomPlotMap map{&jetMap(4096)(0, 0), 4096, windowWidth, windowHeight, interpolates};
};

/// The first move after a map was opened, in a new window each time.
template <typename Window>
void showFirst(benchmark::State& state, int zoom)
{
    int i = 0;
    for (auto _ : state) {
        Window shown;
        const auto start = std::chrono::steady_clock::now();
        shown.show(partOf(i++, zoom));
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
}

/// Moves that are under way.
template <typename Window>
void showLater(benchmark::State& state, int zoom)
{
    Window shown;
    int i = 0;
    while (i < 3)
        shown.show(partOf(i++, zoom));
    for (auto _ : state)
        shown.show(partOf(i++, zoom));
}

template <typename Window>
void registerMoves(const std::string& who)
{
    const struct {
        const char* name;
        int zoom;
    } moves[] = {{"pan_4k", 0}, {"zoom_4k", 1}};
    for (const auto& move : moves) {
        const int zoom = move.zoom;
        benchmark::RegisterBenchmark(
            ("windows/first_" + std::string(move.name) + "/" + who).c_str(),
            [zoom](benchmark::State& state) { showFirst<Window>(state, zoom); })
            ->UseManualTime()
            ->Iterations(3)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(
            ("windows/" + std::string(move.name) + "/" + who).c_str(),
            [zoom](benchmark::State& state) { showLater<Window>(state, zoom); })
            ->Iterations(2 * movesOfASwing)
            ->Unit(benchmark::kMillisecond);
    }
}

}  // namespace

BENCHMARK(dragArea)
    ->Name("windows/drag_move/pavane")
    ->UseManualTime()
    ->Iterations(10)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(dragBand)
    ->Name("windows/drag_move/QRubberBand")
    ->UseManualTime()
    ->Iterations(10)
    ->Unit(benchmark::kMicrosecond);
int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::windows))
        return 1;
    registerMoves<OwnWindow>("pavane");
    registerMoves<PeerWindow<true>>("QCustomPlot");
    registerMoves<PeerWindow<false>>("QCustomPlot_nearest");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShutdownPlatform();
    return 0;
}
