#include "pavane/calibration/closure_products.h"

#include "pavane/calibration/processor.h"

#include <algorithm>
#include <cmath>

// The loops are written for the vectoriser: no branch, no call, one array item a step. This file is
// compiled so that it may change the order in which they add up. A body is always inlined into a
// caller for each set of instructions.
//
// Legs of usual sizes are multiplied in single precision, of which twice as many fit into a step;
// sums of a piece are short enough to keep the digits that the data have.

namespace pavane
{

namespace
{

/// Cells of a piece.
constexpr std::size_t piece = 256;

template <std::size_t legs>
PAVANE_BODY int areTame(const std::array<SignedLeg, legs>& of)
{
    return std::all_of(of.begin(), of.end(),
                       [](const SignedLeg& leg) { return leg.cells->isTame; });
}

template <std::size_t legs>
PAVANE_BODY int areWhole(const std::array<SignedLeg, legs>& of)
{
    return std::all_of(of.begin(), of.end(),
                       [](const SignedLeg& leg) { return leg.cells->isWhole; });
}

template <class Real>
PAVANE_BODY void addTriples(const std::array<SignedLeg, 3>& legs, std::size_t from, std::size_t to,
                            ClosureSums& sums)
{
    const LegCells x = *legs[0].cells;
    const LegCells y = *legs[1].cells;
    const LegCells z = *legs[2].cells;
    const Real sx = legs[0].sign;
    const Real sy = legs[1].sign;
    const Real sz = legs[2].sign;
    Real real = 0;
    Real imaginary = 0;
    Real variance = 0;
    for (std::size_t i = from; i < to; ++i) {
        const Real xr = x.real[i];
        const Real yr = y.real[i];
        const Real zr = z.real[i];
        const Real xi = sx * x.imaginary[i];
        const Real yi = sy * y.imaginary[i];
        const Real zi = sz * z.imaginary[i];
        const Real re = xr * yr - xi * yi;
        const Real im = xr * yi + xi * yr;
        real += re * zr - im * zi;
        imaginary += re * zi + im * zr;
        // the square of the product over that of each leg, times the variance of the leg
        const Real xx = xr * xr + xi * xi;
        const Real yy = yr * yr + yi * yi;
        const Real zz = zr * zr + zi * zi;
        variance += (x.variance[i] * yy + xx * y.variance[i]) * zz + xx * yy * z.variance[i];
    }
    sums.product += std::complex<double>(real, imaginary);
    sums.variance += variance;
}

PAVANE_BODY float countTriples(const std::array<SignedLeg, 3>& legs, std::size_t from,
                               std::size_t to)
{
    const LegCells x = *legs[0].cells;
    const LegCells y = *legs[1].cells;
    const LegCells z = *legs[2].cells;
    float count = 0;
    for (std::size_t i = from; i < to; ++i)
        count += x.valid[i] * y.valid[i] * z.valid[i];
    return count;
}

template <class Real>
PAVANE_BODY void addRatios(const std::array<SignedLeg, 4>& legs, std::size_t from, std::size_t to,
                           ClosureRatioSums& sums)
{
    const LegCells x = *legs[0].cells;
    const LegCells y = *legs[1].cells;
    const LegCells z = *legs[2].cells;
    const LegCells w = *legs[3].cells;
    Real above = 0;
    Real below = 0;
    Real varianceAbove = 0;
    Real varianceBelow = 0;
    Real count = 0;
    const auto norm = [](Real real, Real imaginary) { return real * real + imaginary * imaginary; };
    for (std::size_t i = from; i < to; ++i) {
        const Real xx = norm(x.real[i], x.imaginary[i]);
        const Real yy = norm(y.real[i], y.imaginary[i]);
        const Real zz = norm(z.real[i], z.imaginary[i]);
        const Real ww = norm(w.real[i], w.imaginary[i]);
        const Real valid = x.valid[i] * y.valid[i] * z.valid[i] * w.valid[i];
        above += std::sqrt(xx * yy) * valid;
        below += std::sqrt(zz * ww) * valid;
        varianceAbove += (x.variance[i] * yy + xx * y.variance[i]) * valid;
        varianceBelow += (z.variance[i] * ww + zz * w.variance[i]) * valid;
        count += valid;
    }
    sums.above += above;
    sums.below += below;
    sums.varianceAbove += varianceAbove;
    sums.varianceBelow += varianceBelow;
    sums.count += count;
}

PAVANE_BODY void addRatiosOf(const std::array<SignedLeg, 4>& legs, std::size_t from, std::size_t to,
                             ClosureRatioSums& sums)
{
    const int tame = areTame(legs);
    for (std::size_t i = from; i < to; i += piece)
        if (tame)
            addRatios<float>(legs, i, std::min(to, i + piece), sums);
        else
            addRatios<double>(legs, i, std::min(to, i + piece), sums);
}

void addRatiosPlain(const std::array<SignedLeg, 4>& legs, std::size_t from, std::size_t to,
                    ClosureRatioSums& sums)
{
    addRatiosOf(legs, from, to, sums);
}

template <class Real>
void addTriplesPlain(const std::array<SignedLeg, 3>& legs, std::size_t from, std::size_t to,
                     ClosureSums& sums)
{
    addTriples<Real>(legs, from, to, sums);
}

#if defined(__x86_64__)
template <class Real>
PAVANE_FOR_AVX2 void addTriplesAvx2(const std::array<SignedLeg, 3>& legs, std::size_t from,
                                    std::size_t to, ClosureSums& sums)
{
    addTriples<Real>(legs, from, to, sums);
}

PAVANE_FOR_AVX2 void addRatiosAvx2(const std::array<SignedLeg, 4>& legs, std::size_t from,
                                   std::size_t to, ClosureRatioSums& sums)
{
    addRatiosOf(legs, from, to, sums);
}

const auto triplesOfFloats = hasAvx2() ? addTriplesAvx2<float> : addTriplesPlain<float>;
const auto triplesOfDoubles = hasAvx2() ? addTriplesAvx2<double> : addTriplesPlain<double>;
const auto ratios = hasAvx2() ? addRatiosAvx2 : addRatiosPlain;
#else
constexpr auto triplesOfFloats = addTriplesPlain<float>;
constexpr auto triplesOfDoubles = addTriplesPlain<double>;
constexpr auto ratios = addRatiosPlain;
#endif

}  // namespace

void addTripleProducts(const std::array<SignedLeg, 3>& legs, std::size_t from, std::size_t to,
                       ClosureSums& sums)
{
    const auto add = areTame(legs) ? triplesOfFloats : triplesOfDoubles;
    const int whole = areWhole(legs);
    for (std::size_t i = from; i < to; i += piece) {
        const std::size_t end = std::min(to, i + piece);
        add(legs, i, end, sums);
        sums.count += whole ? static_cast<float>(end - i) : countTriples(legs, i, end);
    }
}

std::complex<double> tripleProducts(const std::array<SignedLeg, 3>& legs, std::size_t from,
                                    std::size_t to)
{
    const LegCells x = *legs[0].cells;
    const LegCells y = *legs[1].cells;
    const LegCells z = *legs[2].cells;
    double real = 0;
    double imaginary = 0;
    for (std::size_t i = from; i < to; ++i) {
        const double xi = double{legs[0].sign} * x.imaginary[i];
        const double yi = double{legs[1].sign} * y.imaginary[i];
        const double zi = double{legs[2].sign} * z.imaginary[i];
        const double xr = x.real[i];
        const double yr = y.real[i];
        const double valid = x.valid[i] * y.valid[i] * z.valid[i];
        const double re = (xr * yr - xi * yi) * valid;
        const double im = (xr * yi + xi * yr) * valid;
        real += re * z.real[i] - im * zi;
        imaginary += re * zi + im * z.real[i];
    }
    return {real, imaginary};
}

void addAmplitudeProducts(const std::array<SignedLeg, 4>& legs, std::size_t from, std::size_t to,
                          ClosureRatioSums& sums)
{
    ratios(legs, from, to, sums);
}

}  // namespace pavane
