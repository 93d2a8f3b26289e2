// Closure phases of an independent set of the triangles of ten telescopes, chosen by their good
// points as the program does it, from opening a file of 1 GB to phases, errors and amplitudes of
// all times; what cat takes for the same file is the peer.
#include "benchmarks/uvfits/made_observation.h"
#include "pavane/calibration/ClosureReader.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>

using namespace pavane;

namespace
{

std::string file;

void phases(benchmark::State& state)
{
    for (auto _ : state) {
        AUVXFile data;
        std::string error;
        if (!data.open(file, error))
            return state.SkipWithError(error.c_str());
        ClosureReader reader(data, ClosureChoice::ofFile());
        while (reader.step()) {
        }
        std::size_t points = 0;
        for (std::size_t t = 0; t < reader.triangles().size(); ++t)
            points += reader.series(t).count();
        if (points != reader.series(0).count() * 36 || points == 0)
            state.SkipWithError("not all phases are there");
    }
}
BENCHMARK(phases)->Name("closure/phases/pavane")->UseRealTime();

/// Of triangles that are chosen already.
void again(benchmark::State& state)
{
    AUVXFile data;
    std::string error;
    if (!data.open(file, error))
        return state.SkipWithError(error.c_str());
    std::vector<UvBaseline> baselines;
    for (int a = 1; a <= 10; ++a)
        for (int b = a + 1; b <= 10; ++b)
            baselines.push_back({1, a, b, 1});
    for (auto _ : state) {
        ClosureReader reader(
            data, closureTriangles(telescopesOf(baselines), baselines, {ClosureKind::independent}));
        while (reader.step()) {
        }
        benchmark::DoNotOptimize(reader.series(0).count());
    }
}
BENCHMARK(again)->Name("closure/again/pavane")->UseRealTime();

void readByCat(benchmark::State& state)
{
    const std::string command = "cat '" + file + "' > /dev/null";
    for (auto _ : state)
        if (std::system(command.c_str()) != 0)
            state.SkipWithError("cat fails");
}
BENCHMARK(readByCat)->Name("closure/phases/cat")->UseRealTime();
BENCHMARK(readByCat)->Name("closure/again/cat")->UseRealTime();

}  // namespace

int main(int count, char** arguments)
{
    file = std::filesystem::path(arguments[0]).parent_path().string() + "/large.uvfits";
    if (!std::filesystem::exists(file))
        makeObservation(file, 1000000000);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
