// Files of visibilities: opening with every cell of the tables, baselines and scans of all groups,
// and the points of plots of ten million visibilities, as they are, coloured and averaged. The
// files stand beside the program, for the peers.
#include "benchmarks/uvfits/made_observation.h"
#include "tessel/uvfits/UvGroupScan.h"
#include "tessel/uvfits/UvPlotPoints.h"

#include <benchmark/benchmark.h>
#include <filesystem>

using namespace pavane;

namespace
{

std::string folder;
constexpr std::int64_t smallBytes = std::int64_t{20} << 20, largeBytes = 1000000000;
/// Ten million visibilities.
constexpr std::int64_t plotBytes = 142500000;

void openFile(const std::string& name, AUVXFile& file, benchmark::State& state)
{
    std::string error;
    if (!file.open(name, error))
        state.SkipWithError(error.c_str());
}

void open(benchmark::State& state)
{
    for (auto _ : state) {
        AUVXFile file;
        openFile(folder + "small.uvfits", file, state);
        double sum = 0;
        for (const AUVXTlscItem& t : file.telescopes())
            sum += t.x.value + t.y.value + t.z.value + t.axisOffset.value + t.mount + t.number;
        for (const UvSource& s : file.sources())
            sum += s.ra.value + s.dec.value + s.equinox + s.id;
        for (const UvScan& s : file.scans())
            sum += s.start + s.end + static_cast<double>(s.first + s.last);
        for (const AUVXFreqs& s : file.fqTbl().selections())
            for (const UvIf& i : s.ifs)
                sum += i.offset.value + i.channelWidth.value + i.bandwidth.value + i.sideband;
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(open)->Name("uvfits/open/pavane")->UseRealTime();

void groups(benchmark::State& state)
{
    for (auto _ : state) {
        AUVXFile file;
        openFile(folder + "large.uvfits", file, state);
        UvGroupScan scan(file, UvGroupScan::baselines | UvGroupScan::scans);
        while (scan.step()) {
        }
        benchmark::DoNotOptimize(scan.foundBaselines().size() + scan.foundScans().size());
    }
}
BENCHMARK(groups)->Name("uvfits/groups/pavane")->UseRealTime();

void points(benchmark::State& state, const UvView& view)
{
    for (auto _ : state) {
        AUVXFile file;
        openFile(folder + "plot.uvfits", file, state);
        UvPlotPoints points(file, {}, UvPlotPoints::usualMost, view);
        while (points.step()) {
        }
        state.counters["visibilities"] = static_cast<double>(points.totals().visibilities);
        state.counters["points"] = static_cast<double>(points.plotted());
    }
}
BENCHMARK_CAPTURE(points, plain, UvView{})->Name("uvfits/points/plain")->UseRealTime();
BENCHMARK_CAPTURE(points, coloured, UvView{UvView::Kind::distance, 0, UvColour::baseline})
    ->Name("uvfits/points/coloured")
    ->UseRealTime();
BENCHMARK_CAPTURE(points, means, UvView{UvView::Kind::distance, 0, UvColour::none, 60})
    ->Name("uvfits/points/means of 60 s")
    ->UseRealTime();

}  // namespace

int main(int count, char** arguments)
{
    folder = std::filesystem::path(arguments[0]).parent_path().string() + "/";
    for (const auto& [name, bytes] : {std::pair{"small.uvfits", smallBytes},
                                      {"plot.uvfits", plotBytes},
                                      {"large.uvfits", largeBytes}})
        if (!std::filesystem::exists(folder + name))
            makeObservation(folder + name, bytes);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
