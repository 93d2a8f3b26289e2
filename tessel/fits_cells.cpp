#include "tessel/fits_cells.h"

#include "tessel/big_endian.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace pavane
{

namespace
{

template <typename Stored>
Stored item(const unsigned char* bytes, std::int64_t i)
{
    return bigEndianItem<Stored>(bytes + i * static_cast<std::int64_t>(sizeof(Stored)));
}

float asFloat(double value)
{
    constexpr double most = std::numeric_limits<float>::max();
    const double cut = value > most ? most : value < -most ? -most : value;
    return static_cast<float>(std::isinf(value) ? value : cut);
}

#if defined(__x86_64__)
/// The same loop as below for processors that turn the bytes of eight numbers round at once.
__attribute__((target("avx2"))) void swapFloatsAvx2(const unsigned char* bytes, std::int64_t count,
                                                    float* cells)
{
    for (std::int64_t i = 0; i < count; ++i)
        cells[i] = item<float>(bytes, i);
}
#endif

void swapFloats(const unsigned char* bytes, std::int64_t count, float* cells)
{
#if defined(__x86_64__)
    static const int hasAvx2 = __builtin_cpu_supports("avx2");
    if (hasAvx2)
        return swapFloatsAvx2(bytes, count, cells);
#endif
    for (std::int64_t i = 0; i < count; ++i)
        cells[i] = item<float>(bytes, i);
}

template <typename Stored>
void convert(const unsigned char* bytes, std::int64_t count, const CellScale& scale, float* cells)
{
    if constexpr (std::is_integral_v<Stored>) {
        for (std::int64_t i = 0; i < count; ++i) {
            const auto stored = item<Stored>(bytes, i);
            cells[i] = scale.hasBlank && stored == scale.blank
                           ? std::numeric_limits<float>::quiet_NaN()
                           : asFloat(static_cast<double>(stored) * scale.scale + scale.zero);
        }
    } else if (scale.scale == 1 && scale.zero == 0 && std::is_same_v<Stored, float>) {
        swapFloats(bytes, count, cells);
    } else {
        for (std::int64_t i = 0; i < count; ++i)
            cells[i] = asFloat(double{item<Stored>(bytes, i)} * scale.scale + scale.zero);
    }
}

}  // namespace

void convertCells(const void* stored, int bitpix, std::int64_t count, const CellScale& scale,
                  float* cells)
{
    const auto* const bytes = static_cast<const unsigned char*>(stored);
    switch (bitpix) {
    case 8:
        return convert<std::uint8_t>(bytes, count, scale, cells);
    case 16:
        return convert<std::int16_t>(bytes, count, scale, cells);
    case 32:
        return convert<std::int32_t>(bytes, count, scale, cells);
    case 64:
        return convert<std::int64_t>(bytes, count, scale, cells);
    case -32:
        return convert<float>(bytes, count, scale, cells);
    default:
        return convert<double>(bytes, count, scale, cells);
    }
}

}  // namespace pavane
