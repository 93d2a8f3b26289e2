#pragma once

#include "pavane/dialogs/values/typed_number.h"

namespace pavane
{

// What the numbers of CLEAN parameters may be.
inline constexpr double greatestSkyAngle = 1e8;  ///< mas, a map of 27 degrees
inline constexpr TypedNumber cleanWidth = {"The width", 16, 32768, TypedNumber::Kind::even};
inline constexpr TypedNumber cleanHeight = {"The height", 16, 32768, TypedNumber::Kind::even};
inline constexpr TypedNumber cleanCell = {"The cell", 0, greatestSkyAngle,
                                          TypedNumber::Kind::above};
inline constexpr TypedNumber cleanRobust = {"Robust", -5, 5};
inline constexpr TypedNumber cleanTaper = {"The taper", 0, greatestSkyAngle};
inline constexpr TypedNumber cleanShiftX = {"The shift to the east", -greatestSkyAngle,
                                            greatestSkyAngle};
inline constexpr TypedNumber cleanShiftY = {"The shift to the north", -greatestSkyAngle,
                                            greatestSkyAngle};
inline constexpr TypedNumber cleanGain = {"The gain", 1e-6, 1};
inline constexpr TypedNumber cleanMajorGain = {"The major gain", 1e-6, 1};
inline constexpr TypedNumber cleanIterations = {"The number of iterations", 0, 1e9,
                                                TypedNumber::Kind::whole};
inline constexpr TypedNumber cleanThreshold = {"The threshold", 0, 1e12};
inline constexpr TypedNumber cleanMaskLevel = {"The level of the automatic mask", 0.1, 1e6};

}  // namespace pavane
