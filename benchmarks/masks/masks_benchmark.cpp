// Filling one polygon into an existing mask: ours into bits, OpenCV into bytes, cairo into bits
// without smoothing; beside them a memset of as many bytes as the polygon's bits take. "bool": from
// shape to a new array of a byte a cell, as hosts in other languages want it.

#include "pavane/trackers/areas/area_mask.h"
#include "pavane/trackers/masks/mask_bytes.h"
#include "pavane/trackers/masks/scan_fill.h"

#include <benchmark/benchmark.h>
#include <cairo.h>
#include <opencv2/imgproc.hpp>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{

using namespace pavane;

/// A closed outline around the middle of the map whose radius swings, as a hand draws it.
std::vector<CPoint> outline(int corners, int size)
{
    std::vector<CPoint> points;
    for (int i = 0; i < corners; ++i) {
        const double angle = 6.283185307179586 * i / corners + 0.3;
        const double radius =
            size * (0.42 + 0.04 * std::sin(5 * angle) + 0.01 * std::sin(13 * angle));
        points.emplace_back(static_cast<int>(size * 0.5 + radius * std::cos(angle)),
                            static_cast<int>(size * 0.5 + radius * std::sin(angle)));
    }
    return points;
}

void fillOurs(benchmark::State& state, int corners, int size)
{
    const auto points = outline(corners, size);
    ABitMatrix mask(size, size);
    int overflow = 0;
    for (auto _ : state) {
        fillPolygon(mask, points.data(), corners, 30, overflow);
        benchmark::ClobberMemory();
    }
}

void fillBytes(benchmark::State& state, int corners, int size)
{
    std::vector<cv::Point> points;
    for (const CPoint p : outline(corners, size))
        points.emplace_back(p.x, p.y);
    cv::setNumThreads(1);
    cv::Mat mask = cv::Mat::zeros(size, size, CV_8UC1);
    const std::vector<std::vector<cv::Point>> polygons{points};
    for (auto _ : state) {
        cv::fillPoly(mask, polygons, cv::Scalar(1));
        benchmark::ClobberMemory();
    }
}

void fillCairo(benchmark::State& state, int corners, int size)
{
    const auto points = outline(corners, size);
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A1, size, size);
    cairo_t* context = cairo_create(surface);
    cairo_set_antialias(context, CAIRO_ANTIALIAS_NONE);
    cairo_set_fill_rule(context, CAIRO_FILL_RULE_EVEN_ODD);
    for (auto _ : state) {
        for (const CPoint p : points)
            cairo_line_to(context, p.x, p.y);
        cairo_close_path(context);
        cairo_fill(context);
        cairo_surface_flush(surface);
        benchmark::ClobberMemory();
    }
    cairo_destroy(context);
    cairo_surface_destroy(surface);
}

void makeBytes(benchmark::State& state, int corners, int size)
{
    AreaList areas(1);
    areas[0].kind = AreaShape::Kind::polygon;
    for (const CPoint p : outline(corners, size))
        areas[0].vertices.push_back({p.x + 0.25, p.y + 0.25});
    const auto cells = static_cast<std::size_t>(size) * static_cast<std::size_t>(size);
    CString error;
    for (auto _ : state) {
        ABitMatrix mask;
        (void)maskOfAreas(areas, size, size, MaskRule::outline, mask, error);
        auto* const bytes = static_cast<unsigned char*>(std::malloc(cells));
        unpackMask(mask, bytes, size);
        benchmark::DoNotOptimize(bytes);
        std::free(bytes);
    }
}

void memsetBits(benchmark::State& state, int corners, int size)
{
    const auto points = outline(corners, size);
    ABitMatrix mask(size, size);
    int overflow = 0;
    fillPolygon(mask, points.data(), corners, 30, overflow);
    const auto bytes = static_cast<std::size_t>(mask.count() / 8);
    for (auto _ : state) {
        std::memset(mask.row(0), 0xFF, bytes);
        benchmark::ClobberMemory();
    }
}

}  // namespace

int main(int argc, char** argv)
{
    const struct {
        const char* name;
        void (*fill)(benchmark::State&, int, int);
    } fillers[] = {
        {"pavane", fillOurs}, {"opencv", fillBytes}, {"cairo", fillCairo}, {"memset", memsetBits}};
    for (const int size : {1024, 4096, 16384})
        for (const int corners : {4, 64, 10000})
            for (const auto& filler : fillers)
                benchmark::RegisterBenchmark(("masks/" + std::to_string(size / 1024) + "k-" +
                                              std::to_string(corners) + "-corners/" + filler.name)
                                                 .c_str(),
                                             filler.fill, corners, size)
                    ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("masks/2k-4-corners/bool", makeBytes, 4, 2048)
        ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
