#include "pavane/measures/profiles/sky_ruler.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double degree = std::numbers::pi / 180;
constexpr double arcsecondsPerDegree = 3600;
constexpr double fullTurn = 360;

double angleOf(double east, double north)
{
    const double angle = std::atan2(east, north) / degree;
    // a turn less than nothing is none, also when rounding makes it a full one
    return angle < 0 ? std::fmod(angle + fullTurn, fullTurn) : angle;
}

}  // namespace

double greatCircle(const MapPlace& from, const MapPlace& to, double& angle)
{
    const double turn = (to.x - from.x) * degree;
    const double lat = from.y * degree, otherLat = to.y * degree;
    const double half = std::sin((otherLat - lat) / 2), halfTurn = std::sin(turn / 2);
    // the usual sin(b) cos(a) - cos(b) sin(a) cos(turn), without the difference of near numbers
    const double north =
        std::sin(otherLat - lat) + 2 * std::sin(lat) * std::cos(otherLat) * halfTurn * halfTurn;
    angle = angleOf(std::cos(otherLat) * std::sin(turn), north);
    const double square = half * half + std::cos(lat) * std::cos(otherLat) * halfTurn * halfTurn;
    return 2 * std::asin(std::sqrt(std::clamp(square, 0.0, 1.0))) / degree;
}

MapDistance distanceBetween(const MapPlace& from, const MapPlace& to, const SkyCoordinates& sky,
                            const MapFrame& frame)
{
    MapDistance distance;
    distance.cells = std::hypot(to.x - from.x, to.y - from.y);
    if (sky.isSet()) {
        MapPlace a, b;
        if (!sky.toSky(from.x, from.y, a.x, a.y) || !sky.toSky(to.x, to.y, b.x, b.y))
            return distance;
        distance.arcseconds = greatCircle(a, b, distance.positionAngle) * arcsecondsPerDegree;
    } else if (frame.onSky) {
        const MapPlace a = frame.offsetOf(from.x, from.y), b = frame.offsetOf(to.x, to.y);
        distance.arcseconds = std::hypot(b.x - a.x, b.y - a.y);
        distance.positionAngle = angleOf(b.x - a.x, b.y - a.y);
    } else
        return distance;
    distance.east = distance.arcseconds * std::sin(distance.positionAngle * degree);
    distance.north = distance.arcseconds * std::cos(distance.positionAngle * degree);
    return distance;
}

}  // namespace pavane
