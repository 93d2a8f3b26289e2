#pragma once

#include <cstdint>

namespace pavane
{

/// The values that count as inside: both ends included, so that NaN never does.
struct ValueRange {
    double least;
    double greatest;
    bool holds(double v) const { return v >= least && v <= greatest; }
};

/// How many of the n points from the start on lie inside both ranges without a break; `spread` is
/// widened by their y values. `x` may be null: then only y is looked at. Reads each value once, in
/// the widest vectors that the processor has; the result is the same on all.
std::int64_t scanInside(const double* x, const double* y, std::int64_t n, const ValueRange& xRange,
                        const ValueRange& yRange, ValueRange& spread);

}  // namespace pavane
