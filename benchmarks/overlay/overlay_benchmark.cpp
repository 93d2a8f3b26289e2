// What happens beside the drawing while areas are edited: the cells of the mask followed through a
// drag, masks of very many areas, the history of edits, finding areas. Where two ways lead to the
// same result, the plain one is the peer "from-nothing".

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/history/EditHistory.h"
#include "pavane/trackers/masks/AAreaBitFill.h"
#include "pavane/trackers/masks/CellOverlay.h"
#include "pavane/trackers/masks/overlay_picture.h"
#include "pavane/trackers/shapes/BoxIndex.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace
{

using namespace pavane;
using Polygon = std::vector<CPoint>;

constexpr int mapSize = 4096;

Polygon star(CPoint middle, int corners, double radius)
{
    Polygon p;
    for (int i = 0; i < corners; ++i) {
        const double angle = 6.283185307179586 * i / corners;
        const double r = radius * (1 + 0.1 * std::sin(5 * angle));
        p.emplace_back(middle.x + static_cast<int>(r * std::cos(angle)),
                       middle.y + static_cast<int>(r * std::sin(angle)));
    }
    return p;
}

/// `n` areas anywhere on the map, up to `radius` cells large.
std::vector<Polygon> scattered(int n, int corners, int radius)
{
    std::mt19937 random(1);
    std::uniform_int_distribution<int> place(0, mapSize);
    std::uniform_int_distribution<int> size(radius / 4 + 1, radius);
    std::vector<Polygon> areas;
    for (int i = 0; i < n; ++i) {
        const CPoint middle(place(random), place(random));
        areas.push_back(star(middle, corners, size(random)));
    }
    return areas;
}

int countOf(const Polygon& p) { return static_cast<int>(p.size()); }

const AMatrixAccess& map()
{
    static const std::vector<float> cells = [] {
        std::vector<float> values(static_cast<std::size_t>(mapSize) * mapSize);
        std::mt19937 random(2);
        std::normal_distribution<float> noise(0, 1e-3f);
        for (float& v : values)
            v = noise(random);
        return values;
    }();
    static const AStridedAccess<float> access(cells.data(), mapSize, mapSize, mapSize);
    return access;
}

struct Drag {
    const char* name;
    int corners;
    int others;        // radius of the other 99 areas
    int radius;        // of the one that is dragged
    int areasDragged;  // how many go along
};

constexpr Drag drags[] = {{"small-over-100", 4, 200, 40, 1},
                          {"huge-over-100", 64, 200, 1800, 1},
                          {"huge-over-100-huge", 64, 1800, 1800, 1},
                          {"10000-corners-over-100-huge", 10000, 1800, 1800, 1},
                          {"all-100-huge", 64, 1800, 1800, 100}};

/// One pointer move: the area goes on by some cells, then its cells and their sum are known.
void dragOverlay(benchmark::State& state, const Drag& drag)
{
    auto areas = scattered(99, drag.corners, drag.others);
    areas.push_back(star({mapSize / 2, mapSize / 2}, drag.corners, drag.radius));
    CellOverlay overlay;
    overlay.setMap(map());
    overlay.begin();
    for (const Polygon& p : areas)
        overlay.append(p.data(), countOf(p));
    overlay.end();
    int step = 0;
    for (auto _ : state) {
        const int by = ++step % 64 < 32 ? 7 : -7;
        const bool many = drag.areasDragged > 1;
        if (many)
            overlay.begin();
        for (int i = 100 - drag.areasDragged; i < 100; ++i) {
            Polygon& p = areas[static_cast<std::size_t>(i)];
            for (CPoint& point : p)
                point.Offset(by, by / 2);
            overlay.replace(i, p.data(), countOf(p));
        }
        if (many)
            overlay.end();
        benchmark::DoNotOptimize(overlay.total().sum + overlay.ofArea(99).sum);
    }
}

void fillFromNothing(benchmark::State& state, const Drag& drag)
{
    auto areas = scattered(99, drag.corners, drag.others);
    areas.push_back(star({mapSize / 2, mapSize / 2}, drag.corners, drag.radius));
    ABitMatrix mask(mapSize, mapSize);
    for (auto _ : state) {
        mask.setAll(0);
        for (const Polygon& p : areas)
            AAreaBitFill().FillMatrix(mask, p.data(), countOf(p));
        double sum = 0;
        for (int r = 0; r < mapSize; ++r)
            for (int c = 0; c < mapSize; ++c)
                if (mask.row(r)[c / 64] >> (c % 64) & 1)
                    sum += static_cast<double>(map().floatRow(r)[c]);
        benchmark::DoNotOptimize(sum);
    }
}

void maskOfMany(benchmark::State& state, int corners, int radius)
{
    const auto areas = scattered(20000, corners, radius);
    ABitMatrix mask(mapSize, mapSize);
    for (auto _ : state) {
        mask.setAll(0);
        for (const Polygon& p : areas)
            AAreaBitFill().FillMatrix(mask, p.data(), countOf(p));
    }
}

void blendPicture(benchmark::State& state, double cellsPerPixel)
{
    const int width = 1200;
    const int height = 800;
    CellOverlay overlay;
    overlay.setMap(map());
    for (const Polygon& p : scattered(100, 64, 300))
        overlay.append(p.data(), countOf(p));
    const Polygon middle = star({mapSize / 2, mapSize / 2}, 64, 30);
    overlay.append(middle.data(), countOf(middle));
    PixelCells columns;
    PixelCells rows;
    columns.setLinear((mapSize - width * cellsPerPixel) / 2, cellsPerPixel, width, mapSize);
    rows.setLinear((mapSize - height * cellsPerPixel) / 2, cellsPerPixel, height, mapSize);
    OverlayPicture picture;
    picture.setPixels(columns, rows);
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * height, 0x00808080);
    for (auto _ : state) {
        picture.blend(overlay.mask(), {0, 0, width, height}, {}, pixels.data(), width);
        benchmark::ClobberMemory();
    }
}

