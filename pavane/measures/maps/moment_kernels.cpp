#include "pavane/measures/maps/moment_kernels.h"

#include "pavane/axes/maps/cells/vector_types.h"

#include <bit>
#include <cstdint>
#include <limits>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace pavane
{

namespace
{

constexpr float greatestFloat = std::numeric_limits<float>::max();

PAVANE_INLINE_BODY void addCell(const MomentTerms& terms, float value, MomentSums& cell, int& used)
{
    const auto wide = static_cast<double>(value);
    for (std::size_t k = 0; k < cell.size(); ++k)
        cell[k] += terms.perValue[k] * wide + terms.alone[k];
    ++used;
}

void addPlain(const MomentTerms& terms, const float* values, std::size_t count, MomentSums* sums,
              int* used)
{
    for (std::size_t i = 0; i < count; ++i)
        // false for NaN too
        if (values[i] > terms.above && values[i] <= greatestFloat)
            addCell(terms, values[i], sums[i], used[i]);
}

#if defined(__x86_64__)
// Some cells are compared at once before the few of them above the clip are added: a question for
// each of them would be guessed wrong wherever the noise reaches the clip.
PAVANE_TARGET_AVX2 void addAvx2(const MomentTerms& terms, const float* values, std::size_t count,
                                MomentSums* sums, int* used)
{
    const __m256 above = _mm256_set1_ps(terms.above), most = _mm256_set1_ps(greatestFloat);
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        const __m256 v = _mm256_loadu_ps(values + i);
        const __m256 in =
            _mm256_and_ps(_mm256_cmp_ps(v, above, _CMP_GT_OQ), _mm256_cmp_ps(v, most, _CMP_LE_OQ));
        for (auto bits = static_cast<std::uint32_t>(_mm256_movemask_ps(in)); bits;
             bits &= bits - 1) {
            const std::size_t at = i + static_cast<std::size_t>(std::countr_zero(bits));
            addCell(terms, values[at], sums[at], used[at]);
        }
    }
    for (; i < count; ++i)
        if (values[i] > terms.above && values[i] <= greatestFloat)
            addCell(terms, values[i], sums[i], used[i]);
}

PAVANE_TARGET_AVX512 void addAvx512(const MomentTerms& terms, const float* values,
                                    std::size_t count, MomentSums* sums, int* used)
{
    constexpr std::size_t block = 16;
    const __m512 above = _mm512_set1_ps(terms.above), most = _mm512_set1_ps(greatestFloat);
    const __m512d perValue = _mm512_loadu_pd(terms.perValue.data());
    const __m512d alone = _mm512_loadu_pd(terms.alone.data());
    for (std::size_t i = 0; i < count; i += block) {
        const std::size_t left = count - i;
        const auto valid = static_cast<__mmask16>(left < block ? (1U << left) - 1 : 0xFFFFU);
        const __m512 v = _mm512_maskz_loadu_ps(valid, values + i);
        const __mmask16 in = _mm512_mask_cmp_ps_mask(
            _mm512_mask_cmp_ps_mask(valid, v, above, _CMP_GT_OQ), v, most, _CMP_LE_OQ);
        for (std::uint32_t bits = in; bits; bits &= bits - 1) {
            const std::size_t at = i + static_cast<std::size_t>(std::countr_zero(bits));
            double* const cell = sums[at].data();
            const __m512d wide = _mm512_set1_pd(static_cast<double>(values[at]));
            const __m512d more = _mm512_add_pd(_mm512_mul_pd(perValue, wide), alone);
            _mm512_storeu_pd(cell, _mm512_add_pd(_mm512_loadu_pd(cell), more));
            ++used[at];
        }
    }
}
#endif

}  // namespace

AddMomentPlane addMomentPlane(SimdPath path)
{
#if defined(__x86_64__)
    if (path == SimdPath::avx512)
        return addAvx512;
    if (path == SimdPath::avx2)
        return addAvx2;
#endif
    static_cast<void>(path);
    return addPlain;
}

}  // namespace pavane
