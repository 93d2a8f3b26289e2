#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace pavane
{

inline std::uint8_t byteSwapped(std::uint8_t v) { return v; }
inline std::uint16_t byteSwapped(std::uint16_t v) { return __builtin_bswap16(v); }
inline std::uint32_t byteSwapped(std::uint32_t v) { return __builtin_bswap32(v); }
inline std::uint64_t byteSwapped(std::uint64_t v) { return __builtin_bswap64(v); }

/// As many bits as a number of a file.
template <typename Stored>
using StoredWord = std::conditional_t<
    sizeof(Stored) == 1, std::uint8_t,
    std::conditional_t<sizeof(Stored) == 2, std::uint16_t,
                       std::conditional_t<sizeof(Stored) == 4, std::uint32_t, std::uint64_t>>>;

/// The item at `at`, its highest byte first, as FITS stores all of them.
template <typename Stored>
Stored bigEndianItem(const unsigned char* at)
{
    using Word = StoredWord<Stored>;
    static_assert(sizeof(Word) == sizeof(Stored));
    Word word;
    std::memcpy(&word, at, sizeof word);
    if constexpr (std::endian::native == std::endian::little)
        word = byteSwapped(word);
    return std::bit_cast<Stored>(word);
}

/// Puts it there.
template <typename Stored>
void putBigEndian(Stored value, unsigned char* at)
{
    auto word = std::bit_cast<StoredWord<Stored>>(value);
    if constexpr (std::endian::native == std::endian::little)
        word = byteSwapped(word);
    std::memcpy(at, &word, sizeof word);
}

}  // namespace pavane
