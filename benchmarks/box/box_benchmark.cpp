// A coloured surface turned at 1200 x 800, and a lattice with hidden lines.

#include "benchmarks/contours/contour_test_maps.h"
#include "pavane/axes/box/HiddenLines.h"
#include "pavane/axes/box/SurfaceRaster.h"
#ifdef PAVANE_VTK_SURFACE
#include "benchmarks/peers/vtk_surface.h"
#endif

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace
{

using namespace pavane;

constexpr int width = 1200, height = 800;
constexpr double turned = 7;

const AMatrix<float>& testMap(int cells)
{
    static AMatrix<float> map;
    if (map.rows() != cells)
        map = contourTestMap(cells, 1);
    return map;
}

MapScale testScale() { return MapScale(MapScaleKind::linear, -0.02, 1); }

void pavaneSurface(benchmark::State& state, int cells, int light)
{
    const AFloatMatrixAccess access(testMap(cells));
    const MapScale scale = testScale();
    SurfaceGrid grid;
    grid.set(access, scale, {});
    SurfaceScene scene;
    scene.first.grid = &grid;
    std::vector<unsigned char> bits(width * height);
    std::vector<std::uint32_t> picture(bits.size());
    std::vector<COLORREF> table(256);
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<COLORREF>(i * 0x010101u);
    BoxView view;
    view.fit({0, 0, width, height});
    SurfaceRaster raster;
    for (auto unused : state) {
        view.setView(view.azimuth() + turned, view.elevation());
        raster.draw(view, scene, view.rect(), light);
        paintSurface(raster, {&access, &scale, {}}, {}, bits.data(), width);
        shadeSurface(raster, bits.data(), width, std::span<const COLORREF, 256>(table), {},
                     picture.data(), width);
        benchmark::DoNotOptimize(picture.data());
    }
}

#ifdef PAVANE_VTK_SURFACE
void vtkSurface(benchmark::State& state, int cells)
{
    VtkSurface surface(testMap(cells).data(), cells);
    for (auto unused : state)
        surface.turn(turned);
}
#endif

PicturePieces latticeSeen(const AMatrixAccess& access, const BoxView& view)
{
    SurfaceGrid grid;
    grid.set(access, testScale(), {});
    SurfaceScene scene;
    scene.first.grid = &grid;
    const SurfaceLattice lattice = latticeOf(grid, view);
    const HiddenLines lines(view, scene);
    PicturePieces pieces;
    for (const auto* family : {&lattice.alongX, &lattice.alongY})
        for (const auto& line : *family)
            lines.add(line, pieces);
    return pieces;
}

void pavaneLattice(benchmark::State& state, int cells)
{
    const AFloatMatrixAccess access(testMap(cells));
    BoxView view;
    view.fit({0, 0, width, height});
    for (auto unused : state) {
        view.setView(view.azimuth() + turned, view.elevation());
        benchmark::DoNotOptimize(latticeSeen(access, view).points.data());
    }
}

/// Writes a test map as raw floats, so that peers in other processes draw the same one.
int writeMap(const char* file, int cells)
{
    std::FILE* out = std::fopen(file, "wb");
    if (!out)
        return 0;
    const auto count = static_cast<std::size_t>(testMap(cells).cells());
    const std::size_t written = std::fwrite(testMap(cells).data(), sizeof(float), count, out);
    return std::fclose(out) == 0 && written == count;
}

/// The whole process of a lattice: from a file of floats to one of lines.
int drawLattice(const char* file, int cells, const char* svg)
{
    AMatrix<float> map(cells, cells);
    std::FILE* in = std::fopen(file, "rb");
    if (!in)
        return 0;
    const auto count = static_cast<std::size_t>(map.cells());
    const std::size_t read = std::fread(map.data(), sizeof(float), count, in);
    std::fclose(in);
    std::FILE* out = read == count ? std::fopen(svg, "wb") : nullptr;
    if (!out)
        return 0;
    BoxView view;
    view.fit({0, 0, width, height});
    const PicturePieces pieces = latticeSeen(AFloatMatrixAccess(map), view);
    std::fprintf(out, "<svg xmlns='http://www.w3.org/2000/svg' width='%d' height='%d'>", width,
                 height);
    std::fprintf(out, "<path fill='none' stroke='black' stroke-width='0.5' d='");
    for (std::size_t i = 0; i < pieces.count(); ++i) {
        char command = 'M';
        for (const CPointF& at : pieces.piece(i)) {
            std::fprintf(out, "%c%.2f %.2f", command, at.x, at.y);
            command = 'L';
        }
    }
    std::fprintf(out, "'/></svg>\n");
    return std::fclose(out) == 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--write-map") == 0)
        return writeMap(argv[2], std::stoi(argv[3])) ? 0 : 1;
    if (argc == 5 && std::strcmp(argv[1], "--draw-lattice") == 0)
        return drawLattice(argv[2], std::stoi(argv[3]), argv[4]) ? 0 : 1;
    setenv("LP_NUM_THREADS", "1", 1);  // one thread for the peer as well
    for (const int cells : {512, 2048}) {
        const std::string size = std::to_string(cells);
        const auto add = [](const std::string& name, auto function, auto... parameters) {
            benchmark::RegisterBenchmark(name.c_str(), function, parameters...)
                ->Unit(benchmark::kMillisecond)
                ->MeasureProcessCPUTime();
        };
        add("box/surface-" + size + "/pavane", pavaneSurface, cells, 0);
        add("box/surface-lit-" + size + "/pavane", pavaneSurface, cells, 1);
#ifdef PAVANE_VTK_SURFACE
        if (std::getenv("DISPLAY"))
            add("box/surface-" + size + "/vtk", vtkSurface, cells);
#endif
        add("box/lattice-" + size + "/pavane", pavaneLattice, cells);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
