#pragma once

#include <cstddef>

namespace pavane
{

// Points of many sums at once, in single precision. Private to the sources of this room.

/// Sums as ClosureSums has them, an array a number.
struct ClosureSumArrays {
    const double *real, *imaginary, *variance, *products;
};

/// Points as ClosurePoint has them, likewise.
struct ClosurePointArrays {
    float *phase, *error, *amplitude;
};

/// What `closurePoint` gives for each of the sums that have products; anything for the others.
void closurePoints(const ClosureSumArrays& sums, std::size_t count,
                   const ClosurePointArrays& points);

}  // namespace pavane
