#pragma once

#include "platform/geometry.h"
#include "platform/smooth_curve.h"

#include <cstddef>
#include <cstdint>

namespace pavane
{

/// Values beyond this count as missing, so that no difference of two overflows.
inline constexpr double farthestPoint = 1e300;

/// Point `i` of a curve, on the device.
inline CPointF pointOf(const CurveData& curve, std::int64_t i)
{
    const double x = curve.x ? curve.x[i] : curve.xFirst + static_cast<double>(i) * curve.xStep;
    return {curve.xOrigin + curve.xScale * x, curve.yOrigin + curve.yScale * curve.y[i]};
}

/// A line that is being led through parts of equal width, all of width 1.
struct LineChain {
    CPointF last;       ///< point reached
    std::int64_t part;  ///< that holds it
    float* low;         ///< negated least row of that part; those of the parts after it follow
    float* high;        ///< greatest row
};

/// Loops over the points of a curve. Every set gives the same values.
struct PointKernels {
    /// Whether points `i` to i + n - 1 follow one another along x and all lie within `tolerance` of
    /// the line with `slope` through point i - 1. `n` is a multiple of 8.
    bool (*straight)(const CurveData& curve, std::int64_t i, std::int64_t n, double slope,
                     double tolerance);
    /// Counts the points from `i` on, `most` at most, that follow one another along x, are not
    /// missing and lie left of `end`; widens `low` and `high` by their rows. Point i - 1 is there.
    /// May stop up to 8 points early.
    std::int64_t (*within)(const CurveData& curve, std::int64_t i, std::int64_t most, double end,
                           double& low, double& high);
    /// What a line spans in each of `n` parts, from row `start` on with `slope` rows a part, kept
    /// within `top` and `bottom`: the greatest row, and the least one negated. Writes up to
    /// `excess` more.
    void (*ramp)(double start, double slope, std::int64_t n, double top, double bottom, float* low,
                 float* high);
    static constexpr std::size_t excess = 8;
    /// Leads a line on through the points from `i` up to `end`, excluded, as long as they follow
    /// one another along x up to `most` and are not missing; returns their number.
    std::int64_t (*chain)(const CurveData& curve, std::int64_t i, std::int64_t end, double most,
                          double top, double bottom, LineChain& line);
};

/// Those for this processor.
const PointKernels& pointKernels();

}  // namespace pavane
