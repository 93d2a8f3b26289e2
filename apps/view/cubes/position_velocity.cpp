#include "apps/view/cubes/position_velocity.h"

#include "apps/view/batch_output.h"
#include "apps/view/options.h"
#include "apps/view/paired_maps.h"
#include "apps/view/progress.h"
#include "pavane/measures/profiles/PositionVelocity.h"
#include "tessel/FitsCubeReader.h"
#include "tessel/made_map.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/spectral_axis.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace pavane
{

namespace
{

/// Digits that tell any two 32-bit floats apart.
constexpr int floatDigits = 9;

/// What there is in the rows that went by.
struct Seen {
    std::int64_t known = 0;
    float least = std::numeric_limits<float>::quiet_NaN();
    float greatest = least;

    void take(const std::vector<float>& values)
    {
        for (const float value : values)
            if (std::isfinite(value)) {
                ++known;
                least = value >= least ? least : value;
                greatest = value <= greatest ? greatest : value;
            }
    }
};

/// Opens the cube, with the planes that are wanted.
int openCube(const PositionVelocityWish& wish, FitsCubeReader& cube, CubePart& part, MadeTold& told,
             std::string& error)
{
    if (!cube.open(wish.cube, error))
        return 0;
    std::string unit;
    const int last = wish.lastPlane < 0 ? cube.planes() - 1 : wish.lastPlane;
    if (!planesBetween(cube.header(0), wish.firstPlane, last, 0, part.planes, unit, error))
        return 0;
    part.rows = cube.rows();
    part.columns = cube.columns();
    part.isWhole = cube.isPacked();
    part.read = [&cube](int plane, int first, int count, float* cells, std::string& fault) {
        return cube.read(plane, first, count, cells, fault);
    };
    if (const auto left = last - wish.firstPlane + 1 - static_cast<int>(part.planes.size()))
        told.notes.push_back(wish.cube + ": " + std::to_string(left) +
                             " planes of another Stokes parameter than the first were left out");
    told.text = "planes " + std::to_string(part.planes.size()) + " planes\n";
    if (!unit.empty())
        told.text += statLine("first_plane", part.planes.front().value, floatDigits, unit) +
                     statLine("last_plane", part.planes.back().value, floatDigits, unit);
    return 1;
}

int refuse(const std::string& file, std::string& error)
{
    error.insert(0, file + ": ");
    return 0;
}

int make(const PositionVelocityWish& wish, MadeTold& told, std::string& error,
         const ProgressFunction& progress)
{
    FitsCubeReader cube;
    CubePart part;
    PositionVelocity map;
    if (!openCube(wish, cube, part, told, error) ||
        !map.begin(part, cube.header(part.planes.front().plane), wish.line, error))
        return refuse(wish.cube, error);
    std::vector<std::string> history = map.history();
    const int first = part.planes.front().plane, last = part.planes.back().plane;
    history.insert(history.begin(), "pavane: planes " + std::to_string(first) + "-" +
                                        std::to_string(last) + " (from 0) of " +
                                        plainText(baseNameOf(wish.cube)));
    std::vector<float> values(static_cast<std::size_t>(map.columns()));
    Seen seen;
    std::string fault;
    const auto rowOf = [&](int row, std::string& cause) -> const float* {
        if (!map.read(row, values.data(), cause)) {
            fault = cause;
            return nullptr;
        }
        seen.take(values);
        if (row + 1 < map.rows() || seen.known)
            return values.data();
        cause = fault = "has no cell with a value along the line";
        return nullptr;
    };
    if (!writeMadeRows(wish.out, map.rows(), map.columns(), map.header(), history, rowOf, error,
                       progress))
        return refuse(fault.empty() ? wish.out : wish.cube, error);
    const MapAxis& along = map.header().axes.front();
    told.text +=
        "samples " + std::to_string(map.columns()) + " cells\n" +
        statLine("length", along.cdelt * (map.columns() - 1), floatDigits, along.cunit) + "cells " +
        std::to_string(seen.known) + " cells\n" +
        statLine("least", static_cast<double>(seen.least), floatDigits, map.header().bunit) +
        statLine("greatest", static_cast<double>(seen.greatest), floatDigits, map.header().bunit);
    if (!map.note().empty())
        told.notes.push_back(wish.cube + ": " + map.note());
    return 1;
}

}  // namespace

int makePositionVelocity(const PositionVelocityWish& wish, MadeTold& told, std::string& error,
                         const ProgressFunction& progress)
{
    told = {};
    error.clear();
    try {
        return make(wish, told, error, progress);
    } catch (const std::bad_alloc&) {
        error = "there is no memory for its planes";
        return refuse(wish.cube, error);
    }
}

int writePositionVelocity(const ViewOptions& options, std::string& error)
{
    PositionVelocityWish wish{options.map, options.made.out, options.made.line};
    wish.line.across = options.profile.line.across;
    if (options.print.hasPlanes()) {
        wish.firstPlane = options.print.firstPlane;
        wish.lastPlane = options.print.lastPlane;
    }
    MadeTold told;
    {
        ProgressLine progress("Reading " + plainText(options.map));
        if (!makePositionVelocity(wish, told, error,
                                  [&](double part) { return progress.show(part); }))
            return 0;
    }
    printNotes(told.notes);
    return printText(told.text, error);
}

}  // namespace pavane
