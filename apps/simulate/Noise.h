#pragma once

#include <cmath>
#include <complex>
#include <cstdint>
#include <random>

namespace pavane
{

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
    /// A number below `count`, each about as likely.
    std::uint64_t below(std::uint64_t count) { return engine_() % count; }

private:
    double uniform() { return static_cast<double>(engine_() >> 11) * 0x1p-52 - 1.0; }
    std::mt19937_64 engine_;
};

}  // namespace pavane
