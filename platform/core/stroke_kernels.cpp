#include "platform/core/stroke_kernels.h"

#include <algorithm>
#include <cstring>
#include <limits>

#pragma GCC diagnostic ignored "-Wpsabi"  // the vectors never cross a call that is not inlined

namespace pavane
{

namespace
{

using Floats = float __attribute__((vector_size(64)));
using Words = std::uint32_t __attribute__((vector_size(64)));
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

[[gnu::always_inline]] inline void blendBody(std::uint32_t* differences, int rows,
                                             std::uint32_t color, std::uint32_t* pixels,
                                             std::ptrdiff_t stride, int columns, int skipped)
{
    constexpr std::uint32_t redBlue = 0xFF00FF;
    constexpr std::uint32_t half = 0x800080;
    Words slope{};
    Words sum{};
    const std::uint32_t red = color & redBlue;
    const std::uint32_t green = color >> 8 & 0xFF;
    for (int r = 0; r < rows; ++r, differences += 16) {
        const Words change = load<Words>(differences);
        const Words none{};
        std::memcpy(differences, &none, sizeof none);
        slope += change;
        sum += slope;
        if (r < skipped)
            continue;
        // 0 to 256; curves that meet at a gap may sum up to more
        Ints cover = (Ints)(sum + (1u << 11)) >> 12;
        cover = cover < 0 ? Ints{} : cover;
        cover = cover > 256 ? Ints{} + 256 : cover;
        if (isZero((Words)cover))
            continue;
        std::uint32_t* const row = pixels + (r - skipped) * stride;
        Words old{};
        if (columns == 16)
            old = load<Words>(row);
        else
            std::memcpy(&old, row, static_cast<std::size_t>(columns) * sizeof *row);
        const Words on = (Words)cover;
        const Words off = 256 - on;
        const Words rb = ((old & redBlue) * off + red * on + half) >> 8 & redBlue;
        const Words g = ((old >> 8 & 0xFF) * off + green * on + 128) & 0xFF00;
        const Words mixed = rb | g;
        if (columns == 16)
            std::memcpy(row, &mixed, sizeof mixed);
        else
            std::memcpy(row, &mixed, static_cast<std::size_t>(columns) * sizeof *row);
    }
}

void widenPlain(const float* from, const float* shape, int half, int count, float* to)
{
    widenBody(from, shape, half, count, to);
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

PAVANE_AVX2 void blend256(std::uint32_t* differences, int rows, std::uint32_t color,
                          std::uint32_t* pixels, std::ptrdiff_t stride, int columns, int skipped)
{
    blendBody(differences, rows, color, pixels, stride, columns, skipped);
}

PAVANE_AVX512 void widen512(const float* from, const float* shape, int half, int count, float* to)
{
    widenBody(from, shape, half, count, to);
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
        return {widen512, blend512};
    if (__builtin_cpu_supports("avx2"))
        return {widen256, blend256};
#endif
    return {widenPlain, blendPlain};
}

}  // namespace

const StrokeKernels& strokeKernels()
{
    static const StrokeKernels kernels = widest();
    return kernels;
}

}  // namespace pavane
