#pragma once

#include "platform/api.h"

#include <string>

namespace pavane
{

/// The unit of a map's values, taken apart.
struct MapUnit {
    double factor = 1;   ///< of the prefix: 1e-3 for "mJy/beam"
    std::string prefix;  ///< as it is written: "m"
    std::string name;    ///< without the prefix, as papers write it: "Jy/beam" for "JY BEAM-1"
    int isFlux = 0;      ///< janskys, alone, per beam or per pixel, also integrated
    std::string width;   ///< what they are integrated over, as " km/s" or " Hz"; else empty
    int perPixel = 0;    ///< the last of these
};

/// Takes BUNIT apart. What does not begin with a unit that takes prefixes is a name without one.
PAVANE_API MapUnit mapUnit(const std::string& bunit);

/// Non-zero when a prefix may stand before the unit: "Jy/beam", "m/s"; not "km/s", "deg", "m^2",
/// "10^-15 erg/s".
PAVANE_API int takesPrefix(const std::string& unit);

/// The power of ten, a multiple of 3 from -12 to 12, that leaves one to three digits before the
/// point of a value with so many digits in all; 0 beyond these, where powers are clearer in the
/// number.
PAVANE_API int prefixPower(double value, int digits);

/// The unit in brackets for the end of the title of an axis or bar: " [%sJy/beam]" with the marker
/// of a prefix, or "~ [km/s]", where a power of ten comes before the unit.
PAVANE_API std::string titleUnit(const std::string& unit);

}  // namespace pavane
