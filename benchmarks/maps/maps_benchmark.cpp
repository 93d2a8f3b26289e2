// Maps made of others, in memory: moments of a cube, a larger beam, another grid; contours of one
// map over another in a picture.
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/maps/MapContent.h"
#include "pavane/axes/maps/overlays/AOtherContours.h"
#include "pavane/measures/maps/moments.h"
#include "pavane/measures/maps/regrid_map.h"
#include "pavane/measures/maps/smooth_map.h"
#include "platform/picture.h"
#include "platform/platform.h"
#include "tessel/FitsCubeReader.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

using namespace pavane;

namespace
{

MapHeader headerOf(const char* x, const char* y, double l, double b, double step, int size)
{
    MapHeader header;
    header.axes = {{size, x, "deg", l, size / 2.0, -step, 0},
                   {size, y, "deg", b, size / 2.0, step, 0}};
    header.hasCelestialAxes = 1;
    header.cd[0][0] = -step;
    header.cd[1][1] = step;
    header.bunit = "JY/BEAM";
    header.hasBeam = 1;
    header.bmaj = header.bmin = 4 * step;
    return header;
}

AMatrix<float> noise(int rows, int columns)
{
    std::mt19937 random(1);
    std::normal_distribution<float> normal;
    AMatrix<float> cells(rows, columns);
    const auto count = std::int64_t{rows} * columns;
    for (std::int64_t i = 0; i < count; ++i)
        cells.data()[i] = normal(random);
    return cells;
}

/// Smooth hills over some hundred cells.
AMatrix<float> hills(int size)
{
    AMatrix<float> cells(size, size);
    for (int r = 0; r < size; ++r)
        for (int c = 0; c < size; ++c)
            cells(r, c) = static_cast<float>(std::sin(0.013 * c + 0.4) * std::cos(0.017 * r) +
                                             0.5 * std::sin(0.007 * (r + c)));
    return cells;
}

/// 1 k squared x 256 planes of floats in memory, moments 0, 1 and 2 in one pass.
void moments(benchmark::State& state)
{
    constexpr int size = 1024, planes = 256;
    const AMatrix<float> plane = noise(size, size);
    AMatrix<float> cube(size * planes, size);
    for (int p = 0; p < planes; ++p)
        std::copy_n(plane.data(), size * size, cube.row(p * size));
    CubePart part;
    part.rows = part.columns = size;
    for (int p = 0; p < planes; ++p)
        part.planes.push_back({p, 10.0 * p, 10, 1});
    part.read = [&](int p, int first, int count, float* to, std::string&) {
        std::copy_n(cube.row(p * size + first), std::int64_t{count} * size, to);
        return 1;
    };
    std::string error;
    for (auto _ : state) {
        std::vector<MomentMap> maps(3);
        maps[1].moment = Moment::mean;
        maps[2].moment = Moment::dispersion;
        if (!findMoments(part, 1, maps, error))
            state.SkipWithError(error.c_str());
        benchmark::DoNotOptimize(maps[0].cells.data());
    }
}

/// A file of 1 GB that is there while one of these lives, its planes alike.
class CubeFile
{
public:
    static constexpr int size = 1024, planes = 256;
    CubeFile() : name_(std::filesystem::temp_directory_path() / "pavane-bench-cube.fits")
    {
        std::string header;
        for (const char* card : {"SIMPLE  =                    T", "BITPIX  =                  -32",
                                 "NAXIS   =                    3", "NAXIS1  =                 1024",
                                 "NAXIS2  =                 1024", "NAXIS3  =                  256",
                                 "CTYPE3  = 'VRAD    '", "CUNIT3  = 'km/s    '",
                                 "CDELT3  =                 10.0", "END"}) {
            header += card;
            header.append(80 - header.size() % 80, ' ');
        }
        header.append(2880 - header.size() % 2880, ' ');
        const AMatrix<float> cells = noise(size, size);
        std::vector<std::uint32_t> stored(std::size_t{size} * size);
        for (std::size_t i = 0; i < stored.size(); ++i)
            stored[i] = __builtin_bswap32(std::bit_cast<std::uint32_t>(cells.data()[i]));
        std::ofstream file(name_, std::ios::binary);
        file << header;
        const auto bytes = static_cast<std::streamsize>(stored.size() * sizeof stored[0]);
        for (int p = 0; p < planes; ++p)
            file.write(reinterpret_cast<const char*>(stored.data()), bytes);
        file << std::string(2880 - bytes * planes % 2880, '\0');
    }
    CubeFile(const CubeFile&) = delete;
    CubeFile& operator=(const CubeFile&) = delete;
    ~CubeFile() { std::filesystem::remove(name_); }
    std::string name() const { return name_; }

private:
    std::filesystem::path name_;
};

/// Moments 0, 1 and 2 of such a file, warm; with the noise of the planes, or that known.
void momentsOfFile(benchmark::State& state)
{
    const CubeFile file;
    std::string error;
    for (auto _ : state) {
        FitsCubeReader cube;
        CubePart part;
        std::string unit;
        std::vector<MomentMap> maps(3);
        maps[1].moment = Moment::mean;
        maps[2].moment = Moment::dispersion;
        if (!cube.open(file.name(), error) ||
            !planesBetween(cube.header(0), 0, CubeFile::planes - 1, 1, part.planes, unit, error)) {
            state.SkipWithError(error.c_str());
            break;
        }
        part.rows = cube.rows();
        part.columns = cube.columns();
        part.read = [&cube](int plane, int first, int count, float* to, std::string& fault) {
            return cube.read(plane, first, count, to, fault);
        };
        for (MomentPlane& plane : part.planes)
            plane.noise = 1;
        if ((state.range(0) && !findPlaneNoises(part, error)) || !findMoments(part, 1, maps, error))
            state.SkipWithError(error.c_str());
        benchmark::DoNotOptimize(maps[0].cells.data());
    }
}

void smooth(benchmark::State& state)
{
    const MapHeader header = headerOf("RA---SIN", "DEC--SIN", 187, 12, 1e-6, 4096);
    const AMatrix<float> cells = noise(4096, 4096);
    SmoothedMap made;
    std::string error;
    for (auto _ : state)
        if (!smoothMap(cells, header, {8e-6, 6e-6, 30}, made, error))
            state.SkipWithError(error.c_str());
}

void regrid(benchmark::State& state)
{
    const MapHeader header = headerOf("RA---SIN", "DEC--SIN", 187.7, 12.4, 1e-3, 1024);
    const MapHeader like = headerOf("GLON-TAN", "GLAT-TAN", 283.747, 74.498, 0.9e-3, 1024);
    const AMatrix<float> cells = hills(1024);
    RegriddedMap made;
    std::string error;
    for (auto _ : state)
        if (!regridMap(cells, header, like, {}, made, error))
            state.SkipWithError(error.c_str());
}

/// Everything anew each time: places on the sky, lines, layout, drawing.
void contours(benchmark::State& state)
{
    MapContent shown, other;
    const AMatrix<float> cells = hills(1024);
    shown.map.cells = cells;
    other.map.cells = cells;
    CString error;
    const AFloatMatrixAccess access(cells);
    (void)describeCells(access, headerOf("RA---SIN", "DEC--SIN", 187.7, 12.4, 1e-3, 1024), shown,
                        error);
    (void)describeCells(access, headerOf("GLON-TAN", "GLAT-TAN", 283.747, 74.498, 0.9e-3, 1024),
                        other, error);
    shown.map.cells = cells;
    other.map.cells = cells;
    LevelChoice levels;
    levels.list.unit = LevelUnit::absolute;
    levels.list.factors = {-1.1, -0.8, -0.5, -0.2, 0.1, 0.4, 0.7, 0.9, 1.1, 1.3};
    for (auto _ : state) {
        A2DAxis axis(-1, 1, nullptr, 0);
        auto* const map = new ABMapGraph(&axis, access, shown.frame.centres(), 0);
        map->setStatistics(shown.range, shown.noise);
        auto* const lines = new AOtherContours(&axis, *map);
        SkyCoordinates here, there;
        if (!here.init(shown.map.header, error) || !there.init(other.map.header, error) ||
            !lines->setMap(other, there, here, levels, {}, error))
            state.SkipWithError(error.c_str());
        CPicture picture(1000, 1000);
        picture.dc()->FillSolidRect(CRect(0, 0, 1000, 1000), RGB(255, 255, 255));
        (void)picture.dc()->SetSmooth(1);
        CRect all(0, 0, 1000, 1000);
        axis.draw(*picture.dc(), all);
        benchmark::DoNotOptimize(picture);
    }
}

BENCHMARK(moments)->Name("maps/moments 0 1 2 of 1 k x 256/pavane")->Unit(benchmark::kMillisecond);
BENCHMARK(momentsOfFile)
    ->Name("maps/moments of a file of 1 GB/pavane")
    ->Arg(0)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(momentsOfFile)
    ->Name("maps/moments of it with the noise/pavane")
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(smooth)->Name("maps/larger beam 4 k/pavane")->Unit(benchmark::kMillisecond);
BENCHMARK(regrid)->Name("maps/another grid 1 k/pavane")->Unit(benchmark::kMillisecond);
BENCHMARK(contours)->Name("maps/contours of another map/pavane")->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::pictures))
        return 1;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShutdownPlatform();
    return 0;
}
