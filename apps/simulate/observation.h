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
    int sources = 1;    ///< the jet, and points of 1 Jy between which the array goes round
    int subarrays = 1;  ///< 1 or 2: every other station belongs to the second
};

/// Right ascension and declination in degrees: the jet is source 0, the points stand beside it.
struct SourcePlace {
    double ra, dec;
};
SourcePlace sourcePlace(const Observation& observation, int source);

/// One baseline at one time, with all IFs.
struct ObservedGroup {
    double seconds = 0;  ///< from the middle of the track
    int subarray = 1, source = 0;
    int first = 0, second = 0;   ///< stations, from 0
    double u = 0, v = 0, w = 0;  ///< metres
};

/// What is observed, in the order of time.
std::vector<ObservedGroup> observedGroups(const Observation& observation);

/// Greenwich hour angle of the jet in the middle of the track, in degrees.
double middleHourAngle();

/// Samples of the aperture plane, one baseline, time and IF each: u, v in wavelengths.
struct Visibilities {
    std::vector<double> u, v;
    std::vector<std::complex<double>> values;  ///< Jy
    std::vector<double> weights;               ///< what a sample counts in a map
};

/// Samples of the jet over the whole track, an IF each of its groups in turn, with the model's
/// visibilities and noise on them. The same seed gives the same samples everywhere. Weights are 1.
Visibilities observe(const Observation& observation, const AComponents& model);

}  // namespace pavane
