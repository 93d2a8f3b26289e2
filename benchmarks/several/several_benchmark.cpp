// Two maps of 4 k in one window: from the command of a key to the pixels of the other map in the
// window, and the same after each step of a linked zoom.

#include "apps/view/MainWindow.h"
#include "apps/view/several/maps_menu.h"
#include "pavane/axes/ABAxis.h"
#include "platform/messages.h"
#include "platform/platform.h"
#include "platform/profile.h"
#include "tessel/fits_map.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <random>

namespace
{

using namespace pavane;

constexpr int side = 4096;
constexpr double cell = 1e-8;  // degrees

void writeMap(const std::string& file, unsigned seed)
{
    AMatrix<float> cells(side, side);
    std::mt19937 random(seed);
    std::normal_distribution<float> noise(0, 0.1f);
    for (int i = 0; i < side * side; ++i)
        cells.data()[i] = noise(random);
    MapHeader header;
    header.axes = {{side, "RA---SIN", "deg", 187.7, side / 2.0, -cell, 0},
                   {side, "DEC--SIN", "deg", 12.4, side / 2.0, cell, 0}};
    header.hasCelestialAxes = 1;
    std::string error;
    if (!writeFitsMap(file, cells, header, error))
        std::abort();
}

void showAll()
{
    MSG message;
    while (PeekMessage(message))
        DispatchMessage(message);
}

MainWindow& window()
{
    static MainWindow* const shown = [] {
        const std::string folder = std::filesystem::temp_directory_path() / "pavane-bench-several";
        std::filesystem::create_directories(folder);
        SetProfileFile(folder + "/profile.ini");
        ViewOptions options;
        options.levels.none = 1;
        auto* const made = new MainWindow;
        if (!made->Create(options))
            std::abort();
        for (const char* name : {"/a.fits", "/b.fits"}) {
            writeMap(folder + name, static_cast<unsigned char>(name[1]));
            if (!made->AddMap(folder + name, -1))
                std::abort();
        }
        made->Show();
        made->SendMessage(WM_COMMAND, idBlinkMaps);  // draws both
        made->SendMessage(WM_COMMAND, idBlinkMaps);
        showAll();
        return made;
    }();
    return *shown;
}

void blink(benchmark::State& state)
{
    MainWindow& shown = window();
    for (auto _ : state) {
        shown.SendMessage(WM_COMMAND, idNextOfMaps);
        shown.view().UpdateWindow();
        showAll();
    }
}

void zoomBoth(benchmark::State& state)
{
    MainWindow& shown = window();
    double factor = 1.25;
    for (auto _ : state) {
        const CRect plot = shown.view().GetPlot()->getGraphRect();
        shown.view().ZoomAbout(plot.CenterPoint(), factor);
        shown.view().UpdateWindow();
        shown.viewOf(shown.maps().next(1)).PrepareContent();
        factor = 1 / factor;
    }
}

}  // namespace

BENCHMARK(blink)->Name("several/blink_4k/pavane")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(zoomBoth)
    ->Name("several/linked_zoom_4k/pavane")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

int main(int argc, char** argv)
{
    if (!InitPlatform(1, argv, PlatformUse::windows))
        return 1;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    delete &window();
    ShutdownPlatform();
    return 0;
}
