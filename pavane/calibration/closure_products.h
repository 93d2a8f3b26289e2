#pragma once

#include "pavane/calibration/closure_point.h"

#include <array>
#include <cstddef>

namespace pavane
{

/// The visibilities of a leg, an array a number; those that are not valid are 0.
struct LegCells {
    const float *real, *imaginary, *variance, *valid;
    int isWhole, isTame;  ///< as of UvLeg
};

/// A leg of a product; of a sign of -1 it is stored the other way.
struct SignedLeg {
    const LegCells* cells;
    float sign;
};

/// Adds the triple products of cells `from` to `to`. Where a leg is not valid nothing is added.
void addTripleProducts(const std::array<SignedLeg, 3>& legs, std::size_t from, std::size_t to,
                       ClosureSums& sums);
/// The sum of the products where the legs are valid, without variances.
std::complex<double> tripleProducts(const std::array<SignedLeg, 3>& legs, std::size_t from,
                                    std::size_t to);

/// Adds the products of amplitudes of legs ab and cd, ac and bd, where all four are valid.
void addAmplitudeProducts(const std::array<SignedLeg, 4>& legs, std::size_t from, std::size_t to,
                          ClosureRatioSums& sums);

}  // namespace pavane