struct Nobody : EditTarget {
    int applyEdit(const EditChange& change) override
    {
        benchmark::DoNotOptimize(change.after.data());
        return 1;
    }
    int applySelection(const EditSelection&) override { return 1; }
};

void record(EditHistory& history, std::vector<std::uint8_t>& shape, std::mt19937& random)
{
    const int active[] = {3};
    std::vector<std::uint8_t> moved = shape;
    for (std::size_t i = 60; i < moved.size(); ++i)
        moved[i] = static_cast<std::uint8_t>(random());
    history.begin("Move area", {3, active});
    history.replace(3, 4, shape, moved);
    history.commit({3, active});
    shape = moved;
}

/// 10 000 moves of a shape of four points, recorded, undone, or both ways.
void steps(benchmark::State& state, bool undo)
{
    constexpr int count = 10000;
    Nobody nobody;
    std::mt19937 random(3);
    std::vector<std::uint8_t> shape(56 + 4 + 64);
    double bytes = 0;
    for (auto _ : state) {
        EditHistory history;
        for (int i = 0; i < count; ++i)
            record(history, shape, random);
        if (undo) {
            while (history.undo(nobody)) {
            }
            while (history.redo(nobody)) {
            }
        }
        bytes = static_cast<double>(history.bytesUsed()) / count;
    }
    state.counters["bytes-a-step"] = bytes;
}

std::vector<ARect<double>> boxesOf(int n)
{
    std::vector<ARect<double>> boxes;
    for (const Polygon& p : scattered(n, 4, 20))
        boxes.push_back({p[2].x + 0.5, p[3].y + 0.5, p[0].x + 0.5, p[1].y + 0.5});
    return boxes;
}

void buildIndex(benchmark::State& state, int n)
{
    const auto boxes = boxesOf(n);
    BoxIndex index;
    for (auto _ : state)
        index.build(boxes.data(), n);
}

/// A thousand presses on areas all over the map.
template <typename Hit>
void hits(benchmark::State& state, int n, Hit&& hit)
{
    int i = 0;
    for (auto _ : state)
        for (int press = 0; press < 1000; ++press) {
            i = (i + 7919) % n;
            hit(i);
        }
}

void hitIndex(benchmark::State& state, int n)
{
    const auto boxes = boxesOf(n);
    BoxIndex index;
    index.build(boxes.data(), n);
    hits(state, n, [&](int i) {
        const ARect<double>& at = boxes[static_cast<std::size_t>(i)];
        benchmark::DoNotOptimize(index.fromLast(at.left, at.top, [](int) { return 0; }));
    });
}

void hitPlain(benchmark::State& state, int n)
{
    const auto boxes = boxesOf(n);
    hits(state, n, [&](int i) {
        const ARect<double>& at = boxes[static_cast<std::size_t>(i)];
        int found = 0;
        for (const ARect<double>& b : boxes)
            found +=
                at.left >= b.left && at.left <= b.right && at.top >= b.top && at.top <= b.bottom;
        benchmark::DoNotOptimize(found);
    });
}

template <typename... Arguments>
void add(const std::string& name, void (*run)(benchmark::State&, Arguments...), auto... arguments)
{
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        run(state, arguments...);
    })->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv)
{
    for (const Drag& drag : drags) {
        add("overlay/" + std::string(drag.name) + "/pavane", dragOverlay, drag);
        add("overlay/" + std::string(drag.name) + "/from-nothing", fillFromNothing, drag);
    }
    add("overlay/mask-20000-areas-of-4/pavane", maskOfMany, 4, 20);
    add("overlay/mask-20000-areas-of-64/pavane", maskOfMany, 64, 60);
    add("overlay/picture-whole-map/pavane", blendPicture, mapSize / 1200.0);
    add("overlay/picture-zoomed/pavane", blendPicture, 0.1);
    add("overlay/history-record-10000/pavane", steps, false);
    add("overlay/history-record-undo-redo-10000/pavane", steps, true);
    for (const int n : {20000, 200000}) {
        add("overlay/index-" + std::to_string(n) + "/pavane", buildIndex, n);
        add("overlay/1000-hits-of-" + std::to_string(n) + "/pavane", hitIndex, n);
        add("overlay/1000-hits-of-" + std::to_string(n) + "/plain-search", hitPlain, n);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
