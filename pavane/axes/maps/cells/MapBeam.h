#pragma once

namespace pavane
{

/// The restoring beam of a map: full widths at half maximum in units of RP and the position angle
/// of the major axis in degrees, north (y) through east, where right ascension grows to the left.
struct MapBeam {
    double major = 0;
    double minor = 0;
    double angle = 0;
    int isSet() const { return major > 0 && minor > 0; }
    friend bool operator==(const MapBeam&, const MapBeam&) = default;
};

}  // namespace pavane
