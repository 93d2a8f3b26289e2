#include "pavane/calibration/leg_kernels.h"

#include "pavane/calibration/processor.h"
#include "tessel/big_endian.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

// The loops are written for the vectoriser: no branch, no call, one item a step. This file is
// compiled so that it may change the order in which they add up. A body is always inlined into a
// caller for each set of instructions.

namespace pavane
{

namespace
{

/// Real part, imaginary part and weight.
constexpr std::size_t numbers = 3;

PAVANE_BODY float numberAt(const float* from, std::size_t i) { return from[i]; }

PAVANE_BODY float numberAt(const unsigned char* from, std::size_t i)
{
    return bigEndianItem<float>(from + i * sizeof(float));
}

PAVANE_BODY std::uint32_t allOf(bool is) { return is ? ~std::uint32_t{0} : 0; }

/// The value, or 0 where no bit is set.
PAVANE_BODY float only(std::uint32_t bits, float value)
{
    return std::bit_cast<float>(std::bit_cast<std::uint32_t>(value) & bits);
}

template <class Number>
PAVANE_BODY void spreadOut(const Number* __restrict from, std::size_t count, float* __restrict real,
                           float* __restrict imaginary, float* __restrict weight)
{
    for (std::size_t k = 0; k < count; ++k) {
        real[k] = numberAt(from, numbers * k);
        imaginary[k] = numberAt(from, numbers * k + 1);
        weight[k] = numberAt(from, numbers * k + 2);
    }
}

/// Keeps what counts, and turns weights into variances.
PAVANE_BODY LegSums keepGood(const float* __restrict marked, std::size_t count, float sign,
                             float* __restrict real, float* __restrict imaginary,
                             float* __restrict variance, float* __restrict valid)
{
    constexpr float most = std::numeric_limits<float>::max();
    LegSums sums;
    for (std::size_t k = 0; k < count; ++k) {
        // bits, since a choice that hangs on another one would become a branch
        std::uint32_t good = allOf(marked[k] > 0);
        good &= allOf(variance[k] > 0);
        good &= allOf(variance[k] <= most);
        good &= allOf(std::fabs(real[k]) <= most);
        good &= allOf(std::fabs(imaginary[k]) <= most);
        valid[k] = only(good, 1);
        real[k] = only(good, real[k]);
        imaginary[k] = only(good, sign * imaginary[k]);
        variance[k] = only(good, 1 / variance[k]);
        sums.good += valid[k];
        sums.sizes += std::fabs(real[k]) + std::fabs(imaginary[k]);
        sums.variance += variance[k];
    }
    return sums;
}

template <class Number>
PAVANE_BODY LegSums takeBody(const Number* from, const float* marked, std::size_t count, float sign,
                             const LegArrays& to)
{
    spreadOut(from, count, to.real, to.imaginary, to.variance);
    return keepGood(marked, count, sign, to.real, to.imaginary, to.variance, to.valid);
}

template <class Number>
LegSums takePlain(const Number* from, const float* marked, std::size_t count, float sign,
                  const LegArrays& to)
{
    return takeBody(from, marked, count, sign, to);
}

#if defined(__x86_64__)
template <class Number>
PAVANE_FOR_AVX2 LegSums takeAvx2(const Number* from, const float* marked, std::size_t count,
                                 float sign, const LegArrays& to)
{
    return takeBody(from, marked, count, sign, to);
}
#endif

template <class Number>
auto best()
{
#if defined(__x86_64__)
    if (hasAvx2())
        return takeAvx2<Number>;
#endif
    return takePlain<Number>;
}

const auto takeNumbers = best<float>();
const auto takeBytes = best<unsigned char>();

}  // namespace

LegSums takeCells(const float* from, const float* marked, std::size_t count, float sign,
                  const LegArrays& to)
{
    return takeNumbers(from, marked, count, sign, to);
}

LegSums takeCells(const unsigned char* from, const float* marked, std::size_t count, float sign,
                  const LegArrays& to)
{
    return takeBytes(from, marked, count, sign, to);
}

}  // namespace pavane
