#include "apps/view/paired_maps.h"

#include "apps/view/batch_output.h"
#include "apps/view/options.h"
#include "apps/view/progress.h"
#include "pavane/axes/maps/cells/map_statistics.h"
#include "pavane/axes/maps/map_unit.h"
#include "pavane/measures/maps/map_shift.h"
#include "pavane/measures/maps/pair_maps.h"
#include "pavane/measures/maps/regrid_map.h"
#include "tessel/FitsCubeReader.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

/// Digits that tell any two 32-bit floats apart.
constexpr int floatDigits = 9;
constexpr int fewDigits = 6;
constexpr double masPerDegree = 3600e3;

int refuse(const std::string& file, std::string& error)
{
    error.insert(0, file + ": ");
    return 0;
}

/// The header of a map whose cells do not matter.
int readHeader(const std::string& file, int plane, MapHeader& header, std::string& error)
{
    FitsCubeReader cube;
    if (!cube.open(file, error))
        return refuse(file, error);
    header = cube.header(0);
    if (plane > 0 && plane < header.planes)
        header = cube.header(plane);
    return 1;
}

/// Reads a map; of a cube beside another one the same plane.
int readMap(const std::string& file, int plane, FitsMap& map, std::string& error)
{
    ProgressLine progress("Reading " + plainText(file));
    return readFitsMap(file, plane, map, error, [&](double part) { return progress.show(part); }) ||
           refuse(file, error);
}

int readOther(const std::string& file, int plane, FitsMap& map, std::string& error)
{
    MapHeader header;
    return readHeader(file, 0, header, error) &&
           readMap(file, header.planes > 1 ? plane : -1, map, error);
}

std::string planeText(const std::string& file, const MapHeader& header)
{
    std::string text = plainText(baseNameOf(file));
    if (header.planes > 1)
        text += " (plane " + std::to_string(header.plane) + ", from 0)";
    return text;
}

void addShift(const SkyShift& shift, const std::string& what, std::vector<std::string>& history)
{
    if (!shift.isNone())
        history.push_back("pavane: " + what + " was moved by " +
                          valToStr(shift.east * masPerDegree, fewDigits) + " mas east and " +
                          valToStr(shift.north * masPerDegree, fewDigits) + " mas north");
}

/// What a user can do about two maps that do not go together.
std::string offerOf(PairFault fault, const MapHeader& first, const MapHeader& second)
{
    if (fault == PairFault::cells)
        return "; --regrid brings it onto those of the first";
    if (fault != PairFault::beams)
        return "";
    const SkyBeam a{first.bmaj, first.bmin, first.bpa};
    const SkyBeam b{second.bmaj, second.bmin, second.bpa};
    const SkyBeam common = commonBeam(a, b);
    const int needsFirst = !areSameBeams(a, common), needsSecond = !areSameBeams(b, common);
    const auto text = [](double value) { return valToStr(value, fewDigits); };
    return std::string("; convolve ") +
           (needsFirst && needsSecond ? "both"
            : needsFirst              ? "the first"
                                      : "it") +
           " with --smooth " + text(common.major * masPerDegree) + "," +
           text(common.minor * masPerDegree) + "," + text(common.angle);
}

double noiseOf(const FitsMap& map)
{
    const MapNoise noise = mapNoise(AFloatMatrixAccess(map.cells));
    return noise.finiteCells ? noise.sigma : 0;
}

/// Takes the second map onto the cells of the first.
int bringOver(const ViewOptions& options, const FitsMap& first, FitsMap& second, double& noise,
              std::string& error, const ProgressFunction& progress)
{
    RegriddedMap brought;
    if (!regridMap(second.cells, second.header, first.header, options.made.shift, brought, error,
                   progress))
        return 0;
    // values per pixel have another size on other cells, and so has their noise
    if (mapUnit(second.header.bunit).perPixel)
        noise *= brought.area;
    second.cells = std::move(brought.cells);
    second.header = std::move(brought.header);
    return 1;
}

