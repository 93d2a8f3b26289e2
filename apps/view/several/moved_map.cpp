#include "apps/view/several/moved_map.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double degree = std::numbers::pi / 180;

}  // namespace

int moveMap(const SkyCoordinates& sky, const SkyFrame& in, SkyShift moved, MapHeader& header)
{
    double l = 0, b = 0;
    if (!sky.isSet() || header.axes.size() < 2 ||
        !convertSky(sky.skyFrame(), in, sky.referenceLongitude(), sky.referenceLatitude(), l, b))
        return 0;
    const double way = std::hypot(moved.east, moved.north) * degree;
    const double angle = std::atan2(moved.east, moved.north);
    const double sinB = std::sin(b * degree) * std::cos(way) +
                        std::cos(b * degree) * std::sin(way) * std::cos(angle);
    const double east = std::sin(angle) * std::sin(way);
    const double north = std::cos(way) * std::cos(b * degree) -
                         std::sin(way) * std::sin(b * degree) * std::cos(angle);
    l += std::atan2(east, north) / degree;
    b = std::atan2(sinB, std::hypot(east, north)) / degree;
    double longitude = 0, latitude = 0;
    if (!convertSky(in, sky.skyFrame(), l, b, longitude, latitude))
        return 0;
    const auto axis = static_cast<std::size_t>(std::clamp(header.longitudeAxis, 0, 1));
    header.axes[axis].crval = longitude;
    header.axes[1 - axis].crval = latitude;
    return 1;
}

SkyShift shiftOf(const SkyCoordinates& own, const SkyCoordinates& moved, const SkyFrame& in)
{
    double l = 0, b = 0, toL = 0, toB = 0;
    if (!own.isSet() || !moved.isSet() ||
        !convertSky(own.skyFrame(), in, own.referenceLongitude(), own.referenceLatitude(), l, b) ||
        !convertSky(moved.skyFrame(), in, moved.referenceLongitude(), moved.referenceLatitude(),
                    toL, toB))
        return {};
    const double dl = std::remainder(toL - l, 360.0) * degree;
    const double half = std::sin(dl / 2);
    // cos dl = 1 - 2 half^2 keeps the digits of small ways
    const double east = std::cos(toB * degree) * std::sin(dl);
    const double north = std::sin((toB - b) * degree) +
                         2 * half * half * std::sin(b * degree) * std::cos(toB * degree);
    const double across = std::hypot(east, north);
    if (!(across > 0))
        return {};
    const double way = std::asin(std::min(across, 1.0)) / degree;
    return {way * east / across, way * north / across};
}

}  // namespace pavane
