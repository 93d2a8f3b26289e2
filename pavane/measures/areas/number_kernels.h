#pragma once

#include "pavane/axes/maps/cells/simd_path.h"

#include <cstddef>
#include <limits>

namespace pavane
{

/// What is told of the cells of one row.
struct RowSums {
    double sum = 0, byColumn = 0;
    float least = std::numeric_limits<float>::infinity();
    float greatest = -std::numeric_limits<float>::infinity();
};

/// The loops over values of the numbers of areas.
struct NumberKernels {
    /// Appends values that stand in columns from `first` on to `to`, and sums them. 0, with sums
    /// that are of no use, when one of them is not finite.
    int (*addFinite)(const float* values, int count, int first, float* to, RowSums& sums);
    /// Sum of the squares of value - mean.
    double (*squares)(const float* values, std::size_t count, double mean);
    /// Writes the values from `low` to `high` to `near`, which has room for 16 more than there are
    /// values, in their order, adds to `below` how many are less, and returns how many it wrote.
    std::size_t (*between)(const float* values, std::size_t count, float low, float high,
                           std::size_t& below, float* near);
};

NumberKernels numberKernels(SimdPath path);

}  // namespace pavane
