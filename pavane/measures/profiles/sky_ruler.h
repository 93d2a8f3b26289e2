#pragma once

#include "pavane/axes/maps/MapFrame.h"
#include "platform/api.h"
#include "tessel/SkyCoordinates.h"

#include <limits>

namespace pavane
{

/// How far one place of a map lies from another. NaN is what is not known.
struct MapDistance {
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();

    double cells = none;
    double arcseconds = none;          ///< along the great circle
    double positionAngle = none;       ///< degrees at the first place, 0 to 360, north through east
    double east = none, north = none;  ///< arcseconds: the distance times sine and cosine of that
};

/// Between places in cells from 0 (x = column, y = row). On the sky where `sky` is set and both
/// places lie on it; by the steps of the frame where the map has only those; else in cells alone.
PAVANE_API MapDistance distanceBetween(const MapPlace& from, const MapPlace& to,
                                       const SkyCoordinates& sky, const MapFrame& frame);

/// The angle between two positions in degrees (longitude x, latitude y), in degrees; right for the
/// smallest too (haversine formula). `angle` becomes the position angle of the second one, degrees.
PAVANE_API double greatCircle(const MapPlace& from, const MapPlace& to, double& angle);

}  // namespace pavane
