// Grid, ticks, labels and titles of a field without its map, into a picture of 1200 x 800.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/sky/ASkyGrid.h"
#include "platform/picture.h"
#include "platform/platform.h"

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

using namespace pavane;

namespace
{

MapHeader sinField(double declination)
{
    constexpr double step = 0.003;
    MapHeader header;
    header.axes = {{1200, "RA---SIN", "deg", 123, 600.5, -step, 0},
                   {800, "DEC--SIN", "deg", declination, 400.5, step, 0}};
    header.hasCelestialAxes = 1;
    header.cd[0][0] = -step;
    header.cd[1][1] = step;
    header.equinox = 2000;
    return header;
}

/// Everything anew each time: place on the sky, lines, layout, drawing.
void draw(benchmark::State& state, const SkyFrame& frame)
{
    const MapHeader header = sinField(80);
    const MapFrame place = frameOf(header, 800, 1200);
    TMinMax range = place.centres();
    std::swap(range.xMin, range.xMax);
    for (auto _ : state) {
        SkyCoordinates sky;
        std::string error;
        (void)sky.init(header, error);
        A2DAxis axis(-1, 1, &range, 0);
        auto* const grid = new ASkyGrid(&axis, sky, place);
        grid->setFrame(frame);
        axis.setSkyGrid(grid);
        CPicture picture(1200, 800);
        picture.dc()->FillSolidRect(CRect(0, 0, 1200, 800), RGB(255, 255, 255));
        (void)picture.dc()->SetSmooth(1);
        CRect all(0, 0, 1200, 800);
        axis.draw(*picture.dc(), all);
        benchmark::DoNotOptimize(picture);
    }
}

void own(benchmark::State& state) { draw(state, {SkyFrame::System::fk5, 2000}); }
void galactic(benchmark::State& state) { draw(state, {SkyFrame::System::galactic, 2000}); }

BENCHMARK(own)->Name("sky_grid/SIN at 80/pavane")->Unit(benchmark::kMillisecond);
BENCHMARK(galactic)->Name("sky_grid/SIN at 80 galactic/pavane")->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::pictures))
        return 1;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShutdownPlatform();
    return 0;
}