std::string pairName(MapPair pair)
{
    return pair == MapPair::difference ? "difference"
           : pair == MapPair::ratio    ? "ratio"
                                       : "spectral index";
}

std::vector<std::string> pairHistory(const ViewOptions& options, const FitsMap& first,
                                     const std::string& second, const MapHeader& header,
                                     const PairRule& rule)
{
    std::vector<std::string> history = {"pavane: " + pairName(rule.pair) + " of " +
                                        planeText(options.map, first.header) + " and " + second};
    if (rule.pair == MapPair::index)
        history.push_back("pavane: at " + valToStr(first.header.frequency, floatDigits) + " and " +
                          valToStr(header.frequency, floatDigits) + " Hz");
    if (rule.pair != MapPair::difference)
        history.push_back("pavane: where both are above " + valToStr(rule.clip, fewDigits) +
                          " times their noise");
    if (rule.calibration > 0)
        history.push_back("pavane: errors with " + valToStr(rule.calibration * 100, fewDigits) +
                          " per cent of each value");
    return history;
}

}  // namespace

int makeRegridded(const ViewOptions& options, MadeMap& made, std::string& text, std::string& error)
{
    const MadeMapWish& wish = options.made;
    MapHeader like;
    FitsMap map;
    if (!readHeader(wish.like, 0, like, error) || !readMap(options.map, options.plane, map, error))
        return 0;
    RegriddedMap brought;
    ProgressLine progress("Regridding " + plainText(options.map));
    if (!regridMap(map.cells, map.header, like, wish.shift, brought, error,
                   [&](double part) { return progress.show(part); }))
        return refuse(options.map, error);
    made.cells = std::move(brought.cells);
    made.header = std::move(brought.header);
    made.history = {"pavane: " + planeText(options.map, map.header) +
                    " brought onto the cells of " + plainText(baseNameOf(wish.like)) + ", bicubic"};
    addShift(wish.shift, "it", made.history);
    text = statLine("cell_area", brought.area, floatDigits, "cells");
    return 1;
}

int writeMask(const ViewOptions& options, const ABitMatrix& mask, const MapHeader& header,
              std::string& error)
{
    if (options.made.like.empty())
        return writeFitsMask(options.mask, mask, header, error) || refuse(options.mask, error);
    MapHeader like;
    ABitMatrix brought;
    if (!readHeader(options.made.like, 0, like, error))
        return 0;
    if (!regridMask(mask, header, like, brought, error))
        return refuse(options.map, error);
    return writeFitsMask(options.mask, brought, like, error) || refuse(options.mask, error);
}

int findShiftOf(const FitsMap& map, const FitsMap& other, const ABitMatrix& mask, MapShift& found,
                std::string& error, const ProgressFunction& progress)
{
    RegriddedMap brought;
    constexpr double bringing = 0.3;
    const auto tell = [&](double part) { return !progress || progress(part); };
    if (!regridMap(other.cells, other.header, map.header, {}, brought, error,
                   [&](double part) { return tell(part * bringing); }))
        return 0;
    // beams that differ blur a place, but do not move it
    const double cell =
        std::min(std::fabs(map.header.axes[0].cdelt), std::fabs(map.header.axes[1].cdelt));
    constexpr double leastReach = 8, mostReach = 64, beams = 3;
    const double reach = map.header.hasBeam ? beams * map.header.bmaj / cell : mostReach / 2;
    return findMapShift(map.cells, brought.cells, mask, map.header,
                        static_cast<int>(std::clamp(reach, leastReach, mostReach)), found, error,
                        [&](double part) { return tell(bringing + part * (1 - bringing)); });
}

