#include "pavane/images/curve_scan.h"

#include <algorithm>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace pavane
{

namespace
{

std::int64_t scanPlain(const double* x, const double* y, std::int64_t first, std::int64_t n,
                       const ValueRange& xRange, const ValueRange& yRange, ValueRange& spread)
{
    std::int64_t i = first;
    for (; i < n && (!x || xRange.holds(x[i])) && yRange.holds(y[i]); ++i) {
        spread.least = std::min(spread.least, y[i]);
        spread.greatest = std::max(spread.greatest, y[i]);
    }
    return i;
}

#if defined(__x86_64__)

// The masked forms leave no lane undefined, which some compilers warn of in the others.
constexpr unsigned char allLanes = 0xFF;

// Whole blocks that lie inside; the plain loop finds the end in the block that does not.
__attribute__((target("avx512f"))) std::int64_t
scanBlocks512(const double* x, const double* y, std::int64_t n, const ValueRange& xRange,
              const ValueRange& yRange, ValueRange& spread)
{
    constexpr std::int64_t block = 16;
    const __m512d xLeast = _mm512_set1_pd(xRange.least), xMost = _mm512_set1_pd(xRange.greatest);
    const __m512d yLeast = _mm512_set1_pd(yRange.least), yMost = _mm512_set1_pd(yRange.greatest);
    __m512d low0 = _mm512_set1_pd(spread.least), high0 = _mm512_set1_pd(spread.greatest);
    __m512d low1 = low0, high1 = high0;
    std::int64_t i = 0;
    for (; i + block <= n; i += block) {
        const __m512d y0 = _mm512_loadu_pd(y + i), y1 = _mm512_loadu_pd(y + i + 8);
        __mmask8 in = _mm512_cmp_pd_mask(y0, yLeast, _CMP_GE_OQ);
        in = _mm512_mask_cmp_pd_mask(in, y0, yMost, _CMP_LE_OQ);
        in = _mm512_mask_cmp_pd_mask(in, y1, yLeast, _CMP_GE_OQ);
        in = _mm512_mask_cmp_pd_mask(in, y1, yMost, _CMP_LE_OQ);
        if (x) {
            const __m512d x0 = _mm512_loadu_pd(x + i), x1 = _mm512_loadu_pd(x + i + 8);
            in = _mm512_mask_cmp_pd_mask(in, x0, xLeast, _CMP_GE_OQ);
            in = _mm512_mask_cmp_pd_mask(in, x0, xMost, _CMP_LE_OQ);
            in = _mm512_mask_cmp_pd_mask(in, x1, xLeast, _CMP_GE_OQ);
            in = _mm512_mask_cmp_pd_mask(in, x1, xMost, _CMP_LE_OQ);
        }
        if (in != allLanes)
            break;
        low0 = _mm512_mask_min_pd(low0, allLanes, low0, y0);
        high0 = _mm512_mask_max_pd(high0, allLanes, high0, y0);
        low1 = _mm512_mask_min_pd(low1, allLanes, low1, y1);
        high1 = _mm512_mask_max_pd(high1, allLanes, high1, y1);
    }
    alignas(64) double low[8], high[8];
    _mm512_store_pd(low, _mm512_mask_min_pd(low0, allLanes, low0, low1));
    _mm512_store_pd(high, _mm512_mask_max_pd(high0, allLanes, high0, high1));
    spread = {*std::min_element(low, low + 8), *std::max_element(high, high + 8)};
    return i;
}

__attribute__((target("avx2"))) __m256d between(__m256d v, __m256d least, __m256d most)
{
    return _mm256_and_pd(_mm256_cmp_pd(v, least, _CMP_GE_OQ), _mm256_cmp_pd(v, most, _CMP_LE_OQ));
}

__attribute__((target("avx2"))) std::int64_t scanBlocks256(const double* x, const double* y,
                                                           std::int64_t n, const ValueRange& xRange,
                                                           const ValueRange& yRange,
                                                           ValueRange& spread)
{
    constexpr std::int64_t block = 8;
    const __m256d xLeast = _mm256_set1_pd(xRange.least), xMost = _mm256_set1_pd(xRange.greatest);
    const __m256d yLeast = _mm256_set1_pd(yRange.least), yMost = _mm256_set1_pd(yRange.greatest);
    __m256d low0 = _mm256_set1_pd(spread.least), high0 = _mm256_set1_pd(spread.greatest);
    __m256d low1 = low0, high1 = high0;
    std::int64_t i = 0;
    for (; i + block <= n; i += block) {
        const __m256d y0 = _mm256_loadu_pd(y + i), y1 = _mm256_loadu_pd(y + i + 4);
        __m256d in = _mm256_and_pd(between(y0, yLeast, yMost), between(y1, yLeast, yMost));
        if (x) {
            in = _mm256_and_pd(in, between(_mm256_loadu_pd(x + i), xLeast, xMost));
            in = _mm256_and_pd(in, between(_mm256_loadu_pd(x + i + 4), xLeast, xMost));
        }
        if (_mm256_movemask_pd(in) != 0xF)
            break;
        low0 = _mm256_min_pd(low0, y0);
        high0 = _mm256_max_pd(high0, y0);
        low1 = _mm256_min_pd(low1, y1);
        high1 = _mm256_max_pd(high1, y1);
    }
    alignas(32) double low[4], high[4];
    _mm256_store_pd(low, _mm256_min_pd(low0, low1));
    _mm256_store_pd(high, _mm256_max_pd(high0, high1));
    spread = {*std::min_element(low, low + 4), *std::max_element(high, high + 4)};
    return i;
}

using BlockScan = std::int64_t (*)(const double*, const double*, std::int64_t, const ValueRange&,
                                   const ValueRange&, ValueRange&);

BlockScan widestScan()
{
    if (__builtin_cpu_supports("avx512f"))
        return scanBlocks512;
    return __builtin_cpu_supports("avx2") ? scanBlocks256 : nullptr;
}

#endif

}  // namespace

std::int64_t scanInside(const double* x, const double* y, std::int64_t n, const ValueRange& xRange,
                        const ValueRange& yRange, ValueRange& spread)
{
    std::int64_t done = 0;
#if defined(__x86_64__)
    static const BlockScan scanBlocks = widestScan();
    if (scanBlocks)
        done = scanBlocks(x, y, n, xRange, yRange, spread);
#endif
    return scanPlain(x, y, done, n, xRange, yRange, spread);
}

}  // namespace pavane
