#include "pavane/axes/maps/cells/rank_kernels.h"

#include "pavane/axes/maps/cells/vector_types.h"

#include <algorithm>
#include <cmath>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace pavane
{

namespace
{

PAVANE_INLINE_BODY void rankBody(const float* cells, int count, float low, float scale, int last,
                                 unsigned char* ranks)
{
    using Bytes = unsigned char __attribute__((vector_size(16)));
    const float top = static_cast<float>(last);
    const Floats tops = Floats{} + top;
    int i = 0;
    for (; i + floatLanes <= count; i += floatLanes) {
        const Floats v = loadFloats(cells + i);
        Ints bits;
        std::memcpy(&bits, &v, sizeof bits);
        Floats place = (v - low) * scale;
        place = place > 0.0f ? place : Floats{};
        place = place < top ? place : tops;
        const Ints isFinite = (bits & 0x7FFFFFFF) < 0x7F800000;
        const Ints rank = (__builtin_convertvector(place, Ints) + 1) & isFinite;
        const Bytes bytes = __builtin_convertvector(rank, Bytes);
        std::memcpy(ranks + i, &bytes, sizeof bytes);
    }
    for (; i < count; ++i) {
        float place = (cells[i] - low) * scale;
        place = place > 0.0f ? place : 0.0f;
        place = place < top ? place : top;
        ranks[i] = static_cast<unsigned char>(std::isfinite(cells[i]) ? place + 1 : 0.0f);
    }
}

/// What lies there need not be memory of ours: asking for it never fails.
PAVANE_INLINE_BODY void ask(const unsigned char* from, std::ptrdiff_t ahead)
{
    const auto address =
        reinterpret_cast<std::uintptr_t>(from) + static_cast<std::uintptr_t>(ahead);
    __builtin_prefetch(reinterpret_cast<const void*>(address));
}

template <int rows>
PAVANE_INLINE_BODY void foldOf(const unsigned char* const* row, int count, std::ptrdiff_t ahead,
                               unsigned char* __restrict greatest)
{
    using Bytes = unsigned char __attribute__((vector_size(32)));
    constexpr int bytes = sizeof(Bytes);
    int i = 0;
    for (; i + bytes <= count; i += bytes) {
        Bytes most;
        std::memcpy(&most, row[0] + i, bytes);
        ask(row[0] + i, ahead);
        for (int r = 1; r < rows; ++r) {
            Bytes next;
            std::memcpy(&next, row[r] + i, bytes);
            ask(row[r] + i, ahead);
            most = next > most ? next : most;
        }
        std::memcpy(greatest + i, &most, bytes);
    }
    for (; i < count; ++i) {
        greatest[i] = row[0][i];
        for (int r = 1; r < rows; ++r)
            greatest[i] = std::max(greatest[i], row[r][i]);
    }
}

PAVANE_INLINE_BODY void foldBody(const unsigned char* const* row, int rows, int count,
                                 std::ptrdiff_t ahead, unsigned char* greatest)
{
    switch (rows) {
    case 1:
        return foldOf<1>(row, count, ahead, greatest);
    case 2:
        return foldOf<2>(row, count, ahead, greatest);
    case 3:
        return foldOf<3>(row, count, ahead, greatest);
    default:
        return foldOf<4>(row, count, ahead, greatest);
    }
}

PAVANE_INLINE_BODY void pairsBody(const unsigned char* row, int distance, int count,
                                  unsigned char* __restrict greatest)
{
    for (int i = 0; i < count; ++i)
        greatest[i] = std::max(row[i], row[i + distance]);
}

void rankPlain(const float* cells, int count, float low, float scale, int last,
               unsigned char* ranks)
{
    rankBody(cells, count, low, scale, last, ranks);
}
void foldPlain(const unsigned char* const* row, int rows, int count, std::ptrdiff_t ahead,
               unsigned char* greatest)
{
    foldBody(row, rows, count, ahead, greatest);
}
void pairsPlain(const unsigned char* row, int distance, int count, unsigned char* greatest)
{
    pairsBody(row, distance, count, greatest);
}

constexpr RankKernels plainKernels{rankPlain, foldPlain, pairsPlain, nullptr};

#if defined(__x86_64__)

PAVANE_TARGET_AVX2 void rankAvx2(const float* cells, int count, float low, float scale, int last,
                                 unsigned char* ranks)
{
    rankBody(cells, count, low, scale, last, ranks);
}
PAVANE_TARGET_AVX2 void foldAvx2(const unsigned char* const* row, int rows, int count,
                                 std::ptrdiff_t ahead, unsigned char* greatest)
{
    foldBody(row, rows, count, ahead, greatest);
}
PAVANE_TARGET_AVX2 void pairsAvx2(const unsigned char* row, int distance, int count,
                                  unsigned char* greatest)
{
    pairsBody(row, distance, count, greatest);
}

/// First items in the lower half of a vector, last items in the upper.
PAVANE_TARGET_AVX2 void joinAvx2(const unsigned char* row, const ItemShuffles& items,
                                 unsigned char* greatest)
{
    for (const ItemShuffles::Block& block : items.blocks) {
        const unsigned char* from = row + block.base;
        const ItemShuffles::Shuffle* shuffle = items.shuffles.data() + block.shuffle;
        __m256i found = _mm256_setzero_si256();
        for (int i = 0; i < block.chunks; ++i, from += 16, ++shuffle) {
            const __m256i bytes = _mm256_broadcastsi128_si256(
                _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
            const __m256i places =
                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(shuffle->places));
            found = _mm256_or_si256(found, _mm256_shuffle_epi8(bytes, places));
        }
        _mm_storeu_si128(
            reinterpret_cast<__m128i*>(greatest),
            _mm_max_epu8(_mm256_castsi256_si128(found), _mm256_extracti128_si256(found, 1)));
        greatest += ItemShuffles::groupsOfBlock;
    }
}

PAVANE_TARGET_AVX512 void rankAvx512(const float* cells, int count, float low, float scale,
                                     int last, unsigned char* ranks)
{
    rankBody(cells, count, low, scale, last, ranks);
}

constexpr RankKernels avx2Kernels{rankAvx2, foldAvx2, pairsAvx2, joinAvx2};
constexpr RankKernels avx512Kernels{rankAvx512, foldAvx2, pairsAvx2, joinAvx2};

#endif

}  // namespace

const RankKernels& rankKernels(SimdPath path)
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
