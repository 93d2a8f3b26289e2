#include "pavane/axes/maps/cells/row_kernels.h"

#include "pavane/axes/maps/cells/vector_types.h"

#include <limits>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace pavane
{

namespace
{

constexpr float infinity = std::numeric_limits<float>::infinity();

/// `greatest` and `least` keep what they hold where the cell is not finite: a comparison with NaN
/// is false.
template <typename V>
PAVANE_INLINE_BODY void foldCell(const V& cell, V& greatest, V& least)
{
    const V finite = finiteOrNaN(cell);
    greatest = finite > greatest ? finite : greatest;
    least = finite < least ? finite : least;
}

template <int Rows>
PAVANE_INLINE_BODY void foldRows(const float* const* row, int count, float* greatest, int fresh,
                                 float* leastLanes)
{
    Floats least = loadFloats(leastLanes);
    int c = 0;
    for (; c + floatLanes <= count; c += floatLanes) {
        Floats most = Floats{} - infinity;
        if (!fresh)
            most = loadFloats(greatest + c);
        for (int r = 0; r < Rows; ++r)
            foldCell(loadFloats(row[r] + c), most, least);
        storeFloats(greatest + c, most);
    }
    for (; c < count; ++c) {
        float most = fresh ? -infinity : greatest[c];
        float fewest = least[0];
        for (int r = 0; r < Rows; ++r)
            foldCell(row[r][c], most, fewest);
        greatest[c] = most;
        least[0] = fewest;
    }
    storeFloats(leastLanes, least);
}

PAVANE_INLINE_BODY void foldBody(const float* const* row, int rows, int count, float* greatest,
                                 int fresh, float* least)
{
    if (rows == 4)
        foldRows<4>(row, count, greatest, fresh, least);
    else if (rows == 3)
        foldRows<3>(row, count, greatest, fresh, least);
    else if (rows == 2)
        foldRows<2>(row, count, greatest, fresh, least);
    else
        foldRows<1>(row, count, greatest, fresh, least);
}

PAVANE_INLINE_BODY void rangeBody(const float* row, int count, float* leastLanes,
                                  float* greatestLanes)
{
    Floats least = loadFloats(leastLanes);
    Floats greatest = loadFloats(greatestLanes);
    int c = 0;
    for (; c + floatLanes <= count; c += floatLanes)
        foldCell(loadFloats(row + c), greatest, least);
    for (; c < count; ++c) {
        float most = greatest[0];
        float fewest = least[0];
        foldCell(row[c], most, fewest);
        greatest[0] = most;
        least[0] = fewest;
    }
    storeFloats(leastLanes, least);
    storeFloats(greatestLanes, greatest);
}

PAVANE_INLINE_BODY void pairwiseBody(float* values, int count, int distance)
{
    int i = 0;
    for (; i + floatLanes <= count; i += floatLanes) {
        const Floats a = loadFloats(values + i);
        const Floats b = loadFloats(values + i + distance);
        storeFloats(values + i, b > a ? b : a);
    }
    for (; i < count; ++i)
        values[i] = values[i + distance] > values[i] ? values[i + distance] : values[i];
}

PAVANE_INLINE_BODY void quantizeBody(const float* values, int count, float low, float scale,
                                     int last, unsigned char blank, unsigned char* indices)
{
    using Bytes = unsigned char __attribute__((vector_size(16)));
    const float top = static_cast<float>(last);
    const Floats tops = Floats{} + top;
    int i = 0;
    for (; i + floatLanes <= count; i += floatLanes) {
        const Floats v = loadFloats(values + i);
        Floats place = (v - low) * scale;
        place = place > 0.0f ? place : Floats{};
        place = place < top ? place : tops;
        Ints index = __builtin_convertvector(place, Ints);
        const Ints isBlank = v == -infinity;
        index = (index & ~isBlank) | (isBlank & blank);
        const Bytes bytes = __builtin_convertvector(index, Bytes);
        std::memcpy(indices + i, &bytes, sizeof bytes);
    }
    for (; i < count; ++i) {
        float place = (values[i] - low) * scale;
        place = place > 0.0f ? place : 0.0f;
        place = place < top ? place : top;
        indices[i] = values[i] == -infinity ? blank : static_cast<unsigned char>(place);
    }
}

PAVANE_INLINE_BODY void expandTail(const unsigned char* from, const int* group, int i, int count,
                                   unsigned char* to)
{
    for (; i < count; ++i)
        to[i] = from[group[i]];
}

void expandPlain(const unsigned char* from, const int* group, int count, unsigned char* to)
{
    expandTail(from, group, 0, count, to);
}

void foldPlain(const float* const* row, int rows, int count, float* greatest, int fresh,
               float* least)
{
    foldBody(row, rows, count, greatest, fresh, least);
}
void rangePlain(const float* row, int count, float* least, float* greatest)
{
    rangeBody(row, count, least, greatest);
}
void pairwisePlain(float* values, int count, int distance)
{
    pairwiseBody(values, count, distance);
}
void quantizePlain(const float* values, int count, float low, float scale, int last,
                   unsigned char blank, unsigned char* indices)
{
    quantizeBody(values, count, low, scale, last, blank, indices);
}

constexpr RowKernels plainKernels{foldPlain, rangePlain, pairwisePlain, quantizePlain, expandPlain};

#if defined(__x86_64__)

/// Sixteen pixels show at most sixteen neighbouring cells: one byte shuffle each.
PAVANE_TARGET_AVX2 void expandAvx2(const unsigned char* from, const int* group, int count,
                                   unsigned char* to)
{
    int i = 0;
    for (; i + 16 <= count; i += 16) {
        const int base = group[i] < group[i + 15] ? group[i] : group[i + 15];
        const __m256i shift = _mm256_set1_epi32(base);
        const __m256i low = _mm256_sub_epi32(
            _mm256_loadu_si256(reinterpret_cast<const __m256i*>(group + i)), shift);
        const __m256i high = _mm256_sub_epi32(
            _mm256_loadu_si256(reinterpret_cast<const __m256i*>(group + i + 8)), shift);
        const __m256i words =
            _mm256_permute4x64_epi64(_mm256_packs_epi32(low, high), _MM_SHUFFLE(3, 1, 2, 0));
        const __m128i places =
            _mm_packus_epi16(_mm256_castsi256_si128(words), _mm256_extracti128_si256(words, 1));
        const __m128i cells = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + base));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + i), _mm_shuffle_epi8(cells, places));
    }
    expandTail(from, group, i, count, to);
}

