#pragma once

#include "pavane/calibration/closure_point.h"

#include <array>
#include <cstddef>

namespace pavane
{

/// The visibilities of a leg, an array a number; those of a variance of 0 are 0.
struct LegCells {
    const double *real, *imaginary, *variance, *valid;
    double sign;  ///< -1: the leg is stored the other way
};

/// Adds the triple products of cells `from` to `to`. Where a leg is not valid nothing is added.
void addTripleProducts(const std::array<LegCells, 3>& legs, std::size_t from, std::size_t to,
                       ClosureSums& sums);
/// The sum of the products where the legs are valid, without variances.
std::complex<double> tripleProducts(const std::array<LegCells, 3>& legs, std::size_t from,
                                    std::size_t to);

/// Adds the products of amplitudes of legs ab and cd, ac and bd, where all four are valid.
void addAmplitudeProducts(const std::array<LegCells, 4>& legs, std::size_t from, std::size_t to,
                          ClosureRatioSums& sums);

}  // namespace pavane
