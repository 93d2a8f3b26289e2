#pragma once

// Sixteen floats at a time, for kernels that are written once and compiled for several processors:
// the body is a function that is always inlined into one caller for each instruction set. The
// compiler splits the vectors where the registers are narrower, so all of them compute the same.
// For sources only; no header of the library shows these types.

#include <cstdint>
#include <cstring>
#include <limits>

#pragma GCC diagnostic ignored "-Wpsabi"  // the vectors never cross a call that is not inlined

#define PAVANE_INLINE_BODY [[gnu::always_inline]] static inline
#if defined(__x86_64__)
#define PAVANE_TARGET_AVX2 __attribute__((target("avx2")))
#define PAVANE_TARGET_AVX512 __attribute__((target("avx512f,avx512bw,avx512vl,avx512dq")))
#endif

namespace pavane
{

inline constexpr int floatLanes = 16;
using Floats = float __attribute__((vector_size(64)));
using Ints = std::int32_t __attribute__((vector_size(64)));

PAVANE_INLINE_BODY Floats loadFloats(const float* from)
{
    Floats v;
    std::memcpy(&v, from, sizeof v);
    return v;
}

PAVANE_INLINE_BODY void storeFloats(float* to, const Floats& v) { std::memcpy(to, &v, sizeof v); }

/// The cells as they are, those that are not finite as NaN, so that no comparison takes them.
PAVANE_INLINE_BODY Floats finiteOrNaN(const Floats& cells)
{
    Ints bits;
    std::memcpy(&bits, &cells, sizeof bits);
    bits |= (bits & 0x7FFFFFFF) >= 0x7F800000;
    Floats finite;
    std::memcpy(&finite, &bits, sizeof bits);
    return finite;
}

PAVANE_INLINE_BODY float finiteOrNaN(float cell)
{
    return cell - cell == 0 ? cell : std::numeric_limits<float>::quiet_NaN();
}

}  // namespace pavane