int findShiftText(const ViewOptions& options, const FitsMap& map, const ABitMatrix& mask,
                  std::string& text, std::string& error)
{
    const std::string& file = options.made.findShift;
    FitsMap other;
    if (!readOther(file, options.plane, other, error))
        return 0;
    MapShift found;
    ProgressLine progress("Comparing " + plainText(file));
    if (!findShiftOf(map, other, mask, found, error,
                     [&](double part) { return progress.show(part); }))
        return refuse(file, error);
    text += statLine("shift_east", found.shift.east * masPerDegree, floatDigits, "mas") +
            statLine("shift_east_error", found.error.east * masPerDegree, fewDigits, "mas") +
            statLine("shift_north", found.shift.north * masPerDegree, floatDigits, "mas") +
            statLine("shift_north_error", found.error.north * masPerDegree, fewDigits, "mas") +
            statLine("correlation", found.correlation, fewDigits, "") + "compared_cells " +
            std::to_string(found.cells) + " cells\n";
    return 1;
}

PairFault pairMaps(const ViewOptions& options, const FitsMap& first, FitsMap& second, MadeMap& made,
                   MadeTold& told, std::string& error, const ProgressFunction& progress)
{
    const MadeMapWish& wish = options.made;
    PairRule rule;
    rule.pair = wish.pair;
    rule.clip = wish.clip >= 0 ? wish.clip : rule.clip;
    rule.calibration = wish.calibration;
    PairFault fault = pairFault(rule.pair, first.header, second.header, error);
    // beams have to be compared in one frame
    const int brings = wish.regrid || !wish.shift.isNone();
    if (fault != PairFault::none && !(brings && fault == PairFault::beams))
        return fault;
    const double noise = noiseOf(first);
    double otherNoise = noiseOf(second);
    const std::string other = planeText(wish.other, second.header);
    if (brings && !bringOver(options, first, second, otherNoise, error, progress))
        return PairFault::memory;
    PairMap pair;
    fault = combineMaps({first.cells, first.header, noise},
                        {second.cells, second.header, otherNoise}, rule, pair, error);
    if (fault != PairFault::none)
        return fault;
    made.history = pairHistory(options, first, other, second.header, rule);
    if (brings)
        made.history.push_back("pavane: " + other + " was brought onto the cells of the first, " +
                               "bicubic");
    addShift(wish.shift, other, made.history);
    made.cells = std::move(pair.cells);
    made.errors = std::move(pair.errors);
    made.header = std::move(pair.header);
    told.text = statLine("noise", noise, floatDigits, first.header.bunit) +
                statLine("noise_other", otherNoise, floatDigits, second.header.bunit);
    if (rule.pair == MapPair::index)
        told.text += statLine("frequency", first.header.frequency, floatDigits, "Hz") +
                     statLine("frequency_other", second.header.frequency, floatDigits, "Hz");
    const auto noteBeam = [&told](const std::string& file, const MapHeader& header) {
        if (!header.hasBeam)
            told.notes.push_back(file + ": has no beam; it is taken as that of the other map");
    };
    noteBeam(options.map, first.header);
    noteBeam(wish.other, second.header);
    if (!pair.known)
        told.notes.push_back(wish.other +
                             ": no cell is above the clip in both maps: all are blank");
    return PairFault::none;
}

int makePaired(const ViewOptions& options, MadeMap& made, std::string& text, std::string& error)
{
    const MadeMapWish& wish = options.made;
    FitsMap first, second;
    if (!readMap(options.map, options.plane, first, error) ||
        !readOther(wish.other, options.plane, second, error))
        return 0;
    ProgressLine progress("Regridding " + plainText(wish.other));
    MadeTold told;
    const PairFault fault = pairMaps(options, first, second, made, told, error,
                                     [&](double part) { return progress.show(part); });
    if (fault != PairFault::none) {
        error += offerOf(fault, first.header, second.header);
        return refuse(wish.other, error);
    }
    text = told.text;
    printNotes(told.notes);
    return 1;
}

}  // namespace pavane
