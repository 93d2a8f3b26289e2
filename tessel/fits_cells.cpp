#include "tessel/fits_cells.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace pavane
{

namespace
{

std::uint8_t swapped(std::uint8_t v) { return v; }
std::uint16_t swapped(std::uint16_t v) { return __builtin_bswap16(v); }
std::uint32_t swapped(std::uint32_t v) { return __builtin_bswap32(v); }
std::uint64_t swapped(std::uint64_t v) { return __builtin_bswap64(v); }

/// Item `i` of big-endian `bytes`, with Word the unsigned type of Stored's size.
template <typename Stored, typename Word>
Stored item(const unsigned char* bytes, std::int64_t i)
{
    Word word;
    std::memcpy(&word, bytes + i * static_cast<std::int64_t>(sizeof(Word)), sizeof(Word));
    if constexpr (std::endian::native == std::endian::little)
        word = swapped(word);
    return std::bit_cast<Stored>(word);
}

float asFloat(double value)
{
    constexpr double most = std::numeric_limits<float>::max();
    const double cut = value > most ? most : value < -most ? -most : value;
    return static_cast<float>(std::isinf(value) ? value : cut);
}

template <typename Stored, typename Word>
void convert(const unsigned char* bytes, std::int64_t count, const CellScale& scale, float* cells)
{
    if constexpr (std::is_integral_v<Stored>) {
        for (std::int64_t i = 0; i < count; ++i) {
            const Stored stored = item<Stored, Word>(bytes, i);
            cells[i] = scale.hasBlank && stored == scale.blank
                           ? std::numeric_limits<float>::quiet_NaN()
                           : asFloat(static_cast<double>(stored) * scale.scale + scale.zero);
        }
    } else if (scale.scale == 1 && scale.zero == 0 && std::is_same_v<Stored, float>) {
        for (std::int64_t i = 0; i < count; ++i)
            cells[i] = static_cast<float>(item<Stored, Word>(bytes, i));
    } else {
        for (std::int64_t i = 0; i < count; ++i)
            cells[i] = asFloat(double{item<Stored, Word>(bytes, i)} * scale.scale + scale.zero);
    }
}

}  // namespace

void convertCells(const void* stored, int bitpix, std::int64_t count, const CellScale& scale,
                  float* cells)
{
    const auto* const bytes = static_cast<const unsigned char*>(stored);
    switch (bitpix) {
    case 8:
        return convert<std::uint8_t, std::uint8_t>(bytes, count, scale, cells);
    case 16:
        return convert<std::int16_t, std::uint16_t>(bytes, count, scale, cells);
    case 32:
        return convert<std::int32_t, std::uint32_t>(bytes, count, scale, cells);
    case 64:
        return convert<std::int64_t, std::uint64_t>(bytes, count, scale, cells);
    case -32:
        return convert<float, std::uint32_t>(bytes, count, scale, cells);
    default:
        return convert<double, std::uint64_t>(bytes, count, scale, cells);
    }
}

}  // namespace pavane
