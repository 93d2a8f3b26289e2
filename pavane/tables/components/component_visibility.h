#pragma once

#include "pavane/tables/components/ACompItem.h"

#include <complex>

namespace pavane
{

/// What the visibility of a component needs at every (u, v), worked out once. With u and v in
/// wavelengths, its phase in turns is u east + v north, and the argument x = pi * size * baseline
/// of the amplitude has the square (u smallU + v smallV)^2 + (u largeU + v largeV)^2.
struct ComponentTerms {
    explicit ComponentTerms(const ACompItem& item);

    std::int32_t kind;
    double flux;
    // Offsets in radians, each the sum of a double and what it lacks: with long baselines the
    // rounding of a single double would turn the phase too far.
    double east, eastRest;
    double north, northRest;
    double smallU, smallV;
    double largeU, largeV;
    /// The thickness of the wide ring over its radius.
    double width;
};

/// Below this argument the amplitudes come from their series, where the formulas cancel.
inline constexpr double seriesLimit = 0.3;

/// Amplitude factor of a kind at x, the size times pi times the baseline (not below 0; for strips
/// of any sign). The limit where the formula divides by zero.
double amplitude(std::int32_t kind, double x, double width);

std::complex<double> visibility(const ComponentTerms& terms, double u, double v);

}  // namespace pavane
