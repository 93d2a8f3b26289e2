#pragma once

#include "tessel/api.h"

#include <array>
#include <complex>

namespace pavane
{

/// A closure phase: that of a triple product V(ab) V(bc) V(ca).
struct ClosurePoint {
    double phase = 0;      ///< degrees, in (-180, 180]
    double error = 180;    ///< degrees, at most 180
    double amplitude = 0;  ///< of the triple product, the third power of the visibilities' unit
};

/// What triple products add up to. The sum of their variances is that of the part across the sum.
struct ClosureSums {
    std::complex<double> product{};
    double variance = 0;
    double count = 0;
};

/// The point of the mean of triple products. Non-zero when there is one; 0 of no products.
PAVANE_API int closurePoint(const ClosureSums& sums, ClosurePoint& point);

/// The point of three legs ab, bc and ca, in this direction, and their weights, one over the
/// square of the error of real or imaginary part. Non-zero when there is one; 0 when a leg is
/// missing: flagged, with a weight of 0 or below, or not finite. The error is the root of the sum
/// of 1 / (weight amplitude^2).
PAVANE_API int closurePoint(const std::array<std::complex<double>, 3>& legs,
                            const std::array<double, 3>& weights, ClosurePoint& point);

/// A closure amplitude |V(ab) V(cd)| / |V(ac) V(bd)|, which does not know the gains of the four
/// telescopes. No noise bias is removed.
struct ClosureAmplitude {
    double ratio = 0, error = 0;
};

/// What the products above and below the line add up to.
struct ClosureRatioSums {
    double above = 0, below = 0;
    double varianceAbove = 0, varianceBelow = 0;
    double count = 0;
};

/// The ratio of the sums: each product has the gains of all four telescopes, and so has each sum.
/// Non-zero when there is one; 0 of no products, or where those below add up to 0.
PAVANE_API int closureAmplitude(const ClosureRatioSums& sums, ClosureAmplitude& amplitude);

/// That of four legs ab, cd, ac and bd and their weights, as `closurePoint` has them. The error is
/// the ratio times the root of the sum of 1 / (weight amplitude^2).
PAVANE_API int closureAmplitude(const std::array<std::complex<double>, 4>& legs,
                                const std::array<double, 4>& weights, ClosureAmplitude& amplitude);

/// Degrees in (-180, 180].
PAVANE_API double wrappedDegrees(double degrees);
/// Of a complex number, in (-180, 180].
PAVANE_API double degreesOf(const std::complex<double>& value);

/// A number that is not negative; one above all floats becomes the greatest of them, which a plot
/// shows.
PAVANE_API float nearestFloat(double value);

}  // namespace pavane
