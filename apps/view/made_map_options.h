#pragma once

#include "apps/options/option_table.h"
#include "pavane/measures/maps/moments.h"
#include "pavane/measures/maps/smooth_map.h"

#include <string>

namespace pavane
{

struct ViewOptions;

/// What the command line says of a map that is made of others.
struct MadeMapWish {
    enum class Kind : int { none, moment, smooth };
    Kind kind = Kind::none;
    Moment moment = Moment::integral;
    SkyBeam beam;             ///< to convolve to
    double clip = -1;         ///< in units of the noise; -1: none was given
    std::string out, errors;  ///< files: the map, and that of its errors or ""

    int wanted() const { return kind != Kind::none; }
    int needsPlanes() const { return kind == Kind::moment; }
};

/// The options of such maps, all of which have `traits`, behind those that stand in the table.
void addMadeMapOptions(OptionTable<ViewOptions>& table, int traits);
/// Whether those that were given go together; else `error` is one line.
int checkMadeMapOptions(const ViewOptions& options, const GivenArguments<ViewOptions>& given,
                        std::string& error);

}  // namespace pavane
