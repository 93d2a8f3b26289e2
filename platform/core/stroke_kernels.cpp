#include "platform/core/stroke_kernels.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>
#include <utility>

#pragma GCC diagnostic ignored "-Wpsabi"  // the vectors never cross a call that is not inlined

namespace pavane
{

namespace
{

using Floats = float __attribute__((vector_size(64)));
using Words = std::uint32_t __attribute__((vector_size(64)));
using Shares = std::uint16_t __attribute__((vector_size(64)));
using Ints = std::int32_t __attribute__((vector_size(64)));

template <class V, class T>
[[gnu::always_inline]] inline V load(const T* from)
{
    V v;
    std::memcpy(&v, from, sizeof v);
    return v;
}

[[gnu::always_inline]] inline bool isZero(const Words& v)
{
    using Half = std::uint32_t __attribute__((vector_size(32)));
    using Quarter = std::uint64_t __attribute__((vector_size(16)));
    Half h[2];
    std::memcpy(h, &v, sizeof h);
    h[0] |= h[1];
    Quarter q[2];
    std::memcpy(q, h, sizeof q);
    q[0] |= q[1];
    return (q[0][0] | q[0][1]) == 0;
}

[[gnu::always_inline]] inline Floats greater(const Floats& a, const Floats& b)
{
    return a > b ? a : b;
}

/// Sixteen lanes of two vectors, from lane `k` of the first.
template <int k>
[[gnu::always_inline]] inline Floats shifted(const Floats& a, const Floats& b)
{
    return __builtin_shufflevector(a, b, k, k + 1, k + 2, k + 3, k + 4, k + 5, k + 6, k + 7, k + 8,
                                   k + 9, k + 10, k + 11, k + 12, k + 13, k + 14, k + 15);
}

/// The greatest of some items; two of them, since each has to wait for itself.
struct Most {
    Floats even = Floats{} - std::numeric_limits<float>::max();
    Floats odd = even;
    [[gnu::always_inline]] void take(int i, const Floats& item)
    {
        Floats& most = i % 2 ? odd : even;
        most = greater(most, item);
    }
};

/// Sixteen steps of widening; what is read from the left comes from registers, since few of the
/// places that are read lie as the memory likes them.
template <int... k>
[[gnu::always_inline]] inline void widenSteps(const float* left, const float* right,
                                              const float* shape, Most& most,
                                              std::integer_sequence<int, k...>)
{
    const Floats first = load<Floats>(left);
    const Floats second = load<Floats>(left + 16);
    (most.take(k, greater(shifted<k>(first, second), load<Floats>(right - k)) + shape[k]), ...);
}

/// `isWide`: the processor shifts lanes across a vector in one step.
template <bool isWide>
[[gnu::always_inline]] inline void widenBody(const float* from, const float* shape, int half,
                                             int count, float* to)
{
    for (int i = 0; i < count; i += 16) {
        Most most;
        const float* const left = from + i;
        const float* const right = left + 2 * half - 1;
        int j = 0;
        for (; isWide && j + 16 <= half; j += 16)
            widenSteps(left + j, right - j, shape + j, most, std::make_integer_sequence<int, 16>());
        const auto step = [&](int k, int way) __attribute__((always_inline))
        {
            most.take(way, greater(load<Floats>(left + k), load<Floats>(right - k)) + shape[k]);
        };
        for (; j + 2 <= half; j += 2) {
            step(j, 0);
            step(j + 1, 1);
        }
        if (j < half)
            step(j, 0);
        const Floats all = greater(most.even, most.odd);
        std::memcpy(to + i, &all, sizeof all);
    }
}

/// Where a part is covered from and to: places among the differences, then how far into their row;
/// twice the same of a part that is idle. In vectors, as single numbers are slow to shift.
[[gnu::always_inline]] inline void placeEnds(const float* low, const float* high, int parts,
                                             int height, std::int32_t* ends, int& firstRow,
                                             int& lastRow)
{
    const int count = stripColumns * parts;
    const Floats most = Floats{} + static_cast<float>(height + 2);
    const std::int32_t whole = static_cast<std::int32_t>(wholePixel) / parts;
    const int shift = std::countr_zero(static_cast<std::uint32_t>(whole));
    const auto scale = static_cast<float>(whole);
    Floats least = most;
    Floats greatest{};
    for (int i = 0; i < count; i += 16) {
        const Floats h = load<Floats>(high + i);
        Floats from = 1.0F - load<Floats>(low + i);
        Floats to = h + 1.0F;
        from = from < 0 ? Floats{} : from;
        from = from > most ? most : from;
        to = to > most ? most : to;
        // both at row 0 where nothing is covered
        from = h > nowhere / 2 ? from : Floats{};
        to = to > from ? to : from;
        const Floats first = to > from ? from : most;
        least = first < least ? first : least;
        greatest = to > greatest ? to : greatest;
        std::int32_t* at = ends + i;
        for (const Floats& end : {from, to}) {
            const Ints place = __builtin_convertvector(end * scale + 0.5F, Ints);
            const Ints row = (place >> shift) * stripColumns + i / parts;
            const Ints into = place & (whole - 1);
            std::memcpy(at, &row, sizeof row);
            std::memcpy(at + count, &into, sizeof into);
            at += 2 * count;
        }
    }
    float first = least[0];
    float last = greatest[0];
    for (int i = 1; i < 16; ++i) {
        first = std::min(first, least[i]);
        last = std::max(last, greatest[i]);
    }
    if (last > 0) {
        firstRow = std::min(firstRow, static_cast<int>(first));
        lastRow = std::max(lastRow, std::min(static_cast<int>(last) + 3, height + 4));
    }
}

[[gnu::always_inline]] inline void coverBody(const float* low, const float* high, int parts,
                                             int height, std::int32_t* ends,
                                             std::uint32_t* differences, int& firstRow,
                                             int& lastRow)
{
    const int count = stripColumns * parts;
    placeEnds(low, high, parts, height, ends, firstRow, lastRow);
    const std::uint32_t whole = wholePixel / static_cast<std::uint32_t>(parts);
    // side by side, so that one sum need not wait for the other
    for (int part = 0; part < parts; ++part)
        for (int column = 0; column < stripColumns; ++column) {
            const int i = column * parts + part;
            std::uint32_t* const top = differences + ends[i];
            const auto a = static_cast<std::uint32_t>(ends[count + i]);
            std::uint32_t* const bottom = differences + ends[2 * count + i];
            const auto b = static_cast<std::uint32_t>(ends[3 * count + i]);
            top[0] += whole - a;
            top[stripColumns] += a;
            bottom[0] -= whole - b;
            bottom[stripColumns] -= b;
        }
}

/// `whole`: a strip of 16 columns.
template <bool whole>
[[gnu::always_inline]] inline void blendRows(std::uint32_t* differences, int rows,
                                             std::uint32_t color, std::uint32_t* row,
                                             std::ptrdiff_t stride, int columns, int skipped)
{
    constexpr std::uint32_t redBlue = 0xFF00FF;
    constexpr int ahead = 8;  // rows that the memory takes to come
    const auto bytes = static_cast<std::size_t>(columns) * sizeof *row;
    Words sum{};
    const Shares red = (Shares)(Words{} + (color & redBlue));
    const Shares green = (Shares)(Words{} + (color >> 8 & 0xFF));
    for (int r = 0; r < rows; ++r, differences += 16) {
        const Words change = load<Words>(differences);
        const Words none{};
        std::memcpy(differences, &none, sizeof none);
        sum += change;
        if (r < skipped)
            continue;
        std::uint32_t* const here = row;
        row += stride;
        if (r + ahead < rows)
            __builtin_prefetch(here + ahead * stride, 1);
        // 0 to 256; curves that meet at a gap may sum up to more
        Ints cover = (Ints)(sum + (1u << 7)) >> 8;
        cover = cover < 0 ? Ints{} : cover;
        cover = cover > 256 ? Ints{} + 256 : cover;
        if (isZero((Words)cover))
            continue;
        Words old{};
        if constexpr (whole)
            old = load<Words>(here);
        else
            std::memcpy(&old, here, bytes);
        // a pixel is two pairs of channels, each channel in 16 bits; the fourth is that of the
        // ground, of which an opaque colour has none
        const Words on = (Words)cover;
        const Shares share = (Shares)(on | on << 16);
        const Shares rest = 256 - share;
        const Shares rb = (Shares)(old & redBlue) * rest + red * share + 128;
        const Shares g = (Shares)(old >> 8 & redBlue) * rest + green * share + 128;
        const Words mixed = ((Words)rb >> 8 & redBlue) | ((Words)g & ~redBlue);
        std::memcpy(here, &mixed, whole ? sizeof mixed : bytes);
    }
}

[[gnu::always_inline]] inline void blendBody(std::uint32_t* differences, int rows,
                                             std::uint32_t color, std::uint32_t* pixels,
                                             std::ptrdiff_t stride, int columns, int skipped)
{
    if (columns == 16)
        blendRows<true>(differences, rows, color, pixels, stride, columns, skipped);
    else
        blendRows<false>(differences, rows, color, pixels, stride, columns, skipped);
}

void widenPlain(const float* from, const float* shape, int half, int count, float* to)
{
    widenBody<false>(from, shape, half, count, to);
}

void coverPlain(const float* low, const float* high, int parts, int height, std::int32_t* ends,
                std::uint32_t* differences, int& firstRow, int& lastRow)
{
    coverBody(low, high, parts, height, ends, differences, firstRow, lastRow);
}

void blendPlain(std::uint32_t* differences, int rows, std::uint32_t color, std::uint32_t* pixels,
                std::ptrdiff_t stride, int columns, int skipped)
{
    blendBody(differences, rows, color, pixels, stride, columns, skipped);
}

#if defined(__x86_64__)
#define PAVANE_AVX2 __attribute__((target("avx2")))
#define PAVANE_AVX512 __attribute__((target("avx512f,avx512bw,avx512vl,avx512dq")))

PAVANE_AVX2 void widen256(const float* from, const float* shape, int half, int count, float* to)
{
    widenBody<false>(from, shape, half, count, to);
}

PAVANE_AVX2 void cover256(const float* low, const float* high, int parts, int height,
                          std::int32_t* ends, std::uint32_t* differences, int& firstRow,
                          int& lastRow)
{
    coverBody(low, high, parts, height, ends, differences, firstRow, lastRow);
}

PAVANE_AVX2 void blend256(std::uint32_t* differences, int rows, std::uint32_t color,
                          std::uint32_t* pixels, std::ptrdiff_t stride, int columns, int skipped)
{
    blendBody(differences, rows, color, pixels, stride, columns, skipped);
}

PAVANE_AVX512 void widen512(const float* from, const float* shape, int half, int count, float* to)
{
    widenBody<true>(from, shape, half, count, to);
}

PAVANE_AVX512 void cover512(const float* low, const float* high, int parts, int height,
                            std::int32_t* ends, std::uint32_t* differences, int& firstRow,
                            int& lastRow)
{
    coverBody(low, high, parts, height, ends, differences, firstRow, lastRow);
}

PAVANE_AVX512 void blend512(std::uint32_t* differences, int rows, std::uint32_t color,
                            std::uint32_t* pixels, std::ptrdiff_t stride, int columns, int skipped)
{
    blendBody(differences, rows, color, pixels, stride, columns, skipped);
}
#endif

StrokeKernels widest()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq"))
        return {widen512, cover512, blend512};
    if (__builtin_cpu_supports("avx2"))
        return {widen256, cover256, blend256};
#endif
    return {widenPlain, coverPlain, blendPlain};
}

}  // namespace

const StrokeKernels& strokeKernels()
{
    static const StrokeKernels kernels = widest();
    return kernels;
}

}  // namespace pavane
