// A coloured surface turned at 1200 x 800, and a lattice with hidden lines, also on a page of PDF.

#include "benchmarks/contours/contour_test_maps.h"
#include "pavane/axes/box/A2_3DAxis.h"
#include "pavane/axes/box/ASurfaceGraph.h"
#include "pavane/axes/box/HiddenLines.h"
#include "pavane/axes/box/SurfaceRaster.h"
#include "platform/picture.h"
#include "platform/platform.h"
#ifdef PAVANE_VTK_SURFACE
#include "benchmarks/peers/vtk_surface.h"
#endif

#include <benchmark/benchmark.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>
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

/// The lattice in its box, with axes and texts, as a file of PDF; its size is told as well.
void latticeToPdf(benchmark::State& state, int cells)
{
    const AFloatMatrixAccess access(testMap(cells));
    const std::string file = std::filesystem::temp_directory_path() / "bench-lattice.pdf";
    constexpr int unitsPerPixel = 12;
    const double last = cells - 1;
    for (auto unused : state) {
        A2_3DAxis box(1, 1, nullptr, 0);
        auto* const surface = new ASurfaceGraph(&box, access, {0, last, 0, last}, 0);
        surface->SetStyle(surfaceLinesX | surfaceLinesY);
        CPageFile page(CPageFile::Format::pdf, width, height, "lattice", unitsPerPixel);
        CRect all(0, 0, width * unitsPerPixel, height * unitsPerPixel);
        box.draw(page.dc(), all);
        CString error;
        if (!page.Close(file, error))
            return state.SkipWithError(error.c_str());
    }
    state.counters["MB"] = 1e-6 * static_cast<double>(std::filesystem::file_size(file));
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
    // in hundredths of a pixel, so that places are whole numbers
    const std::string across = std::to_string(width), down = std::to_string(height);
    std::string text = "<svg xmlns='http://www.w3.org/2000/svg' width='" + across + "' height='" +
                       down + "' viewBox='0 0 " + across + "00 " + down +
                       "00'><path fill='none' stroke='black' stroke-width='50' d='";
    const auto put = [&text](char before, double place) {
        char digits[24];
        text += before;
        text.append(digits, std::to_chars(digits, std::end(digits), std::lround(place * 100)).ptr);
    };
    for (std::size_t i = 0; i < pieces.count(); ++i) {
        char command = 'M';
        for (const CPointF& at : pieces.piece(i)) {
            put(command, at.x);
            put(' ', at.y);
            command = 'L';
        }
    }
    text += "'/></svg>\n";
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), out) == text.size();
    return std::fclose(out) == 0 && isWritten;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "--write-map") == 0)
        return writeMap(argv[2], std::stoi(argv[3])) ? 0 : 1;
    if (argc == 5 && std::strcmp(argv[1], "--draw-lattice") == 0)
        return drawLattice(argv[2], std::stoi(argv[3]), argv[4]) ? 0 : 1;
    setenv("LP_NUM_THREADS", "1", 1);  // one thread for the peer as well
    if (!InitPlatform(argc, argv, PlatformUse::pictures))
        return 2;
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
        add("box/lattice-pdf-" + size + "/pavane", latticeToPdf, cells);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShutdownPlatform();
    return 0;
}
