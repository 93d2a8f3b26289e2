// Stores and loads 1e7 doubles, file in the folder named by TMPDIR (default /tmp). Peers: the same
// bytes through fwrite and fread here, numpy in benchmarks/peers/numpy_arrays.py. Each round writes
// a new file and each load fills an array of its own, as a program that opens a file does.
#include "pavane/containers/AArray.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

namespace
{

using namespace pavane;

constexpr int items = 10'000'000;

std::string fileName()
{
    const char* const folder = std::getenv("TMPDIR");
    return std::string(folder ? folder : "/tmp") + "/pavane-bench-array-" +
           std::to_string(getpid());
}

const AArray<double>& sample()
{
    static AArray<double> array;
    if (array.count() == 0) {
        array.GrowBy(items);
        for (int i = 0; i < items; ++i)
            array(i) = 0.5 * i;
    }
    return array;
}

struct Closed {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Closed>;

void storePavane(benchmark::State& state)
{
    for (auto _ : state) {
        std::remove(fileName().c_str());
        AFile file(fileName(), AFile::writeOnly | AFile::create);
        if (!sample().Store(file) || !file.close())
            state.SkipWithError("the array was not stored");
    }
}

void storeFwrite(benchmark::State& state)
{
    const AArray<double>& array = sample();
    for (auto _ : state) {
        std::remove(fileName().c_str());
        const File file(std::fopen(fileName().c_str(), "wb"));
        const int count = items;
        if (!file || std::fwrite(&count, sizeof count, 1, file.get()) != 1 ||
            std::fwrite(array.lpArray(), sizeof(double), items, file.get()) != items)
            state.SkipWithError("the array was not written");
    }
}

void loadPavane(benchmark::State& state)
{
    for (auto _ : state) {
        AFile file(fileName(), AFile::readOnly);
        const AArray<double> array(file);
        if (array.count() != items)
            state.SkipWithError("the array was not loaded");
        benchmark::DoNotOptimize(array.lpArray());
    }
}

void loadFread(benchmark::State& state)
{
    for (auto _ : state) {
        const File file(std::fopen(fileName().c_str(), "rb"));
        int count = 0;
        if (!file || std::fread(&count, sizeof count, 1, file.get()) != 1 || count != items) {
            state.SkipWithError("the array was not read");
            continue;
        }
        const std::unique_ptr<double[]> array(new double[items]);
        if (std::fread(array.get(), sizeof(double), items, file.get()) != items)
            state.SkipWithError("the array was not read");
        benchmark::DoNotOptimize(array.get());
    }
}

long peakKiB()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// By how much loading raises the peak of the process above the data, in a process that did nothing
// else; run with --benchmark_filter=peak after a store.
void peakOfLoad(benchmark::State& state)
{
    const long before = peakKiB();
    for (auto _ : state) {
        AFile file(fileName(), AFile::readOnly);
        const AArray<double> array(file);
        benchmark::DoNotOptimize(array.lpArray());
    }
    state.counters["KiB_above_data"] =
        static_cast<double>(peakKiB() - before) - items * (sizeof(double) / 1024.0);
}

BENCHMARK(peakOfLoad)
    ->Name("array/peak/pavane")
    ->Iterations(1)
    ->Repetitions(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(storeFwrite)->Name("array/store/fwrite")->Unit(benchmark::kMillisecond);
BENCHMARK(storePavane)->Name("array/store/pavane")->Unit(benchmark::kMillisecond);
BENCHMARK(loadFread)->Name("array/load/fread")->Unit(benchmark::kMillisecond);
BENCHMARK(loadPavane)->Name("array/load/pavane")->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    {  // the first load has to find a file, made without leaving a trace in this process's memory
        const File file(std::fopen(fileName().c_str(), "wb"));
        const int count = items;
        std::fwrite(&count, sizeof count, 1, file.get());
        const double block[1000] = {};
        for (int i = 0; i < items / 1000; ++i)
            std::fwrite(block, sizeof block, 1, file.get());
    }
    benchmark::RunSpecifiedBenchmarks();
    std::remove(fileName().c_str());
}
