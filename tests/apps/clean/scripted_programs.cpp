// Stands for the engine and for pavane-ms in tests of the window: makes small maps in no time, and
// does what the setting PAVANE_MISCHIEF says when it cleans.
//   flood, hang, silent (status 0 and no file), cut, nan, kill, locked (says so, status 1)
#include "tessel/fits_map.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

using namespace pavane;
namespace fs = std::filesystem;

namespace
{

using Words = std::vector<std::string>;

std::string after(const Words& words, const std::string& option, std::size_t which = 1)
{
    const auto found = std::find(words.begin(), words.end(), option);
    const auto at = static_cast<std::size_t>(found - words.begin()) + which;
    return at < words.size() ? words[at] : std::string();
}

int has(const Words& words, const std::string& option)
{
    return std::find(words.begin(), words.end(), option) != words.end();
}

FitsMap empty(int width, int height, double cell)
{
    FitsMap map;
    (void)map.cells.allocate(height, width);
    map.cells.fill(0);
    map.header.axes = {{width, "RA---SIN", "deg", 187, width / 2 + 1.0, -cell, 0},
                       {height, "DEC--SIN", "deg", 12, height / 2 + 1.0, cell, 0},
                       {1, "FREQ", "Hz", 8e9, 1, 1e6, 0},
                       {1, "STOKES", "", 1, 1, 1, 0}};
    map.header.hasCelestialAxes = map.header.hasBeam = 1;
    map.header.bunit = "JY/BEAM";
    map.header.bmaj = map.header.bmin = 3 * cell;
    return map;
}

int write(const std::string& name, const FitsMap& map)
{
    std::string error;
    return writeFitsMap(name, map.cells, map.header, error);
}

/// A core and a jet in noise that is always the same.
void addSky(FitsMap& map)
{
    unsigned state = 1;
    for (int r = 0; r < map.cells.rows(); ++r)
        for (int c = 0; c < map.cells.columns(); ++c) {
            state = state * 1664525U + 1013904223U;
            map.cells(r, c) += static_cast<float>(state >> 16U) * 1e-8F;
        }
    const int row = map.cells.rows() / 2, column = map.cells.columns() / 2;
    map.cells(row, column) += 1;
    map.cells(row, column + 3) += 0.5F;
}

int clean(const Words& words, const std::string& mischief)
{
    const std::string name = after(words, "-name");
    FitsMap model, residual = empty(std::atoi(after(words, "-size").c_str()),
                                    std::atoi(after(words, "-size", 2).c_str()),
                                    std::atof(after(words, "-scale").c_str()) / 3600e3);
    addSky(residual);
    std::string error;
    if (!has(words, "-continue") || !readFitsMap(name + "-model.fits", 0, model, error))
        model = empty(residual.cells.columns(), residual.cells.rows(), 1e-8);
    model.header = residual.header;
    for (std::int64_t i = 0; i < model.cells.cells(); ++i)
        residual.cells.data()[i] -= model.cells.data()[i];
    const int limit = std::atoi(after(words, "-niter").c_str());
    std::puts(" == Deconvolving (1) ==");
    for (int i = 0; i < limit; ++i) {
        float* const at =
            std::max_element(residual.cells.data(), residual.cells.data() + residual.cells.cells());
        const float part = 0.1F * *at;
        if (i == 0)
            std::printf("Initial peak: %.3f mJy at 8,8\n", 1e3 * double{*at});
        model.cells.data()[at - residual.cells.data()] += part;
        *at -= part;
    }
    std::printf("Performed %d iterations in total, %d in this major iteration\n", limit, limit);
    std::fflush(stdout);
    for (int i = 0; mischief == "flood" && i < 100000; ++i)
        std::puts("a line that nobody will ever want to read");
    while (mischief == "hang")
        (void)sleep(1);
    if (mischief == "kill")
        (void)raise(SIGKILL);
    if (mischief == "locked") {
        std::puts("+ >>> the table is locked by another program");
        return 1;
    }
    if (mischief == "silent")
        return 0;
    if (mischief == "nan")
        residual.cells.fill(std::nanf(""));
    const int well = write(name + "-model.fits", model) &&
                     write(name + "-residual.fits", residual) &&
                     write(name + "-dirty.fits", residual) && write(name + "-image.fits", residual);
    if (mischief == "cut")
        fs::resize_file(name + "-residual.fits", 3000);
    return !well;
}

int image(const Words& words)
{
    const char* const set = std::getenv("PAVANE_MISCHIEF");
    const std::string mischief = set ? set : "";
    const std::string name = after(words, "-name");
    if (has(words, "-predict"))
        return 0;
    if (has(words, "-restore")) {
        FitsMap map;
        std::string error;
        return !readFitsMap(after(words, "-restore"), 0, map, error) ||
               !write(after(words, "-restore", 3), map);
    }
    if (!has(words, "-make-psf"))
        return clean(words, mischief);
    const int width = std::atoi(after(words, "-size").c_str());
    const int height = std::atoi(after(words, "-size", 2).c_str());
    const double cell = std::atof(after(words, "-scale").c_str()) / 3600e3;
    FitsMap dirty = empty(width, height, cell), beam = dirty;
    addSky(dirty);
    beam.cells(height / 2, width / 2) = 1;
    std::puts("Gridded visibility count: 5946");
    return !(write(name + "-dirty.fits", dirty) && write(name + "-psf.fits", beam));
}

}  // namespace

int main(int argc, char** argv)
{
    const Words words(argv, argv + argc);
    const std::string job = argc > 1 ? words[1] : "";
    if (job == "import") {
        fs::create_directories(words.at(3));
        std::ofstream(words.at(3) + "/table.dat") << "rows";
        std::puts("100 %");
    } else if (job == "facts") {
        std::puts("referenceday 2453901.5\nsource 1\tM87\t187\t12\nlongest-baseline 1e8");
    } else if (job == "correct") {
        std::ofstream(words.at(2) + "/CORRECTED") << argc;
    } else
        return image(words);
    return 0;
}
