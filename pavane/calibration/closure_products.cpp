#include "pavane/calibration/closure_products.h"

#include <cmath>

// The loops are written for the vectoriser: no branch, no call, one array item a step. This file is
// compiled so that it may change the order in which they add up.

namespace pavane
{

void addTripleProducts(const std::array<LegCells, 3>& legs, std::size_t from, std::size_t to,
                       ClosureSums& sums)
{
    const auto [x, y, z] = legs;
    double real = 0;
    double imaginary = 0;
    double variance = 0;
    double count = 0;
    for (std::size_t i = from; i < to; ++i) {
        const double xi = x.sign * x.imaginary[i];
        const double yi = y.sign * y.imaginary[i];
        const double zi = z.sign * z.imaginary[i];
        const double re = x.real[i] * y.real[i] - xi * yi;
        const double im = x.real[i] * yi + xi * y.real[i];
        real += re * z.real[i] - im * zi;
        imaginary += re * zi + im * z.real[i];
        // the square of the product over that of each leg, times the variance of the leg
        const double xx = x.real[i] * x.real[i] + xi * xi;
        const double yy = y.real[i] * y.real[i] + yi * yi;
        const double zz = z.real[i] * z.real[i] + zi * zi;
        variance += (x.variance[i] * yy + xx * y.variance[i]) * zz + xx * yy * z.variance[i];
        count += x.valid[i] * y.valid[i] * z.valid[i];
    }
    sums.product += std::complex<double>(real, imaginary);
    sums.variance += variance;
    sums.count += count;
}

std::complex<double> tripleProducts(const std::array<LegCells, 3>& legs, std::size_t from,
                                    std::size_t to)
{
    const auto [x, y, z] = legs;
    double real = 0;
    double imaginary = 0;
    for (std::size_t i = from; i < to; ++i) {
        const double xi = x.sign * x.imaginary[i];
        const double yi = y.sign * y.imaginary[i];
        const double zi = z.sign * z.imaginary[i];
        const double valid = x.valid[i] * y.valid[i] * z.valid[i];
        const double re = (x.real[i] * y.real[i] - xi * yi) * valid;
        const double im = (x.real[i] * yi + xi * y.real[i]) * valid;
        real += re * z.real[i] - im * zi;
        imaginary += re * zi + im * z.real[i];
    }
    return {real, imaginary};
}

void addAmplitudeProducts(const std::array<LegCells, 4>& legs, std::size_t from, std::size_t to,
                          ClosureRatioSums& sums)
{
    const auto [x, y, z, w] = legs;
    double above = 0;
    double below = 0;
    double varianceAbove = 0;
    double varianceBelow = 0;
    double count = 0;
    for (std::size_t i = from; i < to; ++i) {
        const double xx = x.real[i] * x.real[i] + x.imaginary[i] * x.imaginary[i];
        const double yy = y.real[i] * y.real[i] + y.imaginary[i] * y.imaginary[i];
        const double zz = z.real[i] * z.real[i] + z.imaginary[i] * z.imaginary[i];
        const double ww = w.real[i] * w.real[i] + w.imaginary[i] * w.imaginary[i];
        const double valid = x.valid[i] * y.valid[i] * z.valid[i] * w.valid[i];
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

}  // namespace pavane
