#include "platform/core/point_kernels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

// the pragmas that choose another target are the GNU compiler's
#if defined(__x86_64__) && !defined(__clang__)
#define PAVANE_WIDER_LOOPS
#endif

#pragma GCC diagnostic ignored "-Wpsabi"  // the vectors never cross a call that is not inlined

namespace pavane
{

namespace
{

namespace plain
{
#include "platform/core/point_loops.inc"
}

#if defined(PAVANE_WIDER_LOOPS)
#pragma GCC push_options
#pragma GCC target("avx2")
namespace avx2
{
#include "platform/core/point_loops.inc"
}
#pragma GCC pop_options

#pragma GCC push_options
#pragma GCC target("avx512f,avx512bw,avx512vl,avx512dq")
namespace avx512
{
#include "platform/core/point_loops.inc"
}
#pragma GCC pop_options
#endif

PointKernels widest()
{
#if defined(PAVANE_WIDER_LOOPS)
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
        __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512dq"))
        return {avx512::straight, avx512::within, avx512::ramp, avx512::chain};
    if (__builtin_cpu_supports("avx2"))
        return {avx2::straight, avx2::within, avx2::ramp, avx2::chain};
#endif
    return {plain::straight, plain::within, plain::ramp, plain::chain};
}

}  // namespace

const PointKernels& pointKernels()
{
    static const PointKernels kernels = widest();
    return kernels;
}

}  // namespace pavane
