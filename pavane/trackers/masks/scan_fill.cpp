#include "pavane/trackers/masks/scan_fill.h"

#include "pavane/containers/Pile.h"
#include "pavane/trackers/masks/between_edges.h"
#include "pavane/trackers/masks/LooseCrossings.h"
#include "pavane/trackers/masks/row_fill.h"
#include "pavane/trackers/masks/scan_edge.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace pavane
{

namespace
{

/// From here on sorting a row's crossings costs more than counting its turns.
constexpr std::size_t fewCrossings = 16;

/// Edges of up to so many rows are kept as loose crossings...
constexpr int shortEdge = 8;
/// ... by polygons with a corner in every so many rows or more.
constexpr int rowsPerCorner = 8;

class AreaScan
{
public:
    AreaScan(ABitMatrix& mask, const CPoint* points, int n, int rowCapacity, const StopFlag* stop)
        : mask_(mask), points_(points), n_(n), capacity_(rowCapacity), stop_(stop)
    {
    }

    int fill()
    {
        if (!findRows() || !listEdges())
            return top_ > bottom_;
        return loose_ ? fillRowByRow() : fillRunByRun();
    }
    int overflow() const { return overflow_; }

private:
    using Word = ABitMatrix::Word;
    // An edge in the lists of the rows where edges begin: twice its start vertex, plus 1 when the
    // start itself is a crossing.
    static constexpr std::uint32_t noEdge = ~0u;

    /// Runs of rows that the same edges cross.
    int fillRunByRun()
    {
        for (int row = nextStart(top_, bottom_); row <= bottom_ && !isStopped(stop_);) {
            if (!takeEdges(row))
                return 0;
            const int last = nextStart(row + 1, firstEnd()) - 1;
            if (!fillRows(row, last))
                return 0;
            dropEdges(last);
            row = active_.count() ? last + 1 : nextStart(last + 1, bottom_);
        }
        return 1;
    }

    int fillRowByRow()
    {
        for (int row = top_; row <= bottom_ && !isStopped(stop_); ++row) {
            if (!takeEdges(row))
                return 0;
            const LooseCrossings::Row& loose =
                looseCrossings_.row(static_cast<std::size_t>(row - top_));
            if (active_.count() == 0 && loose.count == 2 && capacity_ >= 2) {
                waitForBlock(row, loose.x[0], loose.x[1]);
                continue;
            }
            if (!fillRow(row, loose))
                return 0;
            dropEdges(row);
        }
        fillWaiting();
        return 1;
    }

    /// Rows with two loose crossings are filled together, as far as they follow each other.
    void waitForBlock(int row, int a, int b)
    {
        if (waiting_ == blockRows || (waiting_ && row != firstWaiting_ + waiting_))
            fillWaiting();
        if (!waiting_)
            firstWaiting_ = row;
        waitingA_[waiting_] = a;
        waitingB_[waiting_++] = b;
    }
    void fillWaiting()
    {
        if (waiting_)
            fillBetween(mask_, firstWaiting_, waiting_, waitingA_, waitingB_);
        waiting_ = 0;
    }

    int fillRow(int row, const LooseCrossings::Row& loose)
    {
        const std::size_t followed = active_.count();
        const std::size_t crossings = followed + static_cast<std::size_t>(loose.count);
        if (!makeRoom(crossings))
            return 0;
        int* const xs = crossings_.data();
        takeCrossings(xs);
        looseCrossings_.take(loose, xs + followed);
        fillCrossings(row, crossings);
        return 1;
    }

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
        loose_ = static_cast<std::size_t>(n_) >= rows / rowsPerCorner;
        if (loose_ && !looseCrossings_.begin(rows))
            return 0;
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
            const bool withStart = (before < a.y) == (b.y < a.y);
            if (!(loose_ && isOneRow(a, b) ? noteEnds(a, b, withStart)
                                           : listEdge(i, a, b, withStart)))
                return 0;
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

    int listEdge(int i, CPoint a, CPoint b, bool withStart)
    {
        const EdgeRows rows = rowsOf(a, b, withStart, mask_.rows());
        if (rows.first > rows.last)
            return 1;
        if (loose_ && rows.last - rows.first < shortEdge)
            return noteCrossings(edgeAt(a, b, rows), rows);
        const auto row = static_cast<std::size_t>(rows.first - top_);
        Word& starts = starts_.data()[row / ABitMatrix::wordBits];
        const Word bit = Word{1} << (row % ABitMatrix::wordBits);
        std::uint32_t& head = heads_.data()[row];
        next_.data()[i] = starts & bit ? head : noEdge;
        starts |= bit;
        head = 2 * static_cast<std::uint32_t>(i) + (withStart ? 1 : 0);
        return 1;
    }

    static bool isOneRow(CPoint a, CPoint b)
    {
        const std::int64_t down = std::int64_t{b.y} - a.y;
        return down == 1 || down == -1;
    }
    /// An edge to the next row crosses rows at its ends only; outlines of many corners are made of
    /// these.
    int noteEnds(CPoint a, CPoint b, bool withStart)
    {
        return (!withStart || noteCrossing(a)) && noteCrossing(b);
    }
    int noteCrossing(CPoint p)
    {
        return p.y < top_ || p.y > bottom_ ||
               looseCrossings_.add(static_cast<std::size_t>(p.y - top_), p.x);
    }

    int noteCrossings(ScanEdge edge, EdgeRows rows)
    {
        for (int row = rows.first; row <= rows.last; ++row) {
            if (!looseCrossings_.add(static_cast<std::size_t>(row - top_), edge.crossing()))
                return 0;
            edge.step();
        }
        return 1;
    }

    /// Makes the edges that begin in `row` active.
    int takeEdges(int row)
    {
        if (!startsIn(row))
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

    bool startsIn(int row) const
    {
        const auto at = static_cast<std::size_t>(row - top_);
        return starts_.data()[at / ABitMatrix::wordBits] >> (at % ABitMatrix::wordBits) & 1;
    }

    /// The first of the rows `row` to `last` where edges begin; last + 1 when there is none.
    int nextStart(int row, int last) const
    {
        if (row > last)
            return last + 1;
        constexpr std::size_t bits = ABitMatrix::wordBits;
        const auto first = static_cast<std::size_t>(row - top_);
        const std::size_t lastWord = static_cast<std::size_t>(last - top_) / bits;
        std::size_t word = first / bits;
        Word starts = starts_.data()[word] & ~Word{0} << (first % bits);
        while (!starts && word < lastWord)
            starts = starts_.data()[++word];
        if (!starts)
            return last + 1;
        const std::size_t found = word * bits + static_cast<std::size_t>(std::countr_zero(starts));
        return std::min(top_ + static_cast<int>(found), last + 1);
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
        if (crossings == 2 && capacity_ >= 2) {
            fillBetween(mask_, row, last, active_.data()[0], active_.data()[1]);
            return 1;
        }
        if (!makeRoom(crossings))
            return 0;
        for (int r = row; r <= last && !isStopped(stop_); ++r) {
            takeCrossings(crossings_.data());
            fillCrossings(r, crossings);
        }
        return 1;
    }

    int makeRoom(std::size_t crossings)
    {
        if (static_cast<std::int64_t>(crossings) > capacity_)
            overflow_ = 1;
        return crossings_.reserve(crossings) && (crossings <= fewCrossings || makeTurns());
    }

    /// Where the active edges cross, and leads them to the next row.
    void takeCrossings(int* xs)
    {
        ScanEdge* const edges = active_.data();
        for (std::size_t e = 0; e < active_.count(); ++e) {
            xs[e] = edges[e].crossing();
            edges[e].step();
        }
    }

    void fillCrossings(int row, std::size_t crossings)
    {
        int* const xs = crossings_.data();
        if (crossings <= fewCrossings)
            fillFew(mask_.row(row), mask_.columns(), xs, static_cast<int>(crossings));
        else
            fillMany(mask_.row(row), mask_.columns(), turns_.data(), xs,
                     static_cast<int>(crossings));
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
    const StopFlag* stop_;
    int overflow_ = 0;
    int top_ = 0;
    int bottom_ = -1;
    Pile<Word> starts_;          // a bit by row from top_: edges begin there
    Pile<std::uint32_t> heads_;  // by row with that bit: the first of these edges
    Pile<std::uint32_t> next_;   // by start vertex: the next edge that begins in the same row
    Pile<ScanEdge> active_;
    bool loose_ = false;
    LooseCrossings looseCrossings_;
    int firstWaiting_ = 0;
    int waiting_ = 0;
    int waitingA_[blockRows] = {};
    int waitingB_[blockRows] = {};
    Pile<int> crossings_;
    Pile<Word> turns_;
};

}  // namespace

int fillPolygon(ABitMatrix& mask, const CPoint* points, int n, int rowCapacity, int& overflow)
{
    return fillPolygon(mask, points, n, rowCapacity, overflow, nullptr);
}

int fillPolygon(ABitMatrix& mask, const CPoint* points, int n, int rowCapacity, int& overflow,
                const StopFlag* stop)
{
    if (n < 1 || !points || mask.rows() < 1)
        return 1;
    AreaScan scan(mask, points, n, rowCapacity, stop);
    const int result = scan.fill();
    if (scan.overflow())
        overflow = 1;
    return result;
}

}  // namespace pavane
