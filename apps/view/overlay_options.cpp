#include "apps/view/overlay_options.h"

#include "apps/view/options.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr std::string_view names[] = {"--contours", "--vectors", "--stokes-q", "--stokes-u",
                                      "--polarisation"};

int readVectors(const std::string& text, ViewOptions& options, std::string& error)
{
    options.overlay.vectors = text == "degree" || text == "intensity";
    options.overlay.length = text == "degree" ? PolarKind::degree : PolarKind::intensity;
    if (!options.overlay.vectors)
        error = "--vectors knows degree and intensity, not '" + text + "'";
    return options.overlay.vectors;
}

int readPolarisation(const std::string& text, ViewOptions& options, std::string& error)
{
    static constexpr std::string_view kinds[] = {"intensity", "degree", "angle"};
    const auto* const found = std::find(std::begin(kinds), std::end(kinds), text);
    if (found == std::end(kinds)) {
        error = "--polarisation knows intensity, degree and angle, not '" + text + "'";
        return 0;
    }
    options.made.kind = MadeMapWish::Kind::polarisation;
    options.made.polarisation = static_cast<PolarKind>(found - std::begin(kinds));
    return 1;
}

template <std::string OverlayWish::*file>
int keepFile(const std::string& text, ViewOptions& options, std::string&)
{
    options.overlay.*file = text;
    return 1;
}

}  // namespace

void addOverlayOptions(OptionTable<ViewOptions>& table, int traits)
{
    const auto add = [&](const OptionText& text, auto* apply) {
        table.push_back({text, apply, traits, 0, 0});
    };
    add({"--contours", "", "OTHER.fits",
         "draw the contours of this map over the colours, those of --levels; it may have other "
         "cells, another place, frame and projection, and is moved by --shift"},
        keepFile<&OverlayWish::contours>);
    add({"--vectors", "", "WHAT",
         "draw vectors of linear polarisation, as long as the degree or the polarised intensity, "
         "where the intensity is above the --clip (3 without it); Q and U are planes of the "
         "map's file unless they are named",
         "degree intensity"},
        readVectors);
    add({"--polarisation", "", "WHAT",
         "make a map of the polarised intensity, of its degree or of its angle, from Q and U",
         "intensity degree angle"},
        readPolarisation);
    add({"--stokes-q", "", "Q.fits", "Stokes Q for --vectors and --polarisation"},
        keepFile<&OverlayWish::stokesQ>);
    add({"--stokes-u", "", "U.fits", "and U"}, keepFile<&OverlayWish::stokesU>);
}

int isOverlayOption(std::string_view name)
{
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

int checkOverlayOptions(const ViewOptions& options, std::string& error)
{
    const OverlayWish& wish = options.overlay;
    const int makesPolarisation = options.made.kind == MadeMapWish::Kind::polarisation;
    if (wish.stokesQ.empty() != wish.stokesU.empty())
        error = "--stokes-q and --stokes-u go together";
    else if (!wish.stokesQ.empty() && !wish.vectors && !makesPolarisation)
        error = "--stokes-q and --stokes-u go with --vectors or --polarisation";
    else if (wish.wanted() && !options.wantsPicture() && !options.print.wanted())
        error = "--contours and --vectors go with a picture: --png, --pdf, --svg or --print";
    else if (wish.wanted() && (options.print.hasPlanes() || options.surface.wanted))
        error = "--contours and --vectors lie over one map, not --planes or --surface";
    else if (wish.wanted() && options.wantsPrintedTable())
        error = "--contours and --vectors lie over a picture: give --table a --tsv";
    return error.empty();
}

}  // namespace pavane
