#include "apps/view/made_map_options.h"

#include "apps/view/options.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace pavane
{

namespace
{

using Kind = MadeMapWish::Kind;

/// What goes with each kind of map that is made of others.
constexpr std::string_view withMoment[] = {"--batch", "--moment", "--planes",
                                           "--clip",  "--out",    "--errors"};
constexpr std::string_view withSmooth[] = {"--batch", "--smooth", "--plane", "--out"};
/// What goes with such a map alone.
constexpr std::string_view alone[] = {"--clip", "--out", "--errors"};

int goesWith(Kind kind, std::string_view name)
{
    return kind == Kind::smooth ? std::find(std::begin(withSmooth), std::end(withSmooth), name) !=
                                      std::end(withSmooth)
                                : std::find(std::begin(withMoment), std::end(withMoment), name) !=
                                      std::end(withMoment);
}

int contains(const std::string_view* first, const std::string_view* last, std::string_view name)
{
    return std::find(first, last, name) != last;
}

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
    constexpr double perDegree = 3600e3;
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
    beam.major /= perDegree;
    beam.minor /= perDegree;
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

template <std::string MadeMapWish::*file>
int keepFile(const std::string& text, ViewOptions& options, std::string&)
{
    options.made.*file = text;
    return 1;
}

}  // namespace

void addMadeMapOptions(OptionTable<ViewOptions>& table, int traits)
{
    const auto add = [&](const OptionText& text, auto* apply) {
        table.push_back({text, apply, traits, 0, 0});
    };
    add({"--moment", "", "N",
         "make a map of the --planes of a cube: 0 their integral over velocity, 1 the mean "
         "velocity, 2 its dispersion, max the greatest of them",
         "0 1 2 max"},
        readMoment);
    add({"--smooth", "", "BMAJ,BMIN,BPA",
         "convolve the map to this larger beam: full widths in mas, position angle in degrees"},
        readBeam);
    add({"--clip", "", "S",
         "use of each plane only cells above this multiple of its noise (0: all of them)"},
        readClip);
    add({"--out", "", "F.fits", "where the map goes that is made"}, keepFile<&MadeMapWish::out>);
    add({"--errors", "", "F.fits", "where a map of its errors goes"},
        keepFile<&MadeMapWish::errors>);
}

int checkMadeMapOptions(const ViewOptions& options, const GivenArguments<ViewOptions>& given,
                        std::string& error)
{
    const MadeMapWish& made = options.made;
    for (const auto* option : given.options) {
        if (made.wanted() && !goesWith(made.kind, option->name))
            error = std::string(option->name) + " does not go with --" +
                    (made.kind == Kind::smooth ? "smooth" : "moment") +
                    ": that is a step of its own";
        else if (!made.wanted() && contains(std::begin(alone), std::end(alone), option->name))
            error =
                std::string(option->name) + " goes with a map that is made: --moment or --smooth";
        if (!error.empty())
            return 0;
    }
    if (!made.wanted())
        return 1;
    if (options.map.empty())
        error = "no map is named";
    else if (made.out.empty())
        error = "--out FILE is missing: where the map goes that is made";
    else if (made.needsPlanes() && !options.print.hasPlanes())
        error = "--moment wants the planes that it is made of: --planes A-B";
    return error.empty();
}

}  // namespace pavane
