// What a job pays for each piece that it counts, while another thread looks as a dialog does. Peer:
// the increment of a std::atomic.
#include "pavane/progress/AProgress.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace
{

using namespace pavane;

constexpr int pieces = 1'000'000;
constexpr auto lookPause = std::chrono::milliseconds(10);

/// Calls `look` in another thread until it goes.
template <class Look>
class Reader
{
public:
    explicit Reader(Look look)
        : thread_([this, look] {
              while (!ends_.load()) {
                  look();
                  std::this_thread::sleep_for(lookPause);
              }
          })
    {
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader()
    {
        ends_.store(true);
        thread_.join();
    }

private:
    std::atomic<bool> ends_{false};
    std::thread thread_;
};

void advance(benchmark::State& state)
{
    const AProgress progress;
    AProgressWriter writer(progress);
    writer.SetTotal(std::int64_t{1} << 40);
    const Reader reader([&] { benchmark::DoNotOptimize(progress.GetReport().fraction); });
    for (auto _ : state)
        for (int i = 0; i < pieces; ++i)
            writer.Advance();
}
BENCHMARK(advance)->Name("progress/advance 1e6/pavane")->UseRealTime();

void increment(benchmark::State& state)
{
    std::atomic<std::int64_t> done{0};
    const Reader reader([&] { benchmark::DoNotOptimize(done.load()); });
    for (auto _ : state)
        for (int i = 0; i < pieces; ++i)
            ++done;
}
BENCHMARK(increment)->Name("progress/advance 1e6/std::atomic")->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
