#include "pavane/axes/maps/cells/level_kernels.h"

#include "pavane/axes/maps/cells/vector_types.h"

#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

PAVANE_INLINE_BODY void countBody(const float* values, int count, const float* thresholds,
                                  int thresholdCount, unsigned char* levels)
{
    using Bytes = unsigned char __attribute__((vector_size(16)));
    int i = 0;
    for (; i + floatLanes <= count; i += floatLanes) {
        const Floats cells = finiteOrNaN(loadFloats(values + i));
        Ints reached = {};
        for (int k = 0; k < thresholdCount; ++k)
            reached -= cells >= thresholds[k];
        reached |= cells != cells;  // all bits: 255 in a byte
        const Bytes bytes = __builtin_convertvector(reached, Bytes);
        std::memcpy(levels + i, &bytes, sizeof bytes);
    }
    for (; i < count; ++i) {
        const float cell = finiteOrNaN(values[i]);
        int reached = 0;
        for (int k = 0; k < thresholdCount; ++k)
            reached += cell >= thresholds[k];
        levels[i] = cell != cell ? blankLevel : static_cast<unsigned char>(reached);
    }
}

#if defined(__x86_64__)
PAVANE_TARGET_AVX2 void countAvx2(const float* values, int count, const float* thresholds,
                                  int thresholdCount, unsigned char* levels)
{
    countBody(values, count, thresholds, thresholdCount, levels);
}
PAVANE_TARGET_AVX512 void countAvx512(const float* values, int count, const float* thresholds,
                                      int thresholdCount, unsigned char* levels)
{
    countBody(values, count, thresholds, thresholdCount, levels);
}
#endif

}  // namespace

float contourThreshold(double level)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    if (!(std::fabs(level) <= static_cast<double>(std::numeric_limits<float>::max())))
        return level < 0 ? -infinity : infinity;
    const float nearest = static_cast<float>(level);
    return static_cast<double>(nearest) < level ? std::nextafterf(nearest, infinity) : nearest;
}

void countLevels(const float* values, int count, const float* thresholds, int thresholdCount,
                 unsigned char* levels, SimdPath path)
{
#if defined(__x86_64__)
    if (path == SimdPath::avx512)
        return countAvx512(values, count, thresholds, thresholdCount, levels);
    if (path == SimdPath::avx2)
        return countAvx2(values, count, thresholds, thresholdCount, levels);
#endif
    static_cast<void>(path);
    countBody(values, count, thresholds, thresholdCount, levels);
}

}  // namespace pavane
