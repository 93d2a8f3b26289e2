#pragma once

#include <cstdint>
#include <cstring>

namespace pavane
{

// The headers of bitmap files and of bitmaps in memory, little-endian, as the BMP format has them.
inline constexpr int bitmapFileSize = 14;
inline constexpr int bitmapInfoSize = 40;
inline constexpr int indexedHeaderSize = bitmapInfoSize + 256 * 2;  ///< with 16-bit palette entries
inline constexpr int fullHeaderSize = bitmapFileSize + bitmapInfoSize + 256 * 4;

inline void putLittleEndian(unsigned char* to, std::int64_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        to[i] = static_cast<unsigned char>(value >> (8 * i) & 255);
}

inline std::int32_t takeInt32(const unsigned char* from)
{
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i)
        value = value << 8 | from[i];
    return static_cast<std::int32_t>(value);
}

inline int takeUint16(const unsigned char* from) { return from[0] | from[1] << 8; }

/// The 40 bytes of a bottom-up bitmap of one plane that is not compressed and has 256 colours.
inline void writeBitmapInfo(unsigned char* to, int width, int height, int bitCount, int imageBytes)
{
    std::memset(to, 0, bitmapInfoSize);
    putLittleEndian(to, bitmapInfoSize, 4);
    putLittleEndian(to + 4, width, 4);
    putLittleEndian(to + 8, height, 4);
    putLittleEndian(to + 12, 1, 2);
    putLittleEndian(to + 14, bitCount, 2);
    putLittleEndian(to + 20, imageBytes, 4);
    putLittleEndian(to + 32, 256, 4);
}

inline void writeBitmapFileHeader(unsigned char* to, std::int64_t fileBytes, int offsetOfBits)
{
    std::memset(to, 0, bitmapFileSize);
    to[0] = 'B';
    to[1] = 'M';
    putLittleEndian(to + 2, fileBytes, 4);
    putLittleEndian(to + 10, offsetOfBits, 4);
}

}  // namespace pavane
