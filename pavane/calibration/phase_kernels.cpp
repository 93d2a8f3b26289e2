#include "pavane/calibration/phase_kernels.h"

#include "pavane/calibration/processor.h"

#include <cmath>
#include <limits>

// The loop is written for the vectoriser: no branch, no call but a root, one item a step.

namespace pavane
{

namespace
{

constexpr double pi = 3.14159265358979323846;
constexpr double degreesOfRadian = 180 / pi;
/// The tangent of an eighth of pi.
constexpr double tangent = 0.41421356237309504880;

/// The arc of a tangent of at most an eighth of pi, by its series: the term that would be next is
/// below 1e-11.
PAVANE_BODY double arc(double t)
{
    const double s = t * t;
    double sum = -1.0 / 23;
    sum = sum * s + 1.0 / 21;
    sum = sum * s - 1.0 / 19;
    sum = sum * s + 1.0 / 17;
    sum = sum * s - 1.0 / 15;
    sum = sum * s + 1.0 / 13;
    sum = sum * s - 1.0 / 11;
    sum = sum * s + 1.0 / 9;
    sum = sum * s - 1.0 / 7;
    sum = sum * s + 1.0 / 5;
    sum = sum * s - 1.0 / 3;
    return t + t * s * sum;
}

/// Degrees above -180 to 180.
PAVANE_BODY float degreesOf(double x, double y)
{
    const double across = std::fabs(x);
    const double up = std::fabs(y);
    const double greater = across > up ? across : up;
    const double less = across > up ? up : across;
    const bool isWide = less > tangent * greater;
    const double above = isWide ? less - greater : less;
    const double below = isWide ? less + greater : greater;
    double angle = arc(above / (below > 0 ? below : 1));
    angle = isWide ? angle + pi / 4 : angle;
    angle = up > across ? pi / 2 - angle : angle;
    angle = x < 0 ? pi - angle : angle;
    angle = y < 0 ? -angle : angle;
    const auto degrees = static_cast<float>(angle * degreesOfRadian);
    return degrees > -180.0F ? degrees : 180.0F;
}

PAVANE_BODY void pointsOf(const double* __restrict real, const double* __restrict imaginary,
                          const double* __restrict variance, const double* __restrict products,
                          std::size_t count, float* __restrict phase, float* __restrict error,
                          float* __restrict amplitude)
{
    constexpr double most = std::numeric_limits<float>::max();
    for (std::size_t i = 0; i < count; ++i) {
        const double size = std::sqrt(real[i] * real[i] + imaginary[i] * imaginary[i]);
        const double part = std::sqrt(variance[i]) / (size > 0 ? size : 1) * degreesOfRadian;
        const double mean = size / products[i];
        phase[i] = degreesOf(real[i], imaginary[i]);
        error[i] = static_cast<float>(size > 0 && part < 180 ? part : 180);
        amplitude[i] = static_cast<float>(mean < most ? mean : most);
    }
}

#if defined(__x86_64__)
PAVANE_FOR_AVX2 void pointsWide(const ClosureSumArrays& sums, std::size_t count,
                                const ClosurePointArrays& points)
{
    pointsOf(sums.real, sums.imaginary, sums.variance, sums.products, count, points.phase,
             points.error, points.amplitude);
}
#endif

}  // namespace

void closurePoints(const ClosureSumArrays& sums, std::size_t count,
                   const ClosurePointArrays& points)
{
#if defined(__x86_64__)
    if (hasAvx2())
        return pointsWide(sums, count, points);
#endif
    pointsOf(sums.real, sums.imaginary, sums.variance, sums.products, count, points.phase,
             points.error, points.amplitude);
}

}  // namespace pavane
