#include "platform/core/stroke_kernels.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

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

[[gnu::always_inline]] inline void widenBody(const float* from, const float* shape, int half,
                                             int count, float* to)
{
    for (int i = 0; i < count; i += 16) {
        Floats most = Floats{} - std::numeric_limits<float>::max();
        const float* left = from + i;
        const float* right = left + 2 * half - 1;
        for (int j = 0; j < half; ++j, ++left, --right) {
            const Floats a = load<Floats>(left);
            const Floats b = load<Floats>(right);
            const Floats c = (a > b ? a : b) + shape[j];
            most = c > most ? c : most;
        }
        std::memcpy(to + i, &most, sizeof most);
    }
}

/// Where a part is covered from and to, in `scale` parts of a row; nothing of it where it is idle.
[[gnu::always_inline]] inline void placeEnds(const float* low, const float* high, int parts,
                                             int height, std::int32_t* ends, int& firstRow,
                                             int& lastRow)
{
    const int count = stripColumns * parts;
    const Floats most = Floats{} + static_cast<float>(height + 2);
    const float scale = static_cast<float>(wholePixel) / static_cast<float>(parts);
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
        const Ints a = __builtin_convertvector(from * scale + 0.5F, Ints);
        const Ints b = __builtin_convertvector(to * scale + 0.5F, Ints);
        std::memcpy(ends + i, &a, sizeof a);
        std::memcpy(ends + count + i, &b, sizeof b);
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
    const int shift = std::countr_zero(whole);
    // side by side, so that one sum need not wait for the other
    for (int part = 0; part < parts; ++part)
        for (int column = 0; column < stripColumns; ++column) {
            const int i = column * parts + part;
            const auto from = static_cast<std::uint32_t>(ends[i]);
            const auto to = static_cast<std::uint32_t>(ends[count + i]);
            std::uint32_t* const top = differences + (from >> shift) * stripColumns + column;
            std::uint32_t* const bottom = differences + (to >> shift) * stripColumns + column;
            const std::uint32_t a = from & (whole - 1);
            const std::uint32_t b = to & (whole - 1);
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
        // a pixel is two pairs of channels, each channel in 16 bits
        const Words on = (Words)cover;
        const Shares share = (Shares)(on | on << 16);
        const Shares rest = 256 - share;
        const Shares rb = (Shares)(old & redBlue) * rest + red * share + 128;
        const Shares g = (Shares)(old >> 8 & 0xFF) * rest + green * share + 128;
        const Words mixed = ((Words)rb >> 8 & redBlue) | ((Words)g & 0xFF00);
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
    widenBody(from, shape, half, count, to);
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
    widenBody(from, shape, half, count, to);
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
    widenBody(from, shape, half, count, to);
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
