#include "pavane/trackers/scan_fill.h"

#include "pavane/trackers/row_block.h"
#include "pavane/trackers/row_fill.h"
#include "pavane/trackers/scan_edge.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <type_traits>

namespace pavane
{

namespace
{

/// Plain items that are appended one by one. Memory that cannot be had is a 0, never an exception.
template <typename T>
class Pile
{
    static_assert(std::is_trivially_copyable_v<T>);

public:
    Pile() = default;
    Pile(const Pile&) = delete;
    Pile& operator=(const Pile&) = delete;
    ~Pile() { std::free(items_); }

    int reserve(std::size_t n)
    {
        if (n <= room_)
            return 1;
        void* const items = std::realloc(static_cast<void*>(items_), n * sizeof(T));
        if (!items)
            return 0;
        items_ = static_cast<T*>(items);
        room_ = n;
        return 1;
    }
    int add(const T& item)
    {
        if (count_ == room_ && !reserve(std::max<std::size_t>(32, 2 * room_)))
            return 0;
        items_[count_++] = item;
        return 1;
    }
    T* data() { return items_; }
    const T* data() const { return items_; }
    std::size_t count() const { return count_; }
    void cut(std::size_t n) { count_ = n; }

private:
    T* items_ = nullptr;
    std::size_t count_ = 0;
    std::size_t room_ = 0;
};

/// From here on sorting a row's crossings costs more than counting its turns.
constexpr std::size_t fewCrossings = 16;

/// A mask of more words (4 MiB) does not stay in a core's own cache: rows are asked for some rows
/// before they are written.
constexpr std::int64_t wordsInCache = 1 << 19;
constexpr int rowsAhead = 6;

/// Runs of fewer rows are filled one by one.
constexpr int shortRun = 12;

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

/// Fills rows that two edges cross, as most rows of most polygons are.
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

/// The same for a few rows.
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

using FillBetween = void (*)(ABitMatrix&, int, int, ScanEdge&, ScanEdge&);

void fillBetweenPlain(ABitMatrix& mask, int row, int last, ScanEdge& a, ScanEdge& b)
{
    fillRowsBetween(mask, row, last, a, b);
}

#if defined(__x86_64__)
__attribute__((target("avx2,bmi2"))) void fillBetweenAvx2(ABitMatrix& mask, int row, int last,
                                                          ScanEdge& a, ScanEdge& b)
{
    fillRowsBetween(mask, row, last, a, b);
}

__attribute__((target("avx512f,bmi2"))) void fillBetweenAvx512(ABitMatrix& mask, int row, int last,
                                                               ScanEdge& a, ScanEdge& b)
{
    fillRowsBetween(mask, row, last, a, b);
}
#endif

/// The widest of them that this processor has; all give the same bits.
FillBetween bestFillBetween()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("bmi2"))
        return __builtin_cpu_supports("avx512f") ? fillBetweenAvx512
               : __builtin_cpu_supports("avx2")  ? fillBetweenAvx2
                                                 : fillBetweenPlain;
#endif
    return fillBetweenPlain;
}

const FillBetween fillBetween = bestFillBetween();

class AreaScan
{
public:
    AreaScan(ABitMatrix& mask, const CPoint* points, int n, int rowCapacity)
        : mask_(mask), points_(points), n_(n), capacity_(rowCapacity)
    {
    }

    int fill()
    {
        if (!findRows() || !listEdges())
            return top_ > bottom_;
        for (int row = nextStart(top_); row <= bottom_;) {
            if (!takeEdges(row))
                return 0;
            const int last = std::min(firstEnd(), nextStart(row + 1) - 1);
            if (!fillRows(row, last))
                return 0;
            dropEdges(last);
            row = active_.count() ? last + 1 : nextStart(last + 1);
        }
        return 1;
    }
    int overflow() const { return overflow_; }

private:
    using Word = ABitMatrix::Word;
    // An edge in the lists of the rows where edges begin: twice its start vertex, plus 1 when the
    // start itself is a crossing.
    static constexpr std::uint32_t noEdge = ~0u;

    CPoint end(int i) const { return points_[i + 1 < n_ ? i + 1 : 0]; }

    /// The rows of the mask that the polygon reaches; 0 when there are none.
    int findRows()
    {
        int least = points_[0].y;
        int greatest = least;
        for (int i = 1; i < n_; ++i) {
            least = std::min(least, points_[i].y);
            greatest = std::max(greatest, points_[i].y);
        }
        top_ = std::max(least, 0);
        bottom_ = std::min(greatest, mask_.rows() - 1);
        return top_ <= bottom_;
    }

    /// Puts every edge with crossings into the list of its first row and fills the level ones;
    /// a run of level edges is one span.
    int listEdges()
    {
        const auto rows = static_cast<std::size_t>(bottom_ - top_) + 1;
        const std::size_t words = rows / ABitMatrix::wordBits + 1;
        if (!heads_.reserve(rows) || !starts_.reserve(words) ||
            !next_.reserve(static_cast<std::size_t>(n_)))
            return 0;
        std::fill_n(starts_.data(), words, Word{0});
        int before = points_[0].y;  // the nearest earlier y that differs from the start's
        for (int i = n_ - 1; i > 0 && before == points_[0].y; --i)
            before = points_[i].y;
        int levelFirst = points_[0].x;
        int levelLast = levelFirst;
        bool level = false;
        for (int i = 0; i < n_; ++i) {
            const CPoint a = points_[i];
            const CPoint b = end(i);
            if (a.y == b.y) {
                levelFirst = std::min(level ? levelFirst : a.x, b.x);
                levelLast = std::max(level ? levelLast : a.x, b.x);
                level = true;
                continue;
            }
            if (level)
                fillLevel(a.y, levelFirst, levelLast);
            level = false;
            listEdge(i, a, b, (before < a.y) == (b.y < a.y));
            before = a.y;
        }
        if (level)
            fillLevel(points_[0].y, levelFirst, levelLast);
        return 1;
    }

