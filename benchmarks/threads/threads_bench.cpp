// Pictures of large maps, each with its own axis, graph, figure and PNG: by one thread, and by
// four.
#include "large_figure.h"
#include "pavane/images/palettes.h"
#include "platform/picture_bytes.h"
#include "platform/platform.h"

#include <atomic>
#include <benchmark/benchmark.h>
#include <cmath>
#include <random>
#include <thread>

namespace
{

using namespace pavane;

constexpr int side = 4096;
constexpr int pictures = 8;

/// A Gaussian of 1, one of 0.3 beside it, and noise of 0.002.
const AMatrix<float>& cells()
{
    static const AMatrix<float> map = [] {
        AMatrix<float> made(side, side);
        std::mt19937 random(1);
        std::normal_distribution<float> noise(0, 0.002f);
        for (int r = 0; r < side; ++r)
            for (int c = 0; c < side; ++c) {
                const double y = (r - side / 2) / 200.0;
                const double x = (c - side / 2) / 200.0;
                made(r, c) =
                    noise(random) + static_cast<float>(std::exp(-x * x - y * y) +
                                                       0.3 * std::exp(-(x - 3) * (x - 3) - y * y));
            }
        return made;
    }();
    return map;
}

void draw(int contours)
{
    CPicture picture(900, 900);
    const auto dc = picture.dc();
    drawLargeFigure(*dc, cells(), contours ? "peak:1,2,4,8,16,32,64" : nullptr);
    std::vector<unsigned char> png;
    CString error;
    (void)PNGBytes(picture, png, error);
    benchmark::DoNotOptimize(png.data());
}

void drawAll(benchmark::State& state, int threads, int contours)
{
    draw(contours);  // fonts and cells are there
    for (auto unused : state) {
        std::atomic<int> left = pictures;
        const auto work = [&] {
            while (left.fetch_sub(1) > 0)
                draw(contours);
        };
        std::vector<std::thread> others;
        for (int i = 1; i < threads; ++i)
            others.emplace_back(work);
        work();
        for (std::thread& each : others)
            each.join();
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::pictures) || !LoadBuiltInPalette())
        return 1;
    const auto add = [](const char* name, int threads, int contours) {
        benchmark::RegisterBenchmark(name,
                                     [=](benchmark::State& s) { drawAll(s, threads, contours); })
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    };
    add("threads/8 pictures 4k/pavane", 4, 0);
    add("threads/8 pictures 4k/one thread", 1, 0);
    add("threads/8 with contours 4k/pavane", 4, 1);
    add("threads/8 with contours 4k/one thread", 1, 1);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShutdownPlatform();
    return 0;
}
