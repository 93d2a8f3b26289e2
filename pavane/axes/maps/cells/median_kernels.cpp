#include "pavane/axes/maps/cells/median_kernels.h"

#include "pavane/axes/maps/cells/vector_types.h"

#include <bit>
#include <cmath>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace pavane
{

namespace
{

constexpr std::uint32_t blank = 0x7FC00000;  ///< the bits of a NaN

PAVANE_INLINE_BODY int valuesBody(const float* __restrict cells, int count, const double* centre,
                                  float* __restrict values)
{
    int finite = 0;
    for (int i = 0; i < count; ++i) {
        const auto bits = std::bit_cast<std::uint32_t>(cells[i]);
        const bool isFinite = bits << 1 < 0xFF000000u;
        finite += isFinite;
        values[i] = std::bit_cast<float>(isFinite ? bits : blank);
    }
    for (int i = count; i % floatLanes != 0; ++i)
        values[i] = std::bit_cast<float>(blank);
    if (centre) {
        const double from = *centre;  // no distance from a NaN is a number
        for (int i = 0; i < count; ++i)
            values[i] = static_cast<float>(std::fabs(static_cast<double>(values[i]) - from));
    }
    return finite;
}

PAVANE_INLINE_BODY void partBody(const float* __restrict values, int count, float low, float high,
                                 IntervalCounts& counts, float* __restrict inside)
{
    const float* const first = inside;
    int below = 0, atLow = 0, atHigh = 0;
    for (int i = 0; i < count; ++i) {
        below += values[i] < low;
        atLow += values[i] == low;
        atHigh += values[i] == high;
    }
    for (int i = 0; i < count; i += floatLanes) {
        int any = 0;
        for (int k = i; k < i + floatLanes; ++k)
            any |= (values[k] > low) & (values[k] < high);
        for (int k = i; any && k < i + floatLanes; ++k) {
            *inside = values[k];
            inside += (values[k] > low) & (values[k] < high);
        }
    }
    counts.below += below;
    counts.atLow += atLow;
    counts.atHigh += low == high ? 0 : atHigh;
    counts.inside += inside - first;
}

int valuesPlain(const float* cells, int count, const double* centre, float* values)
{
    return valuesBody(cells, count, centre, values);
}

void partPlain(const float* values, int count, float low, float high, IntervalCounts& counts,
               float* inside)
{
    partBody(values, count, low, high, counts, inside);
}

#if defined(__x86_64__)
PAVANE_TARGET_AVX2 int valuesAvx2(const float* cells, int count, const double* centre,
                                  float* values)
{
    return valuesBody(cells, count, centre, values);
}

PAVANE_TARGET_AVX2 void partAvx2(const float* values, int count, float low, float high,
                                 IntervalCounts& counts, float* inside)
{
    partBody(values, count, low, high, counts, inside);
}

PAVANE_TARGET_AVX512 int valuesAvx512(const float* cells, int count, const double* centre,
                                      float* values)
{
    return valuesBody(cells, count, centre, values);
}

/// Values inside are packed by one instruction; storing from a register is the quick form of it on
/// every processor.
PAVANE_TARGET_AVX512 void partAvx512(const float* values, int count, float low, float high,
                                     IntervalCounts& counts, float* inside)
{
    const __m512 lows = _mm512_set1_ps(low);
    const __m512 highs = _mm512_set1_ps(high);
    const float* const first = inside;
    int below = 0, atLow = 0, atHigh = 0;
    for (int i = 0; i < count; i += floatLanes) {
        const __m512 v = _mm512_loadu_ps(values + i);
        below += std::popcount(_mm512_cmp_ps_mask(v, lows, _CMP_LT_OQ));
        atLow += std::popcount(_mm512_cmp_ps_mask(v, lows, _CMP_EQ_OQ));
        atHigh += std::popcount(_mm512_cmp_ps_mask(v, highs, _CMP_EQ_OQ));
        const __mmask16 in =
            _mm512_mask_cmp_ps_mask(_mm512_cmp_ps_mask(v, lows, _CMP_GT_OQ), v, highs, _CMP_LT_OQ);
        _mm512_storeu_ps(inside, _mm512_maskz_compress_ps(in, v));
        inside += std::popcount(in);
    }
    counts.below += below;
    counts.atLow += atLow;
    counts.atHigh += low == high ? 0 : atHigh;
    counts.inside += inside - first;
}
#endif

}  // namespace

MedianKernels medianKernels(SimdPath path)
{
#if defined(__x86_64__)
    if (path == SimdPath::avx512)
        return {valuesAvx512, partAvx512};
    if (path == SimdPath::avx2)
        return {valuesAvx2, partAvx2};
#endif
    static_cast<void>(path);
    return {valuesPlain, partPlain};
}

}  // namespace pavane
