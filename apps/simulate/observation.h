#pragma once

#include "pavane/tables/components/AComponents.h"

#include <complex>
#include <cstdint>
#include <vector>

namespace pavane
{

/// What is observed, and how.
struct Observation {
    double declination = 35.0;    ///< degrees
    double frequency = 15.285e9;  ///< Hz, of the first IF
    double ifSpacing = 128e6;     ///< Hz
    int ifs = 4;
    double hours = 8.0;           ///< length of the track, centred on the array's transit
    double interval = 60.0;       ///< seconds from one sample to the next
    double leastElevation = 8.0;  ///< degrees; lower stations take no part
    double noise = 0.03;          ///< Jy, of the real and of the imaginary part of a sample
    std::uint64_t seed = 1;
};

/// Samples of the aperture plane, one baseline, time and IF each: u, v in wavelengths.
struct Visibilities {
    std::vector<double> u, v;
    std::vector<std::complex<double>> values;  ///< Jy
    std::vector<double> weights;               ///< what a sample counts in a map
};

/// Samples of the whole track with the model's visibilities and noise on them. The same seed gives
/// the same samples everywhere. Weights are 1.
Visibilities observe(const Observation& observation, const AComponents& model);

}  // namespace pavane
