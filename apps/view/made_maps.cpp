#include "apps/view/made_maps.h"

#include "apps/view/batch_output.h"
#include "apps/view/cubes/position_velocity.h"
#include "apps/view/options.h"
#include "apps/view/overlays.h"
#include "apps/view/paired_maps.h"
#include "apps/view/progress.h"
#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/map_statistics.h"
#include "tessel/fits_map.h"
#include "tessel/FitsCubeReader.h"
#include "tessel/made_map.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/spectral_axis.h"
#include "tessel/value_text.h"

#include <cmath>
#include <vector>

namespace pavane
{

namespace
{

/// Digits that tell any two 32-bit floats apart.
constexpr int floatDigits = 9;

int refuse(const std::string& file, std::string& error)
{
    error.insert(0, file + ": ");
    return 0;
}

std::string rangeText(const AMatrix<float>& cells, const std::string& unit)
{
    const MapRange range = mapRange(AFloatMatrixAccess(cells));
    std::int64_t known = 0;
    for (int r = 0; r < cells.rows(); ++r)
        for (int c = 0; c < cells.columns(); ++c)
            known += std::isfinite(cells(r, c));
    const double none = std::numeric_limits<double>::quiet_NaN();
    return "cells " + std::to_string(known) + " cells\n" +
           statLine("least", range.isEmpty() ? none : range.least, floatDigits, unit) +
           statLine("greatest", range.isEmpty() ? none : range.greatest, floatDigits, unit);
}

std::string momentName(Moment moment)
{
    return moment == Moment::greatest ? "greatest"
                                      : "moment " + std::to_string(static_cast<int>(moment));
}

/// How the map came about, in lines of a header.
std::vector<std::string> momentHistory(const ViewOptions& options, const SpectralAxis& axis,
                                       const std::vector<MomentPlane>& planes, double clip)
{
    const PrintWish& print = options.print;
    const std::string convention = axis.convention();
    std::vector<std::string> lines = {"pavane: " + momentName(options.made.moment) + " of planes " +
                                      std::to_string(print.firstPlane) + "-" +
                                      std::to_string(print.lastPlane) + " (from 0) of " +
                                      plainText(baseNameOf(options.map))};
    if (axis.kind() != SpectralAxis::Kind::none)
        lines.push_back("pavane: from " + valToStr(planes.front().value, floatDigits) + " to " +
                        valToStr(planes.back().value, floatDigits) + " " + axis.unit() +
                        (convention.empty() ? "" : ", " + convention + " convention"));
    if (clip > 0)
        lines.push_back("pavane: cells above " + valToStr(clip) + " times the noise of a plane");
    return lines;
}

int makeMoment(const ViewOptions& options, MadeMap& made, MadeTold& told, std::string& error,
               const ProgressFunction& progress)
{
    const MadeMapWish& wish = options.made;
    const PrintWish& print = options.print;
    FitsCubeReader cube;
    CubePart part;
    std::string unit;
    if (!cube.open(options.map, error) ||
        !planesBetween(cube.header(0), print.firstPlane, print.lastPlane,
                       wish.moment != Moment::greatest, part.planes, unit, error))
        return 0;
    part.rows = cube.rows();
    part.columns = cube.columns();
    part.isWhole = cube.isPacked();
    part.read = [&](int plane, int first, int count, float* cells, std::string& fault) {
        return cube.read(plane, first, count, cells, fault);
    };
    const double clip = wish.clip > 0 ? wish.clip : 0;
    const int needsNoise = clip > 0 || !wish.errors.empty();
    const double noiseShare = needsNoise ? 0.5 : 0;
    std::vector<MomentMap> maps(1);
    maps[0].moment = wish.moment;
    if ((needsNoise &&
         !findPlaneNoises(part, error, [&](double x) { return progress(x * noiseShare); })) ||
        !findMoments(part, clip, maps, error,
                     [&](double x) { return progress(noiseShare + x * (1 - noiseShare)); }))
        return 0;
    // what the header tells beside the sky is that of the middle of the range
    made.header = cube.header(part.planes[part.planes.size() / 2].plane);
    const SpectralAxis axis = SpectralAxis::of(made.header);
    made.header.bunit = momentUnit(wish.moment, made.header.bunit, unit);
    made.history = momentHistory(options, axis, part.planes, clip);
    made.cells = std::move(maps[0].cells);
    made.errors = std::move(maps[0].errors);
    told.text = "planes " + std::to_string(part.planes.size()) + " planes\n";
    if (axis.kind() != SpectralAxis::Kind::none)
        told.text += statLine("first_plane", part.planes.front().value, floatDigits, unit) +
                     statLine("last_plane", part.planes.back().value, floatDigits, unit);
    const auto asked = static_cast<std::size_t>(print.lastPlane - print.firstPlane) + 1;
    if (part.planes.size() < asked)
        told.notes.push_back(options.map + ": " + std::to_string(asked - part.planes.size()) +
                             " planes of another Stokes parameter than the first were left out");
    return 1;
}

std::string beamText(const SkyBeam& beam)
{
    constexpr double masPerDegree = 3600e3;
    return valToStr(beam.major * masPerDegree, floatDigits) + " x " +
           valToStr(beam.minor * masPerDegree, floatDigits) + " mas, " +
           valToStr(beam.angle, floatDigits) + " deg";
}

int makeSmooth(const ViewOptions& options, MadeMap& made, MadeTold& told, std::string& error,
               const ProgressFunction& progress)
{
    FitsMap map;
    constexpr double readingShare = 0.2;
    SmoothedMap smoothed;
    if (!readFitsMap(options.map, options.plane, map, error,
                     [&](double x) { return progress(x * readingShare); }) ||
        !smoothMap(map.cells, map.header, options.made.beam, smoothed, error,
                   [&](double x) { return progress(readingShare + x * (1 - readingShare)); }))
        return 0;
    made.cells = std::move(smoothed.cells);
    made.header = std::move(smoothed.header);
    made.history = {"pavane: " + plainText(baseNameOf(options.map)) + " (plane " +
                        std::to_string(map.header.plane) + ", from 0), beam " +
                        beamText({map.header.bmaj, map.header.bmin, map.header.bpa}),
                    "pavane: convolved to the beam " + beamText(options.made.beam)};
    told.text = statLine("factor", smoothed.factor, floatDigits, "") + "incomplete_cells " +
                std::to_string(smoothed.incomplete) + " cells\n";
    if (smoothed.incomplete > 0)
        told.notes.push_back(options.map + ": " + std::to_string(smoothed.incomplete) +
                             " cells lie within a beam of the edge or of a blank cell; their "
                             "values lack what is not known there");
    return 1;
}

}  // namespace

int makeOfOne(const ViewOptions& options, MadeMap& made, MadeTold& told, std::string& error,
              const ProgressFunction& progress)
{
    if (options.made.kind == MadeMapWish::Kind::polarisation)
        return makePolarisation(options, made, told, error, progress);
    const auto make = options.made.kind == MadeMapWish::Kind::smooth ? makeSmooth : makeMoment;
    return make(options, made, told, error, progress) || refuse(options.map, error);
}

int saveMadeMap(const ViewOptions& options, MadeMap& made, std::string& error,
                const ProgressFunction& progress)
{
    const auto put = [&](const std::string& file, const AMatrix<float>& cells) {
        return writeMadeMap(file, cells, made.header, made.history, error, progress) ||
               refuse(file, error);
    };
    if (!put(options.made.out, made.cells))
        return 0;
    if (options.made.errors.empty())
        return 1;
    made.history.emplace_back("pavane: these are the errors of that map");
    return put(options.made.errors, made.errors);
}

int writeMadeMaps(const ViewOptions& options, std::string& error)
{
    using Kind = MadeMapWish::Kind;
    const Kind kind = options.made.kind;
    if (kind == Kind::positionVelocity)
        return writePositionVelocity(options, error);
    MadeMap made;
    MadeTold told;
    int isMade = 0;
    if (kind == Kind::regrid || kind == Kind::pair) {
        isMade = kind == Kind::pair ? makePaired(options, made, told.text, error)
                                    : makeRegridded(options, made, told.text, error);
    } else {
        ProgressLine progress((kind == Kind::smooth ? "Convolving " : "Reading ") +
                              plainText(options.map));
        isMade =
            makeOfOne(options, made, told, error, [&](double part) { return progress.show(part); });
    }
    if (!isMade)
        return 0;
    printNotes(told.notes);
    {
        ProgressLine progress("Writing " + plainText(options.made.out));
        if (!saveMadeMap(options, made, error, [&](double part) { return progress.show(part); }))
            return 0;
    }
    return printText(told.text + rangeText(made.cells, made.header.bunit), error);
}

}  // namespace pavane
