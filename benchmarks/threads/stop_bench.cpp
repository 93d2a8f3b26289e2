// How long work goes on between two looks at its stop flag, which is what Escape and Ctrl+C wait
// for: `longest_ms` beside the time of the whole job. The flag asks every 20 ms at most, so that
// much is in it.
#include "large_figure.h"
#include "pavane/axes/maps/MapNumbers.h"
#include "pavane/images/palettes.h"
#include "pavane/tables/components/component_arrays.h"
#include "pavane/trackers/areas/area_mask.h"
#include "platform/picture_bytes.h"
#include "platform/platform.h"
#include "tessel/fits_map.h"
#include "tessel/StopFlag.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <complex>
#include <cstdio>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace
{

using namespace pavane;
using Clock = std::chrono::steady_clock;

constexpr int side = 4096;

/// A flag that nobody raises and that notes when it was looked at.
class WatchedStop
{
public:
    WatchedStop()
    {
        flag_.ask([this] {
            look();
            return 1;
        });
    }
    void look()
    {
        const Clock::time_point now = Clock::now();
        longest_ =
            std::max(longest_, std::chrono::duration<double, std::milli>(now - last_).count());
        last_ = now;
    }
    const StopFlag& flag() const { return flag_; }
    double longest() const { return longest_; }

private:
    StopFlag flag_;
    Clock::time_point last_ = Clock::now();
    double longest_ = 0;
};

const AMatrix<float>& cells()
{
    static const AMatrix<float> map = [] {
        AMatrix<float> made(side, side);
        std::mt19937 random(1);
        std::normal_distribution<float> noise(0, 0.02f);
        for (int r = 0; r < side; ++r)
            for (int c = 0; c < side; ++c) {
                const double y = (r - side / 2) / 400.0;
                const double x = (c - side / 2) / 400.0;
                made(r, c) = noise(random) + static_cast<float>(std::exp(-x * x - y * y));
            }
        return made;
    }();
    return map;
}

void drawPicture(const StopFlag& stop, const char* levels)
{
    CPicture picture(900, 900);
    const auto dc = picture.dc();
    dc->setStop(&stop);
    drawLargeFigure(*dc, cells(), levels);
}

void drawPage(const StopFlag& stop)
{
    CPageFile page(CPageFile::Format::pdf, 900, 900, "stop", 1);
    page.dc().setStop(&stop);
    drawLargeFigure(page.dc(), cells(), "sigma:-1,1,2,3,4,5,6,7");
    std::vector<unsigned char> bytes;
    CString error;
    (void)page.CloseBytes(bytes, error);
}

void packPicture(const StopFlag& stop)
{
    static const CPicture picture = [] {
        CPicture drawn(4000, 4000);
        drawLargeFigure(*drawn.dc(), cells(), nullptr);
        return drawn;
    }();
    std::vector<unsigned char> bytes;
    CString error;
    (void)PNGBytes(picture, bytes, error, 96, PngSpeed::smallest, &stop);
}

AreaList manyAreas()
{
    AreaList areas;
    std::mt19937 random(2);
    std::uniform_real_distribution<double> place(0, side);
    for (int i = 0; i < 400; ++i) {
        AreaShape shape;
        shape.kind = AreaShape::Kind::polygon;
        const double x = place(random);
        const double y = place(random);
        for (int v = 0; v < 1000; ++v) {
            const double a = 2 * std::numbers::pi * v / 1000;
            const double far = 300 + 200 * std::sin(17 * a);
            shape.vertices.push_back({x + far * std::cos(a), y + far * std::sin(a)});
        }
        areas.push_back(shape);
    }
    return areas;
}

void fillMask(const StopFlag& stop, MaskRule rule)
{
    static const AreaList areas = manyAreas();
    ABitMatrix mask;
    CString error;
    (void)maskOfAreas(areas, side, side, rule, mask, error, &stop);
}

void traceMask(const StopFlag& stop)
{
    static const ABitMatrix mask = [] {
        ABitMatrix made(side, side);
        for (int r = 0; r < side; ++r)
            for (int c = 0; c < side; ++c)
                if (cells()(r, c) > 0.05f)
                    made.set(r, c);
        return made;
    }();
    AreaList areas;
    CString error;
    (void)areasOfMask(mask, areas, error, &stop);
}

void addUp(const StopFlag& stop)
{
    const AFloatMatrixAccess access(cells());
    (void)mapNumbers(access, MapContent(), nullptr, &stop);
}

void sumVisibilities(const StopFlag& stop)
{
    std::vector<double> flux(1000, 1);
    std::vector<double> u(200000);
    for (std::size_t i = 0; i < u.size(); ++i)
        u[i] = static_cast<double>(i);
    ComponentColumns columns;
    columns.field[static_cast<int>(ComponentField::peakFlux)] = {flux.data()};
    AComponents model;
    CString error;
    std::vector<std::complex<double>> out(u.size());
    if (componentsFrom(columns, static_cast<std::int64_t>(flux.size()), model, error))
        (void)modelVisibilities(model, {u.data()}, {u.data()}, static_cast<std::int64_t>(u.size()),
                                out.data(), error, &stop);
}

void readMap(const StopFlag& stop)
{
    static const std::string file = [] {
        std::string name = std::string(P_tmpdir).append("/pavane-stop-bench.fits");
        std::string error;
        (void)writeFitsMap(name, cells(), MapHeader(), error);
        return name;
    }();
    FitsMap map;
    std::string error;
    (void)readFitsMap(file, -1, map, error, progressOf(&stop));
}

template <class Work>
void add(const char* name, Work work)
{
    benchmark::RegisterBenchmark(name, [work](benchmark::State& state) {
        double longest = 0;
        work(StopFlag());  // what it works on is there
        for (auto unused : state) {
            WatchedStop watched;
            work(watched.flag());
            watched.look();
            longest = std::max(longest, watched.longest());
        }
        state.counters["longest_ms"] = longest;
    })->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::pictures) || !LoadBuiltInPalette())
        return 1;
    (void)cells();
    add("stop/picture 4k/pavane", [](const StopFlag& s) { drawPicture(s, nullptr); });
    add("stop/picture 4k, contours in the noise/pavane",
        [](const StopFlag& s) { drawPicture(s, "sigma:-1,1,2,3,4,5,6,7"); });
    add("stop/page 4k, contours in the noise/pavane", drawPage);
    add("stop/png of 4000 squared, smallest/pavane", packPicture);
    add("stop/mask of 400 polygons, outline/pavane",
        [](const StopFlag& s) { fillMask(s, MaskRule::outline); });
    add("stop/mask of 400 polygons, centres/pavane",
        [](const StopFlag& s) { fillMask(s, MaskRule::centres); });
    add("stop/areas of a mask of noise 4k/pavane", traceMask);
    add("stop/statistics 4k/pavane", addUp);
    add("stop/visibilities 1000 x 2e5/pavane", sumVisibilities);
    add("stop/map read 4k/pavane", readMap);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShutdownPlatform();
    return 0;
}
