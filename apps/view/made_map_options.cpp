#include "apps/view/made_map_options.h"

#include "apps/view/options.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

namespace pavane
{

namespace
{

using Kind = MadeMapWish::Kind;

constexpr std::string_view pairNames[] = {"--difference", "--ratio", "--index"};

constexpr std::string_view regridNames[] = {"--regrid", "--like", "--shift", "--calibration",
                                            "--find-shift"};

std::string_view nameOf(const MadeMapWish& made)
{
    switch (made.kind) {
    case Kind::moment:
        return "--moment";
    case Kind::smooth:
        return "--smooth";
    case Kind::regrid:
        return "--regrid";
    case Kind::pair:
        return pairNames[static_cast<int>(made.pair)];
    case Kind::polarisation:
        return "--polarisation";
    case Kind::positionVelocity:
        return "--pv";
    case Kind::none:
        break;
    }
    return "";
}

using Names = std::vector<std::string_view>;

/// What goes with each kind of map that is made of others, beside its own option.
Names companionsOf(const MadeMapWish& made)
{
    switch (made.kind) {
    case Kind::moment:
        return {"--batch", "--planes", "--clip", "--out", "--errors"};
    case Kind::smooth:
        return {"--batch", "--plane", "--out"};
    case Kind::regrid:
        return {"--batch", "--plane", "--like", "--shift", "--out"};
    case Kind::polarisation:
        return {"--batch", "--plane", "--stokes-q", "--stokes-u", "--clip", "--out", "--errors"};
    case Kind::positionVelocity:
        return {"--batch", "--planes", "--across", "--out"};
    case Kind::pair:
        break;
    case Kind::none:
        return {};
    }
    Names names = {"--batch",       "--plane",  "--regrid", "--shift",
                   "--calibration", "--errors", "--out"};
    if (made.pair != MapPair::difference)
        names.emplace_back("--clip");
    return names;
}

/// What the picture of such a map may have.
constexpr std::string_view pictureNames[] = {"--png",      "--pdf",    "--svg",     "--size",
                                             "--palette",  "--levels", "--scale",   "--range",
                                             "--contrast", "--aspect", "--sky-grid"};

/// What goes with such a map alone.
constexpr std::string_view alone[] = {"--clip", "--out", "--errors", "--shift", "--calibration"};

/// What lies over a picture, and one of three maps, has some of these options too.
int goesWithOverlay(const ViewOptions& options, std::string_view name)
{
    return (name == "--clip" && options.overlay.vectors) ||
           (name == "--shift" && !options.overlay.contours.empty()) ||
           (options.rgb.wanted && (name == "--shift" || name == "--out"));
}

template <typename Range>
int contains(const Range& range, std::string_view name)
{
    return std::find(std::begin(range), std::end(range), name) != std::end(range);
}

constexpr double masPerDegree = 3600e3;

int readMoment(const std::string& text, ViewOptions& options, std::string& error)
{
    static constexpr std::string_view names[] = {"0", "1", "2", "max"};
    const auto* const found = std::find(std::begin(names), std::end(names), text);
    if (found == std::end(names)) {
        error = "--moment knows 0, 1, 2 and max, not '" + text + "'";
        return 0;
    }
    options.made.kind = Kind::moment;
    options.made.moment = static_cast<Moment>(found - std::begin(names));
    return 1;
}

int readBeam(const std::string& text, ViewOptions& options, std::string& error)
{
    const std::string_view all = text;
    const std::size_t first = std::min(all.find(','), all.size());
    const std::size_t second = std::min(all.find(',', first + 1), all.size());
    SkyBeam& beam = options.made.beam;
    if (second == all.size() || !stoval(all.substr(0, first), beam.major) ||
        !stoval(all.substr(first + 1, second - first - 1), beam.minor) ||
        !stoval(all.substr(second + 1), beam.angle) || !(beam.minor > 0) ||
        !(beam.major >= beam.minor) || !std::isfinite(beam.major) || !std::isfinite(beam.angle)) {
        error =
            "--smooth wants BMAJ,BMIN in mas, the longer axis first, and BPA in degrees, not '" +
            text + "'";
        return 0;
    }
    beam.major /= masPerDegree;
    beam.minor /= masPerDegree;
    options.made.kind = Kind::smooth;
    return 1;
}

int readClip(const std::string& text, ViewOptions& options, std::string& error)
{
    if (stoval(text, options.made.clip) && std::isfinite(options.made.clip) &&
        options.made.clip >= 0)
        return 1;
    error = "--clip wants a multiple of the noise, 0 for none, not '" + text + "'";
    return 0;
}

template <MapPair pair>
int readPair(const std::string& text, ViewOptions& options, std::string&)
{
    options.made.kind = Kind::pair;
    options.made.pair = pair;
    options.made.other = text;
    return 1;
}

int readRegrid(const std::string&, ViewOptions& options, std::string&)
{
    options.made.regrid = 1;
    if (options.made.kind == Kind::none)
        options.made.kind = Kind::regrid;
    return 1;
}

int readShift(const std::string& text, ViewOptions& options, std::string& error)
{
    constexpr double most = 10;  // degrees
    if (options.made.hasSecondShift) {
        error = "--shift is given three times";
        return 0;
    }
    const int isSecond = options.made.hasShift;
    SkyShift& shift = isSecond ? options.made.secondShift : options.made.shift;
    (isSecond ? options.made.hasSecondShift : options.made.hasShift) = 1;
    const std::string_view all = text;
    const std::size_t comma = std::min(all.find(','), all.size());
    if (comma == all.size() || !stoval(all.substr(0, comma), shift.east) ||
        !stoval(all.substr(comma + 1), shift.north) ||
        !(std::hypot(shift.east, shift.north) <= most * masPerDegree)) {
        error = "--shift wants EAST,NORTH in mas, 10 degrees at most, not '" + text + "'";
        return 0;
    }
    shift.east /= masPerDegree;
    shift.north /= masPerDegree;
    return 1;
}

int readCalibration(const std::string& text, ViewOptions& options, std::string& error)
{
    double& part = options.made.calibration;
    if (stoval(text, part) && part >= 0 && part <= 100) {
        part /= 100;
        return 1;
    }
    error = "--calibration wants 0 to 100 per cent, not '" + text + "'";
    return 0;
}

int readVelocityLine(const std::string& text, ViewOptions& options, std::string& error)
{
    options.made.kind = Kind::positionVelocity;
    return readProfileLine(text, "--pv", options.made.line, error);
}

template <std::string MadeMapWish::*file>
int keepFile(const std::string& text, ViewOptions& options, std::string&)
{
    options.made.*file = text;
    return 1;
}

}  // namespace

void addMadeMapOptions(OptionTable<ViewOptions>& table, int traits)
{
    const auto add = [&](const OptionText& text, auto* apply, int repeats = 0) {
        table.push_back({text, apply, traits, repeats, 0});
    };
    add({"--moment", "", "N",
         "make a map of the --planes of a cube: 0 their integral over velocity, 1 the mean "
         "velocity, 2 its dispersion, max the greatest of them",
         "0 1 2 max"},
        readMoment);
    add({"--pv", "", "X1,Y1,X2,Y2[,...][,WIDTH]",
         "make the position-velocity map of a cube along a line, as --profile has it, with "
         "--across; of all planes of the first Stokes parameter, or of --planes"},
        readVelocityLine);
    add({"--smooth", "", "BMAJ,BMIN,BPA",
         "convolve the map to this larger beam: full widths in mas, position angle in degrees"},
        readBeam);
    add({"--difference", "", "OTHER.fits", "make the map minus this one"},
        readPair<MapPair::difference>);
    add({"--ratio", "", "OTHER.fits", "make the map over this one, where both are above the clip"},
        readPair<MapPair::ratio>);
    add({"--index", "", "OTHER.fits",
         "make the spectral index between the map and this one, where both are above the clip: the "
         "power of the frequency that the values go with"},
        readPair<MapPair::index>);
    add({"--regrid", "", "",
         "bring the second map of --difference, --ratio or --index onto the cells of the first, "
         "through both positions; without one of these the map onto those of --like"},
        readRegrid);
    add({"--like", "", "OTHER.fits", "the map whose cells --regrid and --mask are made for"},
        keepFile<&MadeMapWish::like>);
    add({"--find-shift", "", "OTHER.fits",
         "print the --shift that lays this map best on the first one, with its error, over the "
         "cells of --areas or all: leave out what differs, as a core"},
        keepFile<&MadeMapWish::findShift>);
    add({"--shift", "", "EAST,NORTH",
         "move the map that is brought onto other cells, in mas; moves the second one of two maps "
         "also where both have the same cells, and that of --contours; of --rgb the second map, "
         "and "
         "given again the third"},
        readShift, 1);
    add({"--calibration", "", "P",
         "take P per cent of each value into the errors of --difference, --ratio and --index"},
        readCalibration);
    add({"--clip", "", "S",
         "use only cells above this multiple of the noise: of each plane for --moment (0, as "
         "without it: all of them), of the maps for --ratio, --index, --polarisation and "
         "--vectors (3 without it)"},
        readClip);
    add({"--out", "", "F.fits", "where the map goes that is made"}, keepFile<&MadeMapWish::out>);
    add({"--errors", "", "F.fits", "where a map of its errors goes"},
        keepFile<&MadeMapWish::errors>);
}

int isMadeMapOption(std::string_view name)
{
    return contains(pairNames, name) || contains(regridNames, name);
}

int checkMadeMapOptions(const ViewOptions& options, const GivenArguments<ViewOptions>& given,
                        std::string& error)
{
    const MadeMapWish& made = options.made;
    const std::string name(nameOf(made));
    const Names companions = companionsOf(made);
    for (const auto* option : given.options) {
        if (made.wanted() && option->name != name && !contains(companions, option->name) &&
            !contains(pictureNames, option->name))
            error = std::string(option->name) + " does not go with " + name +
                    ": that is a step of its own";
        else if (!made.wanted() && contains(alone, option->name) &&
                 !goesWithOverlay(options, option->name))
            error =
                std::string(option->name) +
                " goes with a map that is made: --moment, --pv, --smooth, --regrid, --difference, "
                "--ratio, --index or --rgb";
        if (!error.empty())
            return 0;
    }
    if (!made.like.empty() && made.kind != Kind::regrid && options.mask.empty())
        error = "--like goes with --regrid or --mask";
    if (!made.wanted())
        return error.empty();
    if (options.map.empty())
        error = "no map is named";
    else if (made.out.empty())
        error = "--out FILE is missing: where the map goes that is made";
    else if (made.needsPlanes() && !options.print.hasPlanes())
        error = "--moment wants the planes that it is made of: --planes A-B";
    else if (made.kind == Kind::regrid && made.like.empty())
        error = "--regrid wants the map whose cells it is for: --like OTHER.fits";
    return error.empty();
}

}  // namespace pavane
