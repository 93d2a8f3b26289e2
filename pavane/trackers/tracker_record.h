#pragma once

#include "tessel/AFile.h"

#include <bit>
#include <cmath>
#include <type_traits>

namespace pavane
{

// Fields of tracker records: written as they lie in memory, one after another without padding.

static_assert(std::endian::native == std::endian::little, "stored fields are little-endian");

template <typename... T>
int storeFields(AFile& file, const T&... fields)
{
    return (file.write(&fields, sizeof fields) && ...);
}

template <typename... T>
int loadFields(AFile& file, T&... fields)
{
    static_assert((std::is_trivially_copyable_v<T> && ...), "fields are plain values");
    return (file.read(&fields, sizeof fields) && ...);
}

// What a loaded record may hold: anything else no tracker can have written.

constexpr bool plausibleHandle(int size) { return size >= 1 && size <= 256; }
constexpr bool plausibleLeast(int size) { return size >= 0 && size <= 32767; }
constexpr bool plausibleStep(int degrees) { return degrees >= 0 && degrees <= 360; }
inline bool plausibleAngle(double angle) { return std::abs(angle) <= 1000; }

}  // namespace pavane
