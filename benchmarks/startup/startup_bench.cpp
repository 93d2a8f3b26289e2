// The whole process: pavane-view draws a map of 512 x 512 cells, the peer one line of text; into a
// file, and into a window.
#include "tessel/fits_map.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <vector>

extern char** environ;

namespace
{

using namespace pavane;

const std::string mapFile = "/tmp/pavane-bench-map.fits";
const std::string pictureFile = "/tmp/pavane-bench-map.png";

int writeMap()
{
    AMatrix<float> cells(512, 512);
    for (int r = 0; r < 512; ++r)
        for (int c = 0; c < 512; ++c) {
            const double square = (r - 250.0) * (r - 250.0) / 200 + (c - 260.0) * (c - 260.0) / 600;
            const double noise = 1e-3 * std::sin(r * 12.9898 + c * 78.233);
            cells(r, c) = static_cast<float>(std::exp(-square) + noise);
        }
    MapHeader header;
    header.axes = {{512, "RA---SIN", "deg", 10, 257, -1e-8, 0},
                   {512, "DEC--SIN", "deg", 10, 257, 1e-8, 0}};
    header.bunit = "JY/BEAM";
    std::string error;
    return writeFitsMap(mapFile, cells, header, error);
}

/// Runs a program to its end; non-zero when it was content.
int runProgram(std::vector<std::string> words)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    int status = -1;
    if (posix_spawn(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0 ||
        waitpid(child, &status, 0) != child)
        return 0;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void timeProgram(benchmark::State& state, const std::vector<std::string>& words)
{
    for (auto _ : state)
        if (!runProgram(words)) {
            state.SkipWithError("the program failed");
            break;
        }
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    state.counters["MiB"] = static_cast<double>(usage.ru_maxrss) / 1024;
}

}  // namespace

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    if (!writeMap())
        return 1;
    // the peer first: the peak of memory is that of the largest child so far
    benchmark::RegisterBenchmark("startup/512-to-png/one-line-of-text",
                                 [](benchmark::State& s) {
                                     timeProgram(s, {PEER, pictureFile});
                                 })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(
        "startup/512-to-png/pavane",
        [](benchmark::State& s) {
            timeProgram(s, {PAVANE_VIEW, mapFile, "--batch", "--png", pictureFile});
        })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("startup/first-picture/trivial-window",
                                 [](benchmark::State& s) { timeProgram(s, {TRIVIAL_WINDOW}); })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("startup/first-picture/pavane",
                                 [](benchmark::State& s) {
                                     timeProgram(s, {FIRST_PICTURE, mapFile});
                                 })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::remove(mapFile.c_str());
    std::remove(pictureFile.c_str());
}
