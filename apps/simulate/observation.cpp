#include "apps/simulate/observation.h"

#include "apps/simulate/stations.h"
#include "tessel/rounding.h"

#include <cmath>
#include <numbers>
#include <random>

namespace pavane
{

namespace
{

constexpr double speedOfLight = 299792458.0;
constexpr double siderealTurnsPerDay = 1.00273790935;
constexpr double secondsPerDay = 86400.0;
/// West longitude near the middle of the array, where the track is centred on transit.
constexpr double middleLongitude = -107.6;

double radians(double degrees) { return degrees * std::numbers::pi / 180; }

/// Sine of the elevation of a source at Greenwich hour angle `h`, for a station on a round Earth.
double sineOfElevation(const Station& s, double h, double declination)
{
    const double radius = std::sqrt(s.x * s.x + s.y * s.y + s.z * s.z);
    return (std::cos(declination) * (s.x * std::cos(h) - s.y * std::sin(h)) +
            std::sin(declination) * s.z) /
           radius;
}

/// Adds the samples of all baselines at one time.
void addTime(const Observation& o, double h, Visibilities& samples)
{
    const double dec = radians(o.declination);
    const double least = std::sin(radians(o.leastElevation));
    for (std::size_t i = 0; i < vlbaStations.size(); ++i) {
        if (sineOfElevation(vlbaStations[i], h, dec) < least)
            continue;
        for (std::size_t k = i + 1; k < vlbaStations.size(); ++k) {
            const Station& a = vlbaStations[i];
            const Station& b = vlbaStations[k];
            if (sineOfElevation(b, h, dec) < least)
                continue;
            const double x = b.x - a.x;
            const double y = b.y - a.y;
            const double z = b.z - a.z;
            const double u = std::sin(h) * x + std::cos(h) * y;
            const double v = -std::sin(dec) * std::cos(h) * x + std::sin(dec) * std::sin(h) * y +
                             std::cos(dec) * z;
            for (int f = 0; f < o.ifs; ++f) {
                const double wavelengths = (o.frequency + f * o.ifSpacing) / speedOfLight;
                samples.u.push_back(u * wavelengths);
                samples.v.push_back(v * wavelengths);
            }
        }
    }
}

/// Normal deviates by the polar method of Marsaglia and Bray (1964); the standard library's own
/// differ from one library to the next.
class Noise
{
public:
    explicit Noise(std::uint64_t seed) : engine_(seed) {}
    std::complex<double> pair(double sigma)
    {
        double x = 0;
        double y = 0;
        double r = 0;
        do {
            x = uniform();
            y = uniform();
            r = x * x + y * y;
        } while (r >= 1 || r == 0);
        const double scale = sigma * std::sqrt(-2 * std::log(r) / r);
        return {x * scale, y * scale};
    }

private:
    double uniform() { return static_cast<double>(engine_() >> 11) * 0x1p-52 - 1.0; }
    std::mt19937_64 engine_;
};

}  // namespace

Visibilities observe(const Observation& o, const AComponents& model)
{
    Visibilities samples;
    const int times = truncated(o.hours * 3600 / o.interval);
    const double turn = 2 * std::numbers::pi * siderealTurnsPerDay / secondsPerDay * o.interval;
    for (int t = 0; t < times; ++t)
        addTime(o, turn * (t - 0.5 * (times - 1)) - radians(middleLongitude), samples);
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
