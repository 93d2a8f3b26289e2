#include "pavane/trackers/masks/between_edges.h"

#include "pavane/trackers/masks/row_block.h"
#include "pavane/trackers/masks/row_fill.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// A mask of more words (4 MiB) does not stay in a core's own cache: rows are asked for some rows
/// before they are written.
constexpr std::int64_t wordsInCache = 1 << 19;
constexpr int rowsAhead = 6;

/// Runs of fewer rows are filled one by one.
constexpr int shortRun = 8;

/// Fills `rows` rows, at most those of a block.
template <bool Ahead>
[[gnu::always_inline]] inline void fillBlock(ABitMatrix::Word* bits, std::int64_t words, int rows,
                                             const SpanBlock& spans)
{
    for (int i = 0; i < rows; ++i, bits += words) {
        ABitMatrix::Word* const first = bits + spans.firstWord[i];
        const std::int64_t after = spans.wordsAfter[i];
        if (after <= 0) {
            if (after == 0)
                *first |= spans.head[i] & spans.tail[i];
            continue;
        }
        *first |= spans.head[i];
        first[after] |= spans.tail[i];
        fillWords<Ahead>(first + 1, static_cast<int>(after) - 1, words * rowsAhead);
    }
}

[[gnu::always_inline]] inline void fillRowsBetween(ABitMatrix& mask, int row, int last, ScanEdge& a,
                                                   ScanEdge& b)
{
    const std::int64_t words = mask.rowWords();
    const std::int64_t lastColumn = mask.columns() - 1;
    ABitMatrix::Word* bits = mask.row(row);
    EdgeBlock left(a);
    EdgeBlock right(b);
    const int askUntil =
        mask.rows() * words > wordsInCache ? last - rowsAhead - blockRows + 1 : row - 1;
    int r = row;
    for (; r <= askUntil; r += blockRows, bits += blockRows * words) {
        fillBlock<true>(bits, words, blockRows, SpanBlock(left.x, right.x, lastColumn));
        left.step();
        right.step();
    }
    for (;; r += blockRows, bits += blockRows * words) {
        const int rows = std::min(blockRows, last - r + 1);
        fillBlock<false>(bits, words, rows, SpanBlock(left.x, right.x, lastColumn));
        if (last - r < blockRows) {
            // the edges go on from the row after the last
            a.x = left.x[last - r];
            a.error = left.error[last - r];
            b.x = right.x[last - r];
            b.error = right.error[last - r];
            a.step();
            b.step();
            return;
        }
        left.step();
        right.step();
    }
}

[[gnu::always_inline]] inline void fillRowsAt(ABitMatrix& mask, int row, int rows, const int* a,
                                              const int* b)
{
    RowInts left;
    RowInts right;
    for (int i = 0; i < blockRows; ++i) {
        left[i] = a[i];
        right[i] = b[i];
    }
    const std::int64_t words = mask.rowWords();
    const SpanBlock spans(left, right, mask.columns() - 1);
    if (mask.rows() * words > wordsInCache && row < mask.rows() - blockRows - rowsAhead)
        fillBlock<true>(mask.row(row), words, rows, spans);
    else
        fillBlock<false>(mask.row(row), words, rows, spans);
}

/// The two fillers, compiled for one instruction set.
struct Fillers {
    void (*betweenEdges)(ABitMatrix& mask, int row, int last, ScanEdge& a, ScanEdge& b);
    void (*betweenColumns)(ABitMatrix& mask, int row, int rows, const int* a, const int* b);
};

constexpr Fillers plainFillers = {[](ABitMatrix& mask, int row, int last, ScanEdge& a,
                                     ScanEdge& b) { fillRowsBetween(mask, row, last, a, b); },
                                  [](ABitMatrix& mask, int row, int rows, const int* a,
                                     const int* b) { fillRowsAt(mask, row, rows, a, b); }};

#if defined(__x86_64__)
#define PAVANE_AVX2 __attribute__((target("avx2,bmi2")))
#define PAVANE_AVX512 __attribute__((target("avx512f,bmi2")))

PAVANE_AVX2 void betweenEdgesAvx2(ABitMatrix& mask, int row, int last, ScanEdge& a, ScanEdge& b)
{
    fillRowsBetween(mask, row, last, a, b);
}

PAVANE_AVX2 void betweenColumnsAvx2(ABitMatrix& mask, int row, int rows, const int* a, const int* b)
{
    fillRowsAt(mask, row, rows, a, b);
}

PAVANE_AVX512 void betweenEdgesAvx512(ABitMatrix& mask, int row, int last, ScanEdge& a, ScanEdge& b)
{
    fillRowsBetween(mask, row, last, a, b);
}

PAVANE_AVX512 void betweenColumnsAvx512(ABitMatrix& mask, int row, int rows, const int* a,
                                        const int* b)
{
    fillRowsAt(mask, row, rows, a, b);
}
#endif

Fillers bestFillers()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("bmi2") && __builtin_cpu_supports("avx512f"))
        return {betweenEdgesAvx512, betweenColumnsAvx512};
    if (__builtin_cpu_supports("bmi2") && __builtin_cpu_supports("avx2"))
        return {betweenEdgesAvx2, betweenColumnsAvx2};
#endif
    return plainFillers;
}

const Fillers fillers = bestFillers();

void fillFewRowsBetween(ABitMatrix& mask, int row, int last, ScanEdge& a, ScanEdge& b)
{
    for (int r = row; r <= last; ++r) {
        const int x1 = a.crossing();
        const int x2 = b.crossing();
        a.step();
        b.step();
        fillSpan(mask.row(r), mask.columns(), std::min(x1, x2), std::max(x1, x2));
    }
}

}  // namespace

void fillBetween(ABitMatrix& mask, int row, int last, ScanEdge& a, ScanEdge& b)
{
    if (last - row < shortRun)
        fillFewRowsBetween(mask, row, last, a, b);
    else
        fillers.betweenEdges(mask, row, last, a, b);
}

void fillBetween(ABitMatrix& mask, int row, int rows, const int (&a)[blockRows],
                 const int (&b)[blockRows])
{
    fillers.betweenColumns(mask, row, rows, a, b);
}

}  // namespace pavane
