#pragma once

#include "pavane/trackers/masks/between_edges.h"
#include "tessel/ABitMatrix.h"

#include <cstdint>

namespace pavane
{

// Eight rows between two edges at a time. For one source only: the functions are inlined into one
// caller for each instruction set, and the compiler splits the vectors where registers are
// narrower.

using RowInts = std::int64_t __attribute__((vector_size(64)));
using RowWords = ABitMatrix::Word __attribute__((vector_size(64)));

/// An edge at eight rows, one below the other.
struct EdgeBlock {
    RowInts x;
    RowInts error;
    ScanEdge leap;  // its steps lead eight rows on

    [[gnu::always_inline]] explicit EdgeBlock(const ScanEdge& edge) : leap(edge)
    {
        x = RowInts{} + edge.x;
        error = RowInts{} + edge.error;
        const RowInts rows = {0, 1, 2, 3, 4, 5, 6, 7};
        for (std::int64_t leapRows = 1; leapRows < blockRows; leapRows *= 2) {
            step((rows & leapRows) != 0);
            leap.doubleSteps();
        }
    }
    [[gnu::always_inline]] void step() { step(~RowInts{}); }

private:
    /// Where `rows` is all ones.
    [[gnu::always_inline]] void step(const RowInts& rows)
    {
        error += rows & leap.errorStep;
        const RowInts carried = error >= 0;
        x += (rows & leap.xStep) + (carried & leap.xCarry);
        error -= carried & leap.height;
    }
};

/// The words that eight spans reach, cut to the columns: the first, how many come after it (below 0
/// for a span outside), and the bits of the first and the last.
struct SpanBlock {
    RowInts firstWord;
    RowInts wordsAfter;
    RowWords head;
    RowWords tail;

    [[gnu::always_inline]] SpanBlock(const RowInts& a, const RowInts& b, std::int64_t lastColumn)
    {
        constexpr std::int64_t wordShift = 6;
        constexpr ABitMatrix::Word bitMask = ABitMatrix::wordBits - 1;
        static_assert(std::int64_t{1} << wordShift == ABitMatrix::wordBits);
        RowInts first = a < b ? a : b;
        RowInts last = a < b ? b : a;
        first = first > 0 ? first : RowInts{};
        last = last < lastColumn ? last : RowInts{} + lastColumn;
        const RowInts outside = first > last;
        firstWord = first >> wordShift;
        wordsAfter = ((last >> wordShift) - firstWord) | outside;
        head = ~RowWords{} << (reinterpret_cast<RowWords>(first) & bitMask);
        tail = ~RowWords{} >> (bitMask - (reinterpret_cast<RowWords>(last) & bitMask));
    }
};

}  // namespace pavane
