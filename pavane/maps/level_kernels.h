#pragma once

#include "pavane/maps/simd_path.h"

namespace pavane
{

/// The level index of a cell that is not finite.
inline constexpr unsigned char blankLevel = 255;

/// levels[i] becomes the number of `thresholds` that are not above values[i], blankLevel where the
/// value is not finite. At most 254 thresholds.
void countLevels(const float* values, int count, const float* thresholds, int thresholdCount,
                 unsigned char* levels, SimdPath path);

}  // namespace pavane
