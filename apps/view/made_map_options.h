#pragma once

#include "apps/options/option_table.h"
#include "pavane/measures/maps/moments.h"
#include "pavane/measures/maps/pair_maps.h"
#include "pavane/measures/maps/polarisation.h"
#include "pavane/measures/maps/smooth_map.h"
#include "pavane/measures/profiles/MapProfile.h"
#include "tessel/CellMapping.h"

#include <string>
#include <string_view>

namespace pavane
{

struct ViewOptions;

/// What the command line says of a map that is made of others.
struct MadeMapWish {
    enum class Kind : int { none, moment, smooth, regrid, pair, polarisation, positionVelocity };
    Kind kind = Kind::none;
    Moment moment = Moment::integral;
    SkyBeam beam;  ///< to convolve to
    MapPair pair = MapPair::difference;
    PolarKind polarisation = PolarKind::intensity;
    std::string other;      ///< the second map of a pair
    std::string like;       ///< the map onto whose grid one is brought, also a mask
    std::string findShift;  ///< the map whose shift against the first one is found
    int regrid = 0;         ///< the second map of a pair is brought onto the grid of the first
    SkyShift shift;         ///< of the map that is brought onto another grid
    SkyShift secondShift;   ///< of the third map of --rgb
    int hasShift = 0, hasSecondShift = 0;
    double calibration = 0;   ///< a part of the values
    ProfileLine line;         ///< of a position-velocity map
    double clip = -1;         ///< in units of the noise; -1: none was given
    std::string out, errors;  ///< files: the map, and that of its errors or ""

    int wanted() const { return kind != Kind::none; }
    int needsPlanes() const { return kind == Kind::moment; }
    int takesPlanes() const { return needsPlanes() || kind == Kind::positionVelocity; }
};

/// The options of such maps, all of which have `traits`, behind those that stand in the table.
void addMadeMapOptions(OptionTable<ViewOptions>& table, int traits);
/// Non-zero for those of two maps, which make no sense for a file of visibilities.
int isMadeMapOption(std::string_view name);
/// Whether those that were given go together; else `error` is one line.
int checkMadeMapOptions(const ViewOptions& options, const GivenArguments<ViewOptions>& given,
                        std::string& error);

}  // namespace pavane
