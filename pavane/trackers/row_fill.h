#pragma once

#include "tessel/ABitMatrix.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace pavane
{

// Setting the bits of one row of a matrix from the crossings of a polygon with it.

/// Sets the bits `first` to `last`, both included and in this order, cut to 0..columns-1.
inline void fillSpan(ABitMatrix::Word* row, int columns, int first, int last)
{
    using Word = ABitMatrix::Word;
    constexpr int bits = ABitMatrix::wordBits;
    constexpr Word ones = ~Word{0};
    first = std::max(first, 0);
    last = std::min(last, columns - 1);
    if (first > last)
        return;
    const int firstWord = static_cast<int>(static_cast<unsigned>(first) / bits);
    const int lastWord = static_cast<int>(static_cast<unsigned>(last) / bits);
    const Word head = ones << (static_cast<unsigned>(first) % bits);
    const Word tail = ones >> (bits - 1 - static_cast<unsigned>(last) % bits);
    if (firstWord == lastWord) {
        row[firstWord] |= head & tail;
        return;
    }
    row[firstWord] |= head;
    const int between = lastWord - firstWord - 1;
    if (between > 0)
        std::memset(row + firstWord + 1, 0xFF, static_cast<std::size_t>(between) * sizeof(Word));
    row[lastWord] |= tail;
}

/// Fills between the crossings, sorted here, two by two; an odd last one is left out.
inline void fillFew(ABitMatrix::Word* row, int columns, int* crossings, int n)
{
    for (int i = 1; i < n; ++i) {
        const int x = crossings[i];
        int at = i;
        for (; at > 0 && crossings[at - 1] > x; --at)
            crossings[at] = crossings[at - 1];
        crossings[at] = x;
    }
    for (int i = 0; i + 1 < n; i += 2)
        fillSpan(row, columns, crossings[i], crossings[i + 1]);
}

/// The same for any number of crossings without sorting: each one turns the inside on or off from
/// its column on, and each is the end of a span and so inside. `turns` is a row of words that are
/// all 0, and are so again afterwards.
inline void fillMany(ABitMatrix::Word* row, int columns, ABitMatrix::Word* turns,
                     const int* crossings, int n)
{
    using Word = ABitMatrix::Word;
    constexpr int bits = ABitMatrix::wordBits;
    const int ignored =
        n % 2 ? static_cast<int>(std::max_element(crossings, crossings + n) - crossings) : n;
    Word inside = 0;  // all ones while the columns up to here leave the row inside the polygon
    int firstWord = columns / bits + 1;
    int lastWord = -1;
    for (int i = 0; i < n; ++i) {
        const int x = crossings[i];
        if (i == ignored || x >= columns)
            continue;
        if (x < 0) {
            inside = ~inside;
            continue;
        }
        const int word = x / bits;
        const Word bit = Word{1} << (x % bits);
        turns[word] ^= bit;
        row[word] |= bit;
        firstWord = std::min(firstWord, word);
        lastWord = std::max(lastWord, word);
    }
    if (inside && lastWord < 0) {
        fillSpan(row, columns, 0, columns - 1);
        return;
    }
    if (inside)
        fillSpan(row, columns, 0, firstWord * bits - 1);
    for (int word = firstWord; word <= lastWord; ++word) {
        Word parity = turns[word];  // becomes, bit by bit, how many turns there were up to the bit
        for (int shift = 1; shift < bits; shift *= 2)
            parity ^= parity << shift;
        parity ^= inside;
        turns[word] = 0;
        const int lastBit = std::min(columns - word * bits, bits) - 1;
        row[word] |= parity & (~Word{0} >> (bits - 1 - lastBit));
        inside = parity >> (bits - 1) ? ~Word{0} : Word{0};
    }
    if (inside && std::int64_t{lastWord + 1} * bits < columns)
        fillSpan(row, columns, (lastWord + 1) * bits, columns - 1);
}

}  // namespace pavane
