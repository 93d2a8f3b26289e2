#pragma once

#include "tessel/AFile.h"

#include <cstdint>

namespace pavane
{

// Fixed-width fields of stored records, lowest byte first on every processor.

/// Non-zero on success.
inline int writeInt32(AFile& file, std::int32_t value)
{
    const auto bits = static_cast<std::uint32_t>(value);
    const std::uint8_t bytes[4] = {
        static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8),
        static_cast<std::uint8_t>(bits >> 16), static_cast<std::uint8_t>(bits >> 24)};
    return file.write(bytes, sizeof bytes);
}

/// Non-zero on success; else 0 and `value` is left alone.
inline int readInt32(AFile& file, std::int32_t& value)
{
    std::uint8_t bytes[4];
    if (!file.read(bytes, sizeof bytes))
        return 0;
    value =
        static_cast<std::int32_t>(bytes[0] | std::uint32_t{bytes[1]} << 8 |
                                  std::uint32_t{bytes[2]} << 16 | std::uint32_t{bytes[3]} << 24);
    return 1;
}

}  // namespace pavane
