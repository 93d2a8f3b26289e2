// A Gaussian of six parameters fitted to 40 x 40 cells with noise, from its cells alone: with the
// errors of a map that has a beam, and without one as the peer has them.

#include "pavane/measures/fits/GaussianFit.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

namespace
{

using namespace pavane;

constexpr int side = 40;

void fitOne(benchmark::State& state, int hasBeam)
{
    AMatrix<float> cells;
    if (!cells.allocate(side, side))
        return state.SkipWithError("no memory");
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0, 0.02);
    for (int r = 0; r < side; ++r)
        for (int c = 0; c < side; ++c) {
            const double dx = c - 19.3, dy = r - 20.8;
            cells(r, c) = static_cast<float>(
                std::exp(-0.02 * dx * dx - 0.01 * dx * dy - 0.04 * dy * dy) + noise(random));
        }
    MapHeader header;
    header.axes = {{side, "RA---SIN", "deg", 187.7, 20, -1e-7, 0},
                   {side, "DEC--SIN", "deg", 12.4, 20, 1e-7, 0}};
    header.cd[0][0] = -1e-7;
    header.cd[1][1] = 1e-7;
    header.hasCelestialAxes = 1;
    header.hasBeam = hasBeam;
    header.bmaj = 5e-7;
    header.bmin = 4e-7;
    header.bpa = 20;
    const MapFrame frame = frameOf(header, side, side);
    AreaCells area{ABitMatrix(side, side), 0, 0};
    area.mask.setAll(1);
    GaussianFit fit;
    std::string error;
    for (auto _ : state)
        if (!fitGaussians(AFloatMatrixAccess(cells), area, header, frame, 0.02, {}, fit, error))
            state.SkipWithError(error.c_str());
    state.counters["steps"] = fit.steps;
}

}  // namespace

BENCHMARK_CAPTURE(fitOne, withBeam, 1)
    ->Name("fits/40x40_beam/pavane")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(fitOne, white, 0)->Name("fits/40x40/pavane")->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
