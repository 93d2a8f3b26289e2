#include "pavane/axes/maps/cells/simd_path.h"

namespace pavane
{

SimdPath bestSimdPath()
{
#if defined(__x86_64__)
    static const SimdPath best = __builtin_cpu_supports("avx512f") &&
                                         __builtin_cpu_supports("avx512bw") &&
                                         __builtin_cpu_supports("avx512vl")
                                     ? SimdPath::avx512
                                 : __builtin_cpu_supports("avx2") ? SimdPath::avx2
                                                                  : SimdPath::plain;
    return best;
#else
    return SimdPath::plain;
#endif
}

}  // namespace pavane
