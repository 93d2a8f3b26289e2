// Files of visibilities: opening with every cell of the tables, and baselines and scans of all
// groups. The files stand beside the program, for the peers.
#include "benchmarks/uvfits/made_observation.h"
#include "tessel/uvfits/UvGroupScan.h"

#include <benchmark/benchmark.h>
#include <filesystem>

using namespace pavane;

namespace
{

std::string folder;
constexpr std::int64_t smallBytes = std::int64_t{20} << 20, largeBytes = 1000000000;

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

}  // namespace

int main(int count, char** arguments)
{
    folder = std::filesystem::path(arguments[0]).parent_path().string() + "/";
    for (const auto& [name, bytes] :
         {std::pair{"small.uvfits", smallBytes}, {"large.uvfits", largeBytes}})
        if (!std::filesystem::exists(folder + name))
            makeObservation(folder + name, bytes);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
