#include "pavane/measures/areas/number_kernels.h"

#include "pavane/axes/maps/cells/vector_types.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace pavane
{

namespace
{

constexpr std::uint32_t exponentBits = 0x7F800000;

/// Four side by side: one after another each would wait for the one before it.
PAVANE_INLINE_BODY int addFiniteBody(const float* values, int count, int first, float* to,
                                     RowSums& sums)
{
    using Floats = float __attribute__((vector_size(16)));
    using Words = std::uint32_t __attribute__((vector_size(16)));
    using Doubles = double __attribute__((vector_size(32)));
    constexpr int lanes = 4;
    Doubles sum = {}, byColumn = {};
    Doubles column = {0.0, 1.0, 2.0, 3.0};
    column += static_cast<double>(first);
    Floats least = {}, greatest = {};
    least += sums.least;
    greatest += sums.greatest;
    Words bad = {};
    int i = 0;
    for (; i + lanes <= count; i += lanes) {
        Floats x;
        std::memcpy(&x, values + i, sizeof x);
        std::memcpy(to + i, &x, sizeof x);
        Words word;
        std::memcpy(&word, &x, sizeof x);
        bad |= reinterpret_cast<Words>((word & exponentBits) == exponentBits);
        const Doubles wide = __builtin_convertvector(x, Doubles);
        sum += wide;
        byColumn += wide * column;
        column += lanes;
        least = x < least ? x : least;
        greatest = x > greatest ? x : greatest;
    }
    std::uint32_t isBad = 0;
    for (int lane = 0; lane < lanes; ++lane) {
        isBad |= bad[lane];
        sums.sum += sum[lane];
        sums.byColumn += byColumn[lane];
        sums.least = std::min(sums.least, least[lane]);
        sums.greatest = std::max(sums.greatest, greatest[lane]);
    }
    for (; i < count; ++i) {
        to[i] = values[i];
        isBad |= (std::bit_cast<std::uint32_t>(values[i]) & exponentBits) == exponentBits;
        sums.sum += double{values[i]};
        sums.byColumn += double{values[i]} * (first + i);
        sums.least = std::min(sums.least, values[i]);
        sums.greatest = std::max(sums.greatest, values[i]);
    }
    return !isBad;
}

PAVANE_INLINE_BODY double squaresBody(const float* values, std::size_t count, double mean)
{
    constexpr std::size_t lanes = 4;
    double squares[lanes] = {};
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const double distance = double{values[i + lane]} - mean;
            squares[lane] += distance * distance;
        }
    for (; i < count; ++i)
        squares[0] += (double{values[i]} - mean) * (double{values[i]} - mean);
    return (squares[0] + squares[1]) + (squares[2] + squares[3]);
}

PAVANE_INLINE_BODY std::size_t betweenBody(const float* values, std::size_t count, float low,
                                           float high, std::size_t& below, float* near)
{
    std::size_t less = 0, found = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const float value = values[i];
        near[found] = value;
        less += value < low;
        found += static_cast<std::size_t>((value >= low) & (value <= high));
    }
    below += less;
    return found;
}

int addFinitePlain(const float* values, int count, int first, float* to, RowSums& sums)
{
    return addFiniteBody(values, count, first, to, sums);
}

double squaresPlain(const float* values, std::size_t count, double mean)
{
    return squaresBody(values, count, mean);
}

std::size_t betweenPlain(const float* values, std::size_t count, float low, float high,
                         std::size_t& below, float* near)
{
    return betweenBody(values, count, low, high, below, near);
}

#if defined(__x86_64__)
PAVANE_TARGET_AVX2 int addFiniteAvx2(const float* values, int count, int first, float* to,
                                     RowSums& sums)
{
    return addFiniteBody(values, count, first, to, sums);
}

PAVANE_TARGET_AVX2 double squaresAvx2(const float* values, std::size_t count, double mean)
{
    return squaresBody(values, count, mean);
}

/// Values between are packed by one instruction; storing from a register is the quick form of it on
/// every processor.
PAVANE_TARGET_AVX512 std::size_t betweenAvx512(const float* values, std::size_t count, float low,
                                               float high, std::size_t& below, float* near)
{
    constexpr std::size_t lanes = 16;
    const __m512 lows = _mm512_set1_ps(low), highs = _mm512_set1_ps(high);
    float* const first = near;
    int less = 0;
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const __m512 v = _mm512_loadu_ps(values + i);
        less += std::popcount(_mm512_cmp_ps_mask(v, lows, _CMP_LT_OQ));
        const __mmask16 in =
            _mm512_mask_cmp_ps_mask(_mm512_cmp_ps_mask(v, lows, _CMP_GE_OQ), v, highs, _CMP_LE_OQ);
        _mm512_storeu_ps(near, _mm512_maskz_compress_ps(in, v));
        near += std::popcount(in);
    }
    below += static_cast<std::size_t>(less);
    near += betweenBody(values + i, count - i, low, high, below, near);
    return static_cast<std::size_t>(near - first);
}
#endif

}  // namespace

NumberKernels numberKernels(SimdPath path)
{
#if defined(__x86_64__)
    if (path == SimdPath::avx512)
        return {addFiniteAvx2, squaresAvx2, betweenAvx512};
    if (path == SimdPath::avx2)
        return {addFiniteAvx2, squaresAvx2, betweenPlain};
#endif
    static_cast<void>(path);
    return {addFinitePlain, squaresPlain, betweenPlain};
}

}  // namespace pavane
