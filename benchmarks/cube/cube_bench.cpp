// The next plane of a cube of 1024 squared cells: from the file to the pixels of a window of 1200 x
// 800, and the same of a plane that is kept.

#include "apps/view/CubePlanes.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/images/palettes.h"
#include "platform/picture.h"
#include "platform/platform.h"

#include <benchmark/benchmark.h>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <string>

namespace
{

using namespace pavane;

constexpr int side = 1024;
constexpr int planes = 64;

/// A source that moves with the plane, in noise.
std::string writeCube()
{
    std::string bytes;
    for (const std::string& card :
         {std::string("SIMPLE  = T"), std::string("BITPIX  = -32"), std::string("NAXIS   = 3"),
          "NAXIS1  = " + std::to_string(side), "NAXIS2  = " + std::to_string(side),
          "NAXIS3  = " + std::to_string(planes), std::string("END")}) {
        bytes += card;
        bytes.append(80 - bytes.size() % 80, ' ');
    }
    bytes.append(2880 - bytes.size() % 2880, ' ');
    const char* const folder = std::getenv("TMPDIR");
    const std::string file = std::string(folder ? folder : "/tmp") + "/bench-cube.fits";
    std::ofstream out(file, std::ios::binary);
    out << bytes;
    std::uint32_t state = 1;
    std::string plane(std::size_t{4} * side * side, '\0');
    for (int p = 0; p < planes; ++p) {
        std::size_t at = 0;
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                state = state * 1664525u + 1013904223u;
                const double dx = x - 200.0 - 10 * p, dy = y - 512.0;
                const double value = 1e-9 * (state >> 8) + std::exp(-(dx * dx + dy * dy) / 4000);
                const auto bits = std::bit_cast<std::uint32_t>(static_cast<float>(value));
                for (const int shift : {24, 16, 8, 0})
                    plane[at++] = static_cast<char>(bits >> shift & 0xFF);
            }
        }
        out << plane;
    }
    out << std::string(2880 - std::size_t{4} * side * side * planes % 2880, '\0');
    return file;
}

/// Lines that are not drawn.
ContourLevels noLevels()
{
    ContourLevels levels;
    levels.unit = LevelUnit::absolute;
    return levels;
}

/// With `kept` 0 all planes are read, else the first of them go to and fro.
void nextPlane(benchmark::State& state, int kept, int contours)
{
    static const std::string file = writeCube();
    MapContent content;
    std::string error;
    if (!readMapContent(file, 0, content, error)) {
        state.SkipWithError(error.c_str());
        return;
    }
    CubePlanes cube;
    cube.begin(file, content);
    MapPicture picture;
    picture.show(content);
    picture.graph().setShownOften(1);
    if (!contours)
        picture.graph().contours().setLevels(noLevels());
    CPicture pixels(1200, 800);
    const auto dc = pixels.dc();
    int shown = 0, step = 1;
    for (auto unused : state) {
        if (kept > 0 && (shown + step > kept || shown + step < 0))
            step = -step;
        shown = kept > 0 ? shown + step : (shown + 1) % planes;
        if (!cube.exchange(shown, content, error)) {
            state.SkipWithError(error.c_str());
            return;
        }
        picture.contentChanged();
        if (!contours)
            picture.graph().contours().setLevels(noLevels());
        picture.draw(*dc, CRect(0, 0, 1200, 800));
        benchmark::ClobberMemory();
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (!InitPlatform(argc, argv, PlatformUse::pictures) || !LoadBuiltInPalette())
        return 1;
    const auto add = [](const char* name, int kept, int contours) {
        benchmark::RegisterBenchmark(name, [=](benchmark::State& s) {
            nextPlane(s, kept, contours);
        })->Unit(benchmark::kMillisecond);
    };
    add("cube/next plane 1k/pavane", 0, 0);
    add("cube/next plane 1k with contours/pavane", 0, 1);
    add("cube/kept plane 1k/pavane", 12, 0);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    ShutdownPlatform();
    return 0;
}
