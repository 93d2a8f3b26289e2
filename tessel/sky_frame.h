#pragma once

#include "tessel/api.h"

#include <string>

namespace pavane
{

/// A frame that positions on the sky are given in. A plain value.
struct SkyFrame {
    enum class System { fk5, icrs, fk4, galactic, ecliptic };
    System system = System::icrs;
    /// Years: Julian of FK5 and of the mean ecliptic (barycentric, IAU 2006), Besselian of FK4,
    /// where only 1950 is known. Others have none and keep 2000.
    double equinox = 2000;

    friend bool operator==(const SkyFrame&, const SkyFrame&) = default;
};

/// Non-zero when positions of the frame can be converted: FK4 only at 1950, equinoxes only from
/// 1000 to 3000.
PAVANE_API int isKnown(const SkyFrame& frame);

/// "FK5", "FK5 at 1975", "FK4 at 1950", "ICRS", "galactic", "ecliptic" ...
PAVANE_API std::string nameOf(const SkyFrame& frame);

/// Turns a position (degrees) into another frame: longitude 0 to below 360. Done by ERFA as
/// Astropy does it, to 0.001 mas; FK4 (no proper motion, epoch 1950) to 20 mas, and back to where
/// it came from. The same frame gives the same numbers. 0, and the results left alone, when a frame
/// is not known or a number is not a position.
PAVANE_API int convertSky(const SkyFrame& from, const SkyFrame& to, double longitude,
                          double latitude, double& toLongitude, double& toLatitude);

}  // namespace pavane
