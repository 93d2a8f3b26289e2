#pragma once

#include "pavane/axes/maps/cells/simd_path.h"

#include <array>
#include <cstddef>

namespace pavane
{

/// Sums over the planes that a cell uses, v from the middle of the range: I w, I w v, I w v^2, then
/// (s w)^2 times 1, v, v^2, v^3, v^4.
using MomentSums = std::array<double, 8>;

/// What a plane adds to the sums: `perValue` times I, and `alone`.
struct MomentTerms {
    MomentSums perValue{}, alone{};
    float above = 0;  ///< only finite values above it
    float noise = 0;
};

/// Adds a plane to the sums of as many cells, and counts in `used` where it did.
using AddMomentPlane = void (*)(const MomentTerms& terms, const float* values, std::size_t count,
                                MomentSums* sums, int* used);

AddMomentPlane addMomentPlane(SimdPath path);

}  // namespace pavane
