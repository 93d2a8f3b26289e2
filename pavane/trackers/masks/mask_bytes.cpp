#include "pavane/trackers/masks/mask_bytes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace pavane
{

namespace
{

using Word = ABitMatrix::Word;
constexpr int bits = ABitMatrix::wordBits;

/// The eight bytes of eight bits, the lowest bit in the first byte in memory.
constexpr std::array<std::uint64_t, 256> bytesOfBits()
{
    std::array<std::uint64_t, 256> table{};
    for (unsigned value = 0; value < 256; ++value)
        for (unsigned bit = 0; bit < 8; ++bit) {
            const unsigned byte = std::endian::native == std::endian::little ? bit : 7 - bit;
            table[value] |= std::uint64_t{value >> bit & 1} << (8 * byte);
        }
    return table;
}

constexpr std::array<std::uint64_t, 256> spread = bytesOfBits();

/// A bit for each of eight bytes that is not 0, the first in memory in the lowest.
unsigned bitsOfBytes(const unsigned char* from)
{
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, from, sizeof bytes);
    constexpr std::uint64_t low = 0x7f7f7f7f7f7f7f7f, ones = 0x0101010101010101;
    const std::uint64_t set = ((((bytes & low) + low) | bytes) >> 7) & ones;
    // adds up, in the highest byte, each one at its place
    return static_cast<unsigned>(set * 0x0102040810204080 >> 56);
}

/// The bits of `count` cells, at most a word.
Word packWord(const unsigned char* from, std::int64_t step, int count)
{
    Word word = 0;
    if (std::endian::native == std::endian::little && step == 1 && count == bits) {
        for (int i = 0; i < bits; i += 8)
            word |= Word{bitsOfBytes(from + i)} << i;
        return word;
    }
    for (int i = 0; i < count; ++i)
        word |= Word{from[i * step] != 0} << i;
    return word;
}

void unpackWord(Word word, unsigned char* to)
{
    if (word == 0 || word == ~Word{0}) {  // most words of most masks
        std::memset(to, word ? 1 : 0, bits);
        return;
    }
    for (int i = 0; i < bits; i += 8, word >>= 8)
        std::memcpy(to + i, &spread[word & 255], 8);
}

}  // namespace

void unpackMask(const ABitMatrix& mask, unsigned char* to, std::int64_t rowBytes)
{
    const int whole = mask.columns() / bits;
    const int rest = mask.columns() % bits;
    for (int r = 0; r < mask.rows(); ++r) {
        const Word* const words = mask.row(r);
        unsigned char* const row = to + r * rowBytes;
        for (int w = 0; w < whole; ++w)
            unpackWord(words[w], row + std::ptrdiff_t{w} * bits);
        for (int i = 0; i < rest; ++i)
            row[std::ptrdiff_t{whole} * bits + i] =
                static_cast<unsigned char>(words[whole] >> i & 1);
    }
}

void packMask(const unsigned char* first, std::int64_t rowBytes, std::int64_t columnBytes,
              ABitMatrix& mask)
{
    for (int r = 0; r < mask.rows(); ++r) {
        const unsigned char* const row = first + r * rowBytes;
        for (int c = 0; c < mask.columns(); c += bits)
            mask.row(r)[c / bits] =
                packWord(row + c * columnBytes, columnBytes, std::min(bits, mask.columns() - c));
    }
}

}  // namespace pavane
