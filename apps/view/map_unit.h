#pragma once

#include <string>

namespace pavane
{

/// The unit of a map's values, taken apart.
struct MapUnit {
    double factor = 1;  ///< of the prefix: 1e-3 for "mJy/beam"
    std::string name;   ///< without the prefix, as papers write it: "Jy/beam" for "JY/BEAM"
    int isFlux = 0;     ///< janskys, alone, per beam or per pixel
    int perPixel = 0;   ///< the last of these
};

/// Takes BUNIT apart. What does not begin with janskys, kelvins or hertz is a name without prefix.
MapUnit mapUnit(const std::string& bunit);

}  // namespace pavane
