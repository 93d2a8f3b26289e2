// A square map of 32-bit floats as palette indices of 1200 x 800 pixels, its range found first.

#include "pavane/axes/maps/cells/map_picture.h"

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace
{

using namespace pavane;

constexpr int width = 1200;
constexpr int height = 800;

/// Noise and a jet; made once for each size.
const AMatrix<float>& testMap(int cells)
{
    static AMatrix<float> map;
    if (map.rows() == cells)
        return map;
    map = AMatrix<float>(cells, cells);
    std::uint32_t state = 1;
    for (int r = 0; r < cells; ++r)
        for (int c = 0; c < cells; ++c) {
            state = state * 1664525u + 1013904223u;
            map(r, c) = static_cast<float>(state >> 8) * 1e-9f;
        }
    for (int i = 0; i < cells / 2; ++i)
        map(cells / 2 + i / 4, cells / 2 + i) +=
            std::exp(-8.0f * static_cast<float>(i) / static_cast<float>(cells));
    return map;
}

void pavaneColours(benchmark::State& state, int cells, MapScaleKind kind)
{
    const AMatrix<float>& map = testMap(cells);
    const AFloatMatrixAccess access(map);
    std::vector<unsigned char> bits(width * height);
    for (auto unused : state) {
        PixelCells x, y;
        x.setLinear(-0.5, static_cast<double>(cells) / width, width, cells);
        y.setLinear(cells - 0.5, -static_cast<double>(cells) / height, height, cells);
        MapReduction reduced;
        reduced.reduce(access, x, y);
        MapScale scale(kind, static_cast<double>(reduced.least()),
                       static_cast<double>(reduced.greatest()));
        if (kind == MapScaleKind::equalized)
            scale.equalize(access);
        paintMap(reduced, x, y, scale, {}, bits.data(), width);
        benchmark::DoNotOptimize(bits.data());
        benchmark::ClobberMemory();
    }
}

void opencvColours(benchmark::State& state, int cells, int interpolation)
{
    const AMatrix<float>& map = testMap(cells);
    const cv::Mat source(cells, cells, CV_32F, const_cast<float*>(map.data()));
    cv::setNumThreads(1);
    cv::Mat resized, indices;
    for (auto unused : state) {
        double least = 0, greatest = 0;
        cv::minMaxLoc(source, &least, &greatest);
        cv::resize(source, resized, cv::Size(width, height), 0, 0, interpolation);
        const double scale = 226 / (greatest - least);
        resized.convertTo(indices, CV_8U, scale, -least * scale);
        benchmark::DoNotOptimize(indices.data);
        benchmark::ClobberMemory();
    }
}

/// What reading the map once costs: the sum of its cells, in eight lanes.
void readOnce(benchmark::State& state, int cells)
{
    const AMatrix<float>& map = testMap(cells);
    for (auto unused : state) {
        std::uint64_t sums[8] = {};
        const auto* words = reinterpret_cast<const unsigned char*>(map.data());
        const std::int64_t bytes = map.cells() * 4;
        for (std::int64_t i = 0; i + 64 <= bytes; i += 64)
            for (int k = 0; k < 8; ++k) {
                std::uint64_t word;
                std::memcpy(&word, words + i + 8 * k, 8);
                sums[k] ^= word;
            }
        benchmark::DoNotOptimize(sums);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    for (const int cells : {1024, 4096, 16384}) {
        const std::string job = "colours/" + std::to_string(cells / 1024) + "k";
        const auto add = [&](const std::string& name, auto function, auto... parameters) {
            benchmark::RegisterBenchmark((job + name).c_str(), function, cells, parameters...)
                ->Unit(benchmark::kMillisecond);
        };
        add("/pavane", pavaneColours, MapScaleKind::linear);
        add("/opencv-nearest", opencvColours, static_cast<int>(cv::INTER_NEAREST));
        add("/opencv-area", opencvColours, static_cast<int>(cv::INTER_AREA));
        add("/read-once", readOnce);
        add("-log/pavane", pavaneColours, MapScaleKind::logarithmic);
        add("-equal/pavane", pavaneColours, MapScaleKind::equalized);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
