// The numbers of areas on a map of 4 k: a table of 10 000 areas of 400 cells from nothing, and what
// a move costs while one of 100 areas of 3600 cells is dragged, the table of all of them included.

#include "pavane/measures/areas/AreaTable.h"
#include "pavane/trackers/areas/AreaCollection.h"

#include <benchmark/benchmark.h>

#include <random>

namespace
{

using namespace pavane;

constexpr int side = 4096;

const MapContent& map4k()
{
    static const auto* const map = [] {
        auto* const made = new MapContent;
        std::mt19937 random(1);
        std::normal_distribution<float> noise(0, 0.1f);
        (void)made->map.cells.allocate(side, side);
        for (int i = 0; i < side * side; ++i)
            made->map.cells.data()[i] = noise(random);
        MapHeader& header = made->map.header;
        header.axes = {{side, "RA---SIN", "deg", 187.7, 2048, -1e-8, 0},
                       {side, "DEC--SIN", "deg", 12.4, 2048, 1e-8, 0}};
        header.cd[0][0] = -1e-8;
        header.cd[1][1] = 1e-8;
        header.hasCelestialAxes = header.hasBeam = 1;
        header.bmaj = header.bmin = 5e-8;
        header.bunit = "Jy/beam";
        made->frame = frameOf(header, side, side);
        made->noise.sigma = 0.1;
        made->noise.finiteCells = 1;
        return made;
    }();
    return *map;
}

AreaSource sourceOf(const AreaCollection& areas)
{
    return [&areas](int i, AArray<CPoint>& points, int& isNeverClean) {
        (void)areas.GetAreaCells(i, points, side, side, map4k().frame.centres());
        isNeverClean = areas.isNeverClean(i);
        return 1;
    };
}

void addAreas(AreaCollection& areas, AreaShape::Kind kind, int across, double width)
{
    const AMnMxMCTransform cells(map4k().frame.centres(), side, side);
    const double step = static_cast<double>(side) / across;
    for (int i = 0; i < across * across; ++i)
        (void)areas.add(AreaShape{kind,
                                  {step * (i % across + 0.5), step * (i / across + 0.5)},
                                  width,
                                  width,
                                  0.3,
                                  {}},
                        cells);
}

void makeTable(benchmark::State& state)
{
    AreaCollection areas;
    addAreas(areas, AreaShape::Kind::rectangle, 100, 19);
    const AFloatMatrixAccess cells(map4k().map.cells);
    for (auto _ : state) {
        AreaMeasures measures;
        measures.setMap(&cells, &map4k());
        (void)measures.update(areas.count(), sourceOf(areas));
        AreaTable table;
        table.setMap(map4k().map.header, map4k().frame);
        table.add(measures, -1, [](int, AreaRow&) {});
        benchmark::DoNotOptimize(table.rows().data());
    }
}

void moveOne(benchmark::State& state)
{
    AreaCollection areas;
    addAreas(areas, AreaShape::Kind::ellipse, 10, 67.7);
    const AFloatMatrixAccess cells(map4k().map.cells);
    AreaMeasures measures;
    measures.setMap(&cells, &map4k());
    (void)measures.update(areas.count(), sourceOf(areas));
    AreaTable table;
    table.setMap(map4k().map.header, map4k().frame);
    ShapeValues shape;
    (void)areas.shape(55, shape);
    double step = 2 * map4k().frame.xStep;
    for (auto _ : state) {
        shape.rect.left += step;
        shape.rect.right += step;
        step = -step;
        (void)areas.setShape(55, shape);
        (void)measures.update(areas.count(), sourceOf(areas));
        table.rows().clear();
        table.add(measures, -1, [](int, AreaRow&) {});
        benchmark::DoNotOptimize(table.rows().data());
    }
}

}  // namespace

BENCHMARK(makeTable)->Name("area_numbers/table_10000/pavane")->Unit(benchmark::kMillisecond);
BENCHMARK(moveOne)->Name("area_numbers/drag_of_100/pavane")->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
