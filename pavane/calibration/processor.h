#pragma once

// Kernels of this room are written once, as bodies that are always inlined, and compiled for
// several processors. For its sources only.

#define PAVANE_BODY [[gnu::always_inline]] inline
#if defined(__x86_64__)
#define PAVANE_FOR_AVX2 __attribute__((target("avx2")))
#endif

namespace pavane
{

/// Non-zero where what is compiled for AVX2 runs. Wider vectors slow some processors down for
/// longer than such short loops take.
inline int hasAvx2()
{
#if defined(__x86_64__)
    static const int found = __builtin_cpu_supports("avx2");
    return found;
#else
    return 0;
#endif
}

}  // namespace pavane
