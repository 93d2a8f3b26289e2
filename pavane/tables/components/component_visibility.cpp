#include "pavane/tables/components/component_visibility.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr double radiansPerArcsecond = 4.84813681109536e-6;
constexpr double pi = 3.141592653589793;
constexpr double ln2 = 0.6931471805599453;
constexpr double degreesPerHalfTurn = 180;
/// A Gaussian's exponent goes no further; its factor is 0 long before.
constexpr double leastExponent = -10000;

/// A wide ring whose edges are closer than this, in units of x, is summed from thin rings.
constexpr double thinRingLimit = 0.1;

/// Product of u and a number in two parts, less the nearest whole number.
double turnsPart(double u, double whole, double rest)
{
    const double product = u * whole;
    const double lost = std::fma(u, whole, -product) + u * rest;
    return (product - std::nearbyint(product)) + lost;
}

/// sin(x) / x
double sinc(double x)
{
    if (std::abs(x) > seriesLimit)
        return std::sin(x) / x;
    const double q = x * x;
    return 1 - q / 6 * (1 - q / 20 * (1 - q / 42 * (1 - q / 72)));
}

/// 2 J1(x) / x
double diskFactor(double x)
{
    if (x > seriesLimit)
        return 2 * j1(x) / x;
    const double q = x * x / 4;
    return 1 - q / 2 * (1 - q / 6 * (1 - q / 12 * (1 - q / 20)));
}

/// 3 (sin x - x cos x) / x^3
double sphereFactor(double x)
{
    if (x > seriesLimit)
        return 3 * (std::sin(x) / x - std::cos(x)) / (x * x);
    const double q = x * x;
    return 1 - q / 10 * (1 - q / 28 * (1 - q / 54 * (1 - q / 88)));
}

/// A wide ring is 2 / width times the integral over t from 1 - width to 1 of t J0(t x). Where that
/// is short, Gauss's rule of three points replaces the difference of its ends, which cancels.
double wideRingFactor(double x, double width)
{
    if (std::abs(width * x) > thinRingLimit) {
        const double inner = 1 - width;
        return 2 * (j1(x) - inner * j1(inner * x)) / (width * x);
    }
    const double middle = 1 - width / 2;
    const double aside = width / 2 * 0.7745966692414834;  // sqrt(3/5)
    const auto ring = [x](double t) { return t * j0(t * x); };
    return (5 * ring(middle - aside) + 8 * ring(middle) + 5 * ring(middle + aside)) / 9;
}

}  // namespace

ComponentTerms::ComponentTerms(const ACompItem& item)
    : kind(item.type), flux(item.PeakFlux()), width(item.Width())
{
    const long double distance = static_cast<long double>(item.Distance()) * radiansPerArcsecond;
    const long double angle = static_cast<long double>(item.Angle()) * pi / degreesPerHalfTurn;
    const long double toEast = distance * std::sin(angle);
    const long double toNorth = distance * std::cos(angle);
    east = static_cast<double>(toEast);
    eastRest = static_cast<double>(toEast - east);
    north = static_cast<double>(toNorth);
    northRest = static_cast<double>(toNorth - north);

    const double scale = pi * item.LargeAxis() * radiansPerArcsecond;
    const double turn = item.Inclination() * pi / degreesPerHalfTurn;
    const double ratio = kind == stripComponent ? 1 : item.AxisRatio();
    smallU = scale * ratio * std::cos(turn);
    smallV = -scale * ratio * std::sin(turn);
    // a strip has no size across its line
    largeU = kind == stripComponent ? 0 : scale * std::sin(turn);
    largeV = kind == stripComponent ? 0 : scale * std::cos(turn);
}

double amplitude(std::int32_t kind, double x, double width)
{
    switch (kind) {
    case gaussianComponent:
        return std::exp(std::max(leastExponent, -x * x * 0.25 / ln2));
    case diskComponent:
        return diskFactor(x);
    case thinRingComponent:
        return j0(x);
    case sphereComponent:
        return sphereFactor(x);
    case stripComponent:
        return sinc(x);
    case wideRingComponent:
        return wideRingFactor(x, width);
    default:
        return 1;
    }
}

std::complex<double> visibility(const ComponentTerms& terms, double u, double v)
{
    const double turns =
        turnsPart(u, terms.east, terms.eastRest) + turnsPart(v, terms.north, terms.northRest);
    const double small = u * terms.smallU + v * terms.smallV;
    const double large = u * terms.largeU + v * terms.largeV;
    const double factor =
        terms.flux * amplitude(terms.kind, std::sqrt(small * small + large * large), terms.width);
    const double phase = 2 * pi * turns;
    return {factor * std::cos(phase), factor * std::sin(phase)};
}

}  // namespace pavane
