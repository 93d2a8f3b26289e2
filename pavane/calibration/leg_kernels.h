#pragma once

#include <cstddef>

namespace pavane
{

// The visibilities of a leg from how a file has them to an array a number. Private to the sources
// of this room.

/// Where the numbers go.
struct LegArrays {
    float *real, *imaginary, *variance, *valid;
};

/// What the cells of a leg add up to.
struct LegSums {
    float good = 0;                 ///< how many count
    float sizes = 0, variance = 0;  ///< of parts without their signs, and of one over weights
};

/// Takes `count` cells of real part, imaginary part and weight. One that is not marked (1, else 0),
/// flagged or not finite is 0 throughout. `sign` -1: the leg goes the other way.
LegSums takeCells(const float* from, const float* marked, std::size_t count, float sign,
                  const LegArrays& to);
/// The same of floats whose highest byte stands first.
LegSums takeCells(const unsigned char* from, const float* marked, std::size_t count, float sign,
                  const LegArrays& to);

}  // namespace pavane
