#include "pavane/calibration/closure_point.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

constexpr double halfTurn = 180;
constexpr double degreesOfRadian = 57.295779513082320877;

int isGood(const std::complex<double>& leg, double weight)
{
    return weight > 0 && std::isfinite(weight) && std::isfinite(leg.real()) &&
           std::isfinite(leg.imag());
}

}  // namespace

double wrappedDegrees(double degrees)
{
    const double wrapped = std::remainder(degrees, 2 * halfTurn);
    return wrapped == -halfTurn ? halfTurn : wrapped;
}

double degreesOf(const std::complex<double>& value)
{
    const double degrees = std::atan2(value.imag(), value.real()) * degreesOfRadian;
    // the arc of a negative zero is the other end of the range
    return degrees <= -halfTurn ? halfTurn : std::min(degrees, halfTurn);
}

float nearestFloat(double value)
{
    return static_cast<float>(std::min(value, double{std::numeric_limits<float>::max()}));
}

int closurePoint(const ClosureSums& sums, ClosurePoint& point)
{
    if (!(sums.count > 0))
        return 0;
    const double amplitude = std::sqrt(std::norm(sums.product));
    const double error =
        amplitude > 0 ? std::sqrt(sums.variance) / amplitude * degreesOfRadian : halfTurn;
    point = {degreesOf(sums.product), error < halfTurn ? error : halfTurn, amplitude / sums.count};
    return 1;
}

int closurePoint(const std::array<std::complex<double>, 3>& legs,
                 const std::array<double, 3>& weights, ClosurePoint& point)
{
    double error = 0;
    for (std::size_t i = 0; i < legs.size(); ++i) {
        if (!isGood(legs[i], weights[i]))
            return 0;
        error += 1 / (weights[i] * std::norm(legs[i]));
    }
    error = std::sqrt(error) * degreesOfRadian;
    const std::complex<double> product = legs[0] * legs[1] * legs[2];
    point = {degreesOf(product), error < halfTurn ? error : halfTurn, std::abs(product)};
    return 1;
}

int closureAmplitude(const ClosureRatioSums& sums, ClosureAmplitude& amplitude)
{
    if (!(sums.count > 0) || !(sums.below > 0))
        return 0;
    const double ratio = sums.above / sums.below;
    amplitude = {ratio,
                 std::sqrt(sums.varianceAbove + ratio * ratio * sums.varianceBelow) / sums.below};
    return std::isfinite(amplitude.error);
}

int closureAmplitude(const std::array<std::complex<double>, 4>& legs,
                     const std::array<double, 4>& weights, ClosureAmplitude& amplitude)
{
    for (std::size_t i = 0; i < legs.size(); ++i)
        if (!isGood(legs[i], weights[i]))
            return 0;
    const auto product = [&](std::size_t i, double& value, double& variance) {
        value = std::abs(legs[i]) * std::abs(legs[i + 1]);
        variance = std::norm(legs[i]) / weights[i + 1] + std::norm(legs[i + 1]) / weights[i];
    };
    ClosureRatioSums sums;
    sums.count = 1;
    product(0, sums.above, sums.varianceAbove);
    product(2, sums.below, sums.varianceBelow);
    return closureAmplitude(sums, amplitude);
}

}  // namespace pavane
