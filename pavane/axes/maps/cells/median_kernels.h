#pragma once

#include "pavane/axes/maps/cells/simd_path.h"

#include <cstdint>

namespace pavane
{

/// How many values lie on which side of an interval.
struct IntervalCounts {
    std::int64_t below = 0;
    std::int64_t atLow = 0;  ///< equal to its low end
    std::int64_t inside = 0;
    std::int64_t atHigh = 0;  ///< equal to its high end; none when both ends are one
};

/// The loops over cells of the search for medians.
struct MedianKernels {
    /// Cells handled at a time.
    static constexpr int blockCells = 1024;
    /// The finite ones of `count` cells (at most blockCells), or their distances from `*centre`
    /// rounded to float, NaN for the others and up to the next multiple of 16. Returns how many are
    /// finite.
    int (*values)(const float* cells, int count, const double* centre, float* values);
    /// Counts `count` values (a multiple of 16) against the interval and writes those inside to
    /// `inside`, which has room for 16 more than there are values.
    void (*part)(const float* values, int count, float low, float high, IntervalCounts& counts,
                 float* inside);
};

MedianKernels medianKernels(SimdPath path);

}  // namespace pavane
