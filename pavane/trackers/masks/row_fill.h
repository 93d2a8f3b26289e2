#pragma once

#include "tessel/ABitMatrix.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace pavane
{

// Setting the bits of one row of a matrix from the crossings of a polygon with it.

/// Writes n words of ones. Stores overlap instead of ending in a loop over single words, and the
/// long middle is written in whole cache lines; the compiler splits the stores where registers are
/// narrower. With `Ahead`, the lines `ahead` words further on are asked for: the caller's next
/// rows.
template <bool Ahead>
[[gnu::always_inline]] inline void fillWords(ABitMatrix::Word* to, int n, std::int64_t ahead)
{
    using Word = ABitMatrix::Word;
    using Eight = Word __attribute__((vector_size(64)));
    using Four = Word __attribute__((vector_size(32)));
    using Two = Word __attribute__((vector_size(16)));
    const auto put = [](Word* at, const auto& ones) { std::memcpy(at, &ones, sizeof ones); };
    if (n >= 8) {
        Word* const tail = to + n - 8;
        put(to, ~Eight{});
        to += 8 - (reinterpret_cast<std::uintptr_t>(to) / sizeof(Word)) % 8;
        for (; to < tail; to += 8) {
            if constexpr (Ahead)
                __builtin_prefetch(to + ahead, 1, 3);
            put(to, ~Eight{});
        }
        put(tail, ~Eight{});
    } else if (n >= 4) {
        put(to, ~Four{});
        put(to + n - 4, ~Four{});
    } else if (n >= 2) {
        put(to, ~Two{});
        put(to + n - 2, ~Two{});
    } else if (n == 1) {
        *to = ~Word{0};
    }
}

/// Sets the bits `first` to `last`, both included and in this order, cut to 0..columns-1.
inline void fillSpan(ABitMatrix::Word* row, int columns, int first, int last)
{
    using Word = ABitMatrix::Word;
    constexpr unsigned bits = ABitMatrix::wordBits;
    constexpr Word ones = ~Word{0};
    first = std::max(first, 0);
    last = std::min(last, columns - 1);
    if (first > last)
        return;
    const unsigned firstWord = static_cast<unsigned>(first) / bits;
    const unsigned lastWord = static_cast<unsigned>(last) / bits;
    const Word head = ones << (static_cast<unsigned>(first) % bits);
    const Word tail = ones >> (bits - 1 - static_cast<unsigned>(last) % bits);
    if (firstWord == lastWord) {
        row[firstWord] |= head & tail;
        return;
    }
    row[firstWord] |= head;
    fillWords<false>(row + firstWord + 1, static_cast<int>(lastWord - firstWord) - 1, 0);
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