    void fillLevel(int y, int first, int last)
    {
        if (y >= top_ && y <= bottom_)
            fillSpan(mask_.row(y), mask_.columns(), first, last);
    }

    void listEdge(int i, CPoint a, CPoint b, bool withStart)
    {
        const EdgeRows rows = rowsOf(a, b, withStart, mask_.rows());
        if (rows.first > rows.last)
            return;
        const auto row = static_cast<std::size_t>(rows.first - top_);
        Word& starts = starts_.data()[row / ABitMatrix::wordBits];
        const Word bit = Word{1} << (row % ABitMatrix::wordBits);
        std::uint32_t& head = heads_.data()[row];
        next_.data()[i] = starts & bit ? head : noEdge;
        starts |= bit;
        head = 2 * static_cast<std::uint32_t>(i) + (withStart ? 1 : 0);
    }

    /// Makes the edges that begin in `row` active.
    int takeEdges(int row)
    {
        if (nextStart(row) != row)
            return 1;
        for (std::uint32_t entry = heads_.data()[row - top_]; entry != noEdge;
             entry = next_.data()[entry / 2]) {
            const int i = static_cast<int>(entry / 2);
            const CPoint a = points_[i];
            const CPoint b = end(i);
            if (!active_.add(edgeAt(a, b, rowsOf(a, b, entry % 2, mask_.rows()))))
                return 0;
        }
        return 1;
    }

    /// The first row from `row` on where edges begin; the row after the last when there is none.
    int nextStart(int row) const
    {
        if (row > bottom_)
            return bottom_ + 1;
        const auto first = static_cast<std::size_t>(row - top_);
        const std::size_t words =
            static_cast<std::size_t>(bottom_ - top_) / ABitMatrix::wordBits + 1;
        std::size_t word = first / ABitMatrix::wordBits;
        Word bits = starts_.data()[word] >> (first % ABitMatrix::wordBits)
                                                << (first % ABitMatrix::wordBits);
        while (!bits && ++word < words)
            bits = starts_.data()[word];
        return bits ? top_ + static_cast<int>(word) * ABitMatrix::wordBits + std::countr_zero(bits)
                    : bottom_ + 1;
    }

    /// The first row where an active edge ends.
    int firstEnd()
    {
        int last = bottom_;
        for (std::size_t e = 0; e < active_.count(); ++e)
            last = std::min(last, active_.data()[e].lastRow);
        return last;
    }

    int fillRows(int row, int last)
    {
        const std::size_t crossings = active_.count();
        if (static_cast<std::int64_t>(crossings) > capacity_)
            overflow_ = 1;
        if (crossings == 2) {
            const FillBetween fill = last - row < shortRun ? fillFewRowsBetween : fillBetween;
            fill(mask_, row, last, active_.data()[0], active_.data()[1]);
            return 1;
        }
        if (!crossings_.reserve(crossings) || (crossings > fewCrossings && !makeTurns()))
            return 0;
        int* const xs = crossings_.data();
        ScanEdge* const edges = active_.data();
        for (int r = row; r <= last; ++r) {
            for (std::size_t e = 0; e < crossings; ++e) {
                xs[e] = edges[e].crossing();
                edges[e].step();
            }
            if (crossings <= fewCrossings)
                fillFew(mask_.row(r), mask_.columns(), xs, static_cast<int>(crossings));
            else
                fillMany(mask_.row(r), mask_.columns(), turns_.data(), xs,
                         static_cast<int>(crossings));
        }
        return 1;
    }

    int makeTurns()
    {
        if (turns_.data())
            return 1;
        const auto words = static_cast<std::size_t>(mask_.rowWords());
        if (!turns_.reserve(words))
            return 0;
        std::fill_n(turns_.data(), words, Word{0});
        return 1;
    }

    void dropEdges(int last)
    {
        ScanEdge* const edges = active_.data();
        std::size_t kept = 0;
        for (std::size_t e = 0; e < active_.count(); ++e)
            if (edges[e].lastRow > last)
                edges[kept++] = edges[e];
        active_.cut(kept);
    }

    ABitMatrix& mask_;
    const CPoint* points_;
    int n_;
    int capacity_;
    int overflow_ = 0;
    int top_ = 0;
    int bottom_ = -1;
    Pile<Word> starts_;          // a bit by row from top_: edges begin there
    Pile<std::uint32_t> heads_;  // by row with that bit: the first of these edges
    Pile<std::uint32_t> next_;   // by start vertex: the next edge that begins in the same row
    Pile<ScanEdge> active_;
    Pile<int> crossings_;
    Pile<Word> turns_;
};

}  // namespace

int fillPolygon(ABitMatrix& mask, const CPoint* points, int n, int rowCapacity, int& overflow)
{
    if (n < 1 || !points || mask.rows() < 1)
        return 1;
    AreaScan scan(mask, points, n, rowCapacity);
    const int result = scan.fill();
    if (scan.overflow())
        overflow = 1;
    return result;
}

}  // namespace pavane
