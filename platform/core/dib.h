#pragma once

#include "platform/types.h"

#include <cstdint>

namespace pavane
{

/// A device-independent bitmap as its header and bits lie in memory.
struct DIBView {
    int width = 0;
    int height = 0;
    bool bottomUp = true;
    int bitCount = 0;
    std::size_t stride = 0;
    const unsigned char* table = nullptr;
    int tableSize = 0;
    const unsigned char* bits = nullptr;

    /// Row counted from the top.
    const unsigned char* row(int y) const
    {
        const int stored = bottomUp ? height - 1 - y : y;
        return bits + static_cast<std::size_t>(stored) * stride;
    }
};

/// Reads a bitmap-info header; non-zero when it is one of an uncompressed bitmap of 8 or 32 bits.
int readDIB(const void* header, const void* bits, DIBView& view);

/// Cell of `source` that pixel i of `target` pixels shows: the one under the pixel's centre. On a
/// tie the lower cell when enlarging and the upper one when shrinking.
constexpr int sampledCell(std::int64_t i, std::int64_t source, std::int64_t target)
{
    const std::int64_t position = (2 * i + 1) * source;
    return static_cast<int>(target >= source ? (position - 1) / (2 * target)
                                             : position / (2 * target));
}

}  // namespace pavane
