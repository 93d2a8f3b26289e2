#pragma once

#include "pavane/dialogs/values/typed_number.h"

namespace pavane
{

// What the numbers of a self-calibration may be. Distances are in millions of wavelengths when they
// are typed.
inline constexpr double wavelengthsTyped = 1e6;
inline constexpr TypedNumber selfCalSeconds = {"The interval", 0, 1e8, TypedNumber::Kind::above};
inline constexpr TypedNumber selfCalRatio = {"The least ratio", 0, 1e6};
inline constexpr TypedNumber selfCalAntennas = {"The least number of antennas", 3, 1000,
                                                TypedNumber::Kind::whole};
inline constexpr TypedNumber selfCalLeastUv = {"The least uv distance", 0, 1e9};
inline constexpr TypedNumber selfCalMostUv = {"The greatest uv distance", 0, 1e9};

}  // namespace pavane
