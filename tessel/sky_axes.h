#pragma once

#include "tessel/api.h"

#include <string>

namespace pavane
{

/// What the first two axes of an image are by their CTYPE. Names as the FITS papers on world
/// coordinates give them (Calabretta and Greisen 2002, tables 1 and 2).
struct SkyAxes {
    enum class Kind {
        none,        ///< not a pair of longitude and latitude
        equatorial,  ///< RA, DEC
        galactic,    ///< GLON, GLAT
        ecliptic,    ///< ELON, ELAT
        other        ///< another pair, whose frame is not known here
    };
    Kind kind = Kind::none;
    int longitude = 0;       ///< which of the two axes is the longitude: 0 or 1
    std::string projection;  ///< what stands behind the dashes, the same on both; "" when nothing
};

/// Reads the CTYPE of the first and the second axis, blanks cut. The number of dashes does not
/// matter: some writers miscount them.
PAVANE_API SkyAxes skyAxesOf(const std::string& first, const std::string& second);

}  // namespace pavane
