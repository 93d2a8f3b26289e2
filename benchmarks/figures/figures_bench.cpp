/// The whole figure of a map, from cells in memory to the bytes of a PNG file: 900 x 900 pixels
/// with a colour bar, a Gaussian of 1 in the middle, one of 0.3 beside it, noise of 0.002, contours
/// at 1, 2, 4 ... 64 per cent of the peak. Processor time; the peer is peers/matplotlib_figures.py.
///     bench-figures map SIDE FILE       writes the cells, SIDE squared floats, for the peer
///     bench-figures memory              growth of peak memory by a figure, and over many figures
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/AAxisColorOP.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapFigure.h"
#include "pavane/axes/maps/MapPicture.h"
#include "platform/picture_bytes.h"
#include "platform/platform.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <malloc.h>
#include <random>
#include <string>

namespace pavane
{

namespace
{

constexpr int pictureSide = 900;
const CRect wholePicture(0, 0, pictureSide, pictureSide);

double gaussian(double dx, double dy, double sigma)
{
    return std::exp(-(dx * dx + dy * dy) / (2 * sigma * sigma));
}

AMatrix<float> testMap(int side)
{
    AMatrix<float> cells(side, side);
    std::minstd_rand random(1);
    std::normal_distribution<float> noise(0, 0.002F);
    const double sigma = side / 40.0;
    for (int r = 0; r < side; ++r)
        for (int c = 0; c < side; ++c)
            cells(r, c) =
                static_cast<float>(gaussian(c - side / 2.0, r - side / 2.0, sigma) +
                                   0.3 * gaussian(c - 0.65 * side, r - 0.6 * side, 0.7 * sigma)) +
                noise(random);
    return cells;
}

MapHeader headerOf(int side)
{
    MapHeader header;
    header.hasCelestialAxes = 1;
    header.bunit = "JY/BEAM";
    for (int i = 0; i < 2; ++i) {
        MapAxis axis;
        axis.length = side;
        axis.ctype = i ? "DEC--SIN" : "RA---SIN";
        axis.cunit = "deg";
        axis.crval = i ? 30 : 120;
        axis.crpix = side / 2.0;
        axis.cdelt = (i ? 5e-3 : -5e-3) / side;
        header.axes.push_back(axis);
        header.cd[i][i] = axis.cdelt;
    }
    return header;
}

void findStatistics(MapContent& content)
{
    const AFloatMatrixAccess cells(content.map.cells);
    content.range = mapRange(cells);
    content.noise = mapNoise(cells);
}

MapContent testContent(int side)
{
    MapContent content;
    content.map.cells = testMap(side);
    content.map.header = headerOf(side);
    content.frame = frameOf(content.map.header, side, side);
    return content;
}

/// A figure and, unless `png` is null, its bytes.
void draw(const MapContent& content, int hasContours, std::vector<unsigned char>* png)
{
    MapPicture map;
    map.show(content);
    ContourLevels levels;
    (void)levels.read("peak:1,2,4,8,16,32,64");
    if (!hasContours)
        levels.factors.clear();
    map.graph().contours().setLevels(levels);
    CPicture picture(pictureSide, pictureSide);
    map.draw(*picture.dc(), wholePicture);
    CString error;
    if (png && !PNGBytes(picture, *png, error))
        std::abort();
}

double processorTime()
{
    timespec now{};
    (void)clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

void figure(benchmark::State& state)
{
    MapContent content = testContent(static_cast<int>(state.range(0)));
    std::vector<unsigned char> png;
    for ([[maybe_unused]] auto _ : state) {
        const double start = processorTime();
        findStatistics(content);
        draw(content, 1, state.range(1) ? &png : nullptr);
        state.SetIterationTime(processorTime() - start);
    }
    state.counters["bytes"] = static_cast<double>(png.size());
}

long peakKiB()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:"))
            return std::atol(line.c_str() + 6);
    return 0;
}

void resetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

/// Cells of a host, read where they are, without contours.
void drawOfHost(const AMatrixAccess& cells, const MapFrame& frame, CPicture& picture)
{
    A2DAxis axis(frame.xDirection, 1, nullptr, 0);
    auto* const graph = new ALevelsColorGraph(&axis, cells, frame.centres(), 0);  // the axis's
    ContourLevels none;
    none.unit = LevelUnit::peak;
    graph->contours().setLevels(none);
    AAxisColorOP bar(*graph);
    MapFigure figure;
    figure.setAxis(&axis);
    figure.setMap(graph);
    figure.setBar(&bar);
    const auto dc = picture.dc();
    figure.draw(*dc, figure.layOut(*dc, wholePicture));
}

void tellMemory()
{
    constexpr int side = 4096;
    const AMatrix<float> cells = testMap(side);
    const MapFrame frame = frameOf(headerOf(side), side, side);
    const AStridedAccess<float> access(cells.data(), side, side, side);
    CPicture small(100, 100);  // the platform's own first needs
    drawOfHost(AStridedAccess<float>(cells.data(), 32, 32, side), frameOf(headerOf(32), 32, 32),
               small);
    resetPeak();
    const long before = peakKiB();
    CPicture picture(pictureSide, pictureSide);
    drawOfHost(access, frame, picture);
    std::printf(
        "%d squared floats without contours: peak grows by %.2f MiB, the picture has %.2f\n", side,
        static_cast<double>(peakKiB() - before) / 1024,
        4.0 * pictureSide * pictureSide / (1 << 20));

    MapContent content = testContent(64);
    findStatistics(content);
    std::vector<unsigned char> png;
    long level = 0;
    std::size_t used = 0;
    for (int i = 1; i <= 10000; ++i) {
        content.map.header.object = "Source " + std::to_string(i);
        draw(content, 1, &png);
        if (i == 200) {
            level = peakKiB();
            used = mallinfo2().uordblks;
        }
        if (i % 2500 == 0)
            std::printf("%d figures: peak %+ld KiB, memory in use %+ld KiB since figure 200\n", i,
                        peakKiB() - level,
                        (static_cast<long>(mallinfo2().uordblks) - static_cast<long>(used)) / 1024);
    }
}

}  // namespace

}  // namespace pavane

int main(int argc, char** argv)
{
    using namespace pavane;
    if (argc == 4 && std::strcmp(argv[1], "map") == 0) {
        const int side = std::clamp(std::atoi(argv[2]), 1, 16384);
        const AMatrix<float> cells = testMap(side);
        std::ofstream(argv[3], std::ios::binary)
            .write(reinterpret_cast<const char*>(cells.data()),
                   static_cast<std::streamsize>(cells.cells() * 4));
        return 0;
    }
    if (!InitPlatform(argc, argv, PlatformUse::pictures))
        return 1;
    if (argc == 2 && std::strcmp(argv[1], "memory") == 0) {
        tellMemory();
        return 0;
    }
    for (const int side : {512, 4096})
        for (const int hasBytes : {1, 0}) {
            const std::string name = "figure/" + std::to_string(side) +
                                     (hasBytes ? " squared to PNG" : " squared drawn") + "/pavane";
            benchmark::RegisterBenchmark(name.c_str(), figure)
                ->Args({side, hasBytes})
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond);
        }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
