#pragma once

#include <bit>
#include <cstdint>

namespace pavane
{

/// A whole number that orders floats as their values do (-0 just below 0), for counting.
constexpr std::uint32_t orderedKey(float value)
{
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(value);
    return bits ^ ((0u - (bits >> 31)) | 0x80000000u);  // signs come as they like: without a branch
}

/// The float of a key.
constexpr float keyValue(std::uint32_t key)
{
    return std::bit_cast<float>(key & 0x80000000u ? key & 0x7FFFFFFFu : ~key);
}

}  // namespace pavane
