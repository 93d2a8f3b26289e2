#include "apps/simulate/observation.h"

#include "apps/simulate/Noise.h"
#include "apps/simulate/stations.h"
#include "tessel/rounding.h"

#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double speedOfLight = 299792458.0;
constexpr double siderealTurnsPerDay = 1.00273790935;
constexpr double secondsPerDay = 86400.0;
/// West longitude near the middle of the array, where the track is centred on transit.
constexpr double middleLongitude = -107.6;
/// Degrees.
constexpr double jetRightAscension = 83.5;
/// How long the array stays on a source before it goes to the next.
constexpr double scanSeconds = 600;

double radians(double degrees) { return degrees * std::numbers::pi / 180; }

/// Sine of the elevation of a source at Greenwich hour angle `h`, for a station on a round Earth.
double sineOfElevation(const Station& s, double h, double declination)
{
    const double radius = std::sqrt(s.x * s.x + s.y * s.y + s.z * s.z);
    return (std::cos(declination) * (s.x * std::cos(h) - s.y * std::sin(h)) +
            std::sin(declination) * s.z) /
           radius;
}

/// Adds all baselines of a subarray at one time.
void addTime(const Observation& o, const ObservedGroup& like, double h, double dec,
             std::vector<ObservedGroup>& groups)
{
    const double least = std::sin(radians(o.leastElevation));
    const auto takesPart = [&](std::size_t i) {
        return static_cast<int>(i) % o.subarrays + 1 == like.subarray &&
               sineOfElevation(vlbaStations[i], h, dec) >= least;
    };
    for (std::size_t i = 0; i < vlbaStations.size(); ++i) {
        if (!takesPart(i))
            continue;
        for (std::size_t k = i + 1; k < vlbaStations.size(); ++k) {
            if (!takesPart(k))
                continue;
            const double x = vlbaStations[k].x - vlbaStations[i].x;
            const double y = vlbaStations[k].y - vlbaStations[i].y;
            const double z = vlbaStations[k].z - vlbaStations[i].z;
            ObservedGroup group = like;
            group.first = static_cast<int>(i);
            group.second = static_cast<int>(k);
            group.u = std::sin(h) * x + std::cos(h) * y;
            group.v = -std::sin(dec) * std::cos(h) * x + std::sin(dec) * std::sin(h) * y +
                      std::cos(dec) * z;
            group.w = std::cos(dec) * std::cos(h) * x - std::cos(dec) * std::sin(h) * y +
                      std::sin(dec) * z;
            groups.push_back(group);
        }
    }
}

}  // namespace

SourcePlace sourcePlace(const Observation& o, int source)
{
    return {jetRightAscension + 2.5 * source, o.declination - 1.5 * source};
}

double middleHourAngle() { return -middleLongitude; }

std::vector<ObservedGroup> observedGroups(const Observation& o)
{
    std::vector<ObservedGroup> groups;
    const int times = truncated(o.hours * 3600 / o.interval);
    const double turn = 2 * std::numbers::pi * siderealTurnsPerDay / secondsPerDay * o.interval;
    for (int t = 0; t < times; ++t) {
        const double middle = t - 0.5 * (times - 1);
        for (int subarray = 1; subarray <= o.subarrays; ++subarray) {
            ObservedGroup like;
            like.seconds = middle * o.interval;
            like.subarray = subarray;
            like.source = truncated(t * o.interval / scanSeconds + subarray - 1) % o.sources;
            const SourcePlace place = sourcePlace(o, like.source);
            const double h =
                turn * middle - radians(middleLongitude) - radians(place.ra - jetRightAscension);
            addTime(o, like, h, radians(place.dec), groups);
        }
    }
    return groups;
}

Visibilities observe(const Observation& o, const AComponents& model)
{
    Visibilities samples;
    for (const ObservedGroup& group : observedGroups(o))
        for (int f = 0; group.source == 0 && f < o.ifs; ++f) {
            const double wavelengths = (o.frequency + f * o.ifSpacing) / speedOfLight;
            samples.u.push_back(group.u * wavelengths);
            samples.v.push_back(group.v * wavelengths);
        }
    samples.values.resize(samples.u.size());
    samples.weights.assign(samples.u.size(), 1.0);
    model.VfromUV(samples.u.data(), samples.v.data(), static_cast<int>(samples.u.size()),
                  samples.values.data());
    Noise noise(o.seed);
    for (std::complex<double>& value : samples.values)
        value += noise.pair(o.noise);
    return samples;
}

}  // namespace pavane