PAVANE_TARGET_AVX2 void foldAvx2(const float* const* row, int rows, int count, float* greatest,
                                 int fresh, float* least)
{
    foldBody(row, rows, count, greatest, fresh, least);
}
PAVANE_TARGET_AVX2 void rangeAvx2(const float* row, int count, float* least, float* greatest)
{
    rangeBody(row, count, least, greatest);
}
PAVANE_TARGET_AVX2 void pairwiseAvx2(float* values, int count, int distance)
{
    pairwiseBody(values, count, distance);
}
PAVANE_TARGET_AVX2 void quantizeAvx2(const float* values, int count, float low, float scale,
                                     int last, unsigned char blank, unsigned char* indices)
{
    quantizeBody(values, count, low, scale, last, blank, indices);
}
PAVANE_TARGET_AVX512 void foldAvx512(const float* const* row, int rows, int count, float* greatest,
                                     int fresh, float* least)
{
    foldBody(row, rows, count, greatest, fresh, least);
}
PAVANE_TARGET_AVX512 void rangeAvx512(const float* row, int count, float* least, float* greatest)
{
    rangeBody(row, count, least, greatest);
}
PAVANE_TARGET_AVX512 void pairwiseAvx512(float* values, int count, int distance)
{
    pairwiseBody(values, count, distance);
}
PAVANE_TARGET_AVX512 void quantizeAvx512(const float* values, int count, float low, float scale,
                                         int last, unsigned char blank, unsigned char* indices)
{
    quantizeBody(values, count, low, scale, last, blank, indices);
}

constexpr RowKernels avx2Kernels{foldAvx2, rangeAvx2, pairwiseAvx2, quantizeAvx2, expandAvx2};
constexpr RowKernels avx512Kernels{foldAvx512, rangeAvx512, pairwiseAvx512, quantizeAvx512,
                                   expandAvx2};

#endif

}  // namespace

const RowKernels& rowKernels(SimdPath path)
{
#if defined(__x86_64__)
    if (path == SimdPath::avx512)
        return avx512Kernels;
    if (path == SimdPath::avx2)
        return avx2Kernels;
#endif
    static_cast<void>(path);
    return plainKernels;
}

}  // namespace pavane
