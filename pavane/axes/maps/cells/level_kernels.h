#pragma once

#include "pavane/axes/maps/cells/simd_path.h"

namespace pavane
{

/// The level index of a cell that is not finite.
inline constexpr unsigned char blankLevel = 255;

/// The least float that is not below `level`, so that floats compare with it as with the level.
float contourThreshold(double level);

/// levels[i] becomes the number of `thresholds` that are not above values[i], blankLevel where the
/// value is not finite. At most 254 thresholds.
void countLevels(const float* values, int count, const float* thresholds, int thresholdCount,
                 unsigned char* levels, SimdPath path);

}  // namespace pavane
