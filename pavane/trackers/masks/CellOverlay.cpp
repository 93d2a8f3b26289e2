#include "pavane/trackers/masks/CellOverlay.h"

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/trackers/masks/scan_fill.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

namespace pavane
{

namespace
{

using Word = ABitMatrix::Word;
constexpr int bits = ABitMatrix::wordBits;

/// The fillers of masks tell of rows with more crossings; here nobody is told.
constexpr int anyCrossings = std::numeric_limits<int>::max();

/// The words of the mask that hold the columns of a block.
struct WordRange {
    std::int64_t first;
    std::int64_t end;
    explicit WordRange(const CRect& block)
        : first(block.left / bits), end((block.right - 1) / bits + 1)
    {
    }
    std::size_t bytes() const { return static_cast<std::size_t>(end - first) * sizeof(Word); }
};

CRect unionOf(const CRect& a, const CRect& b)
{
    CRect both;
    (void)both.UnionRect(a, b);
    return both;
}

std::int64_t cellsIn(const CRect& block) { return std::int64_t{block.Width()} * block.Height(); }

bool apart(const CRect& a, const CRect& b)
{
    return a.right <= b.left || b.right <= a.left || a.bottom <= b.top || b.bottom <= a.top;
}

void copyBlock(ABitMatrix& to, const ABitMatrix& from, const CRect& block)
{
    const WordRange words(block);
    for (int r = block.top; r < block.bottom; ++r)
        std::memcpy(to.row(r) + words.first, from.row(r) + words.first, words.bytes());
}

void clearBlock(ABitMatrix& mask, const CRect& block)
{
    const WordRange words(block);
    for (int r = block.top; r < block.bottom; ++r)
        std::memset(mask.row(r) + words.first, 0, words.bytes());
}

void invertBlock(ABitMatrix& mask, const CRect& block)
{
    const WordRange words(block);
    for (int r = block.top; r < block.bottom; ++r)
        for (std::int64_t w = words.first; w < words.end; ++w)
            mask.row(r)[w] = ~mask.row(r)[w];
}

/// The block as far as the words that hold it.
CRect wordsOf(const CRect& block)
{
    return {block.left / bits * bits, block.top, (block.right - 1) / bits * bits + bits,
            block.bottom};
}

}  // namespace

CellOverlay::~CellOverlay() { dropAreas(); }

int CellOverlay::setMap(const AMatrixAccess& values)
{
    return setSize(values.rows(), values.columns()) && sums_.setMap(values);
}

int CellOverlay::setSize(int rows, int columns)
{
    dropAreas();
    sums_.clear();
    mask_ = ABitMatrix(rows, columns);
    scratch_ = ABitMatrix(rows, columns);
    others_ = ABitMatrix();
    mask_.setAll(1);
    cells_ = mask_.count();
    changed_ = wholeMap();
    gathered_ = CRect();
    gathering_ = false;
    return rows < 1 || columns < 1 || (mask_.rows() && scratch_.rows());
}

int CellOverlay::append(const CPoint* points, int n, int isNeverClean)
{
    return insert(areas(), points, n, isNeverClean);
}

/// Non-zero when what is set before any area is filled is not what it was.
int CellOverlay::countNever()
{
    const int before = isAllBefore_;
    never_ = 0;
    for (int i = 0; i < areas(); ++i)
        never_ += areas_.data()[i].isNeverClean != 0;
    isAllBefore_ = never_ == areas();
    return isAllBefore_ != before;
}

int CellOverlay::insert(int area, const CPoint* points, int n, int isNeverClean)
{
    Area added;
    if (!makeArea(points, n, isNeverClean, added))
        return fail();
    if (!areas_.add(added)) {
        std::free(added.points);
        return fail();
    }
    Area* const all = areas_.data();
    std::rotate(all + area, all + areas() - 1, all + areas());
    lifted_ = lastReplaced_ = -1;
    if (countNever())
        return changed(wholeMap(), {});
    if (gathering_ || never_)
        return changed({}, added.box);
    copyBlock(scratch_, mask_, added.box);
    if (!fill(mask_, added))
        return fail();
    compare(added.box);
    return 1;
}

int CellOverlay::replace(int area, const CPoint* points, int n, int isNeverClean)
{
    Area other;
    if (!makeArea(points, n, isNeverClean, other))
        return fail();
    const Area old = areas_.data()[area];
    areas_.data()[area] = other;
    std::free(old.points);
    const int isOtherKind = (old.isNeverClean != 0) != (isNeverClean != 0);
    const int isOtherGround = isOtherKind && countNever();
    if (isOtherKind || never_)
        lifted_ = lastReplaced_ = -1;
    if (isOtherGround)
        return changed(wholeMap(), {});
    if (gathering_ || isOtherKind || never_)
        return changed(old.box, other.box);
    if (lifted_ != area)
        lifted_ = -1;
    if (lifted_ < 0 && lastReplaced_ == area && !lift(area))
        return fail();
    lastReplaced_ = area;
    return changed(old.box, other.box);
}

int CellOverlay::remove(int area)
{
    Area* const all = areas_.data();
    const Area gone = all[area];
    std::free(gone.points);
    std::move(all + area + 1, all + areas(), all + area);
    areas_.cut(areas_.count() - 1);
    lifted_ = lastReplaced_ = -1;
    return countNever() ? changed(wholeMap(), {}) : changed(gone.box, {});
}

int CellOverlay::clear()
{
    dropAreas();
    return changed(wholeMap(), {});
}

int CellOverlay::end()
{
    gathering_ = false;
    const CRect block = gathered_;
    gathered_ = CRect();
    lifted_ = lastReplaced_ = -1;
    return refill(block, {});
}

int CellOverlay::changed(const CRect& before, const CRect& after)
{
    const CRect both = unionOf(before, after);
    if (gathering_) {
        gathered_ = unionOf(gathered_, both);
        return 1;
    }
    if (cellsIn(both) > cellsIn(before) + cellsIn(after))
        return refill(before, after);
    return refill(both, {});
}

int CellOverlay::refill(const CRect& a, const CRect& b)
{
    // both are kept before either changes: filling an area does not stop at the block
    for (const CRect& block : {a, b})
        copyBlock(scratch_, mask_, block);
    for (const CRect& block : {a, b})
        if (!refill(block))
            return fail();
    for (const CRect& block : {a, b})
        compare(block);
    return 1;
}

int CellOverlay::refill(const CRect& block)
{
    if (block.IsRectEmpty())
        return 1;
    if (!areas()) {
        for (int r = block.top; r < block.bottom; ++r)
            mask_.setSpan(r, block.left, block.right - 1);
        return 1;
    }
    if (never_)
        return refillWithNever(block);
    if (lifted_ < 0)
        return fillMeeting(mask_, block, -1);
    copyBlock(mask_, others_, block);
    return fill(mask_, areas_.data()[lifted_]);
}

int CellOverlay::makeOthers()
{
    if (!others_.rows())
        others_ = ABitMatrix(mask_.rows(), mask_.columns());
    return others_.rows() == mask_.rows();
}

/// From here on the mask of all others is at hand.
int CellOverlay::lift(int area)
{
    if (!makeOthers() || !fillMeeting(others_, wholeMap(), area))
        return 0;
    lifted_ = area;
    return 1;
}

/// Clears the words of a block and fills the areas that meet it, all but one: what they set beside
/// the block is set already.
int CellOverlay::fillMeeting(ABitMatrix& mask, const CRect& block, int without) const
{
    if (block.IsRectEmpty())
        return 1;
    clearBlock(mask, block);
    return fillKind(mask, wordsOf(block), without, 0);
}

/// The same where there are never-clean areas, on a matrix of its own: areas that are set reach
/// beside the block where others, that do not meet it, have cleared.
int CellOverlay::refillWithNever(const CRect& block)
{
    if (!makeOthers())
        return 0;
    const CRect words = wordsOf(block);
    clearBlock(others_, block);
    if (isAllBefore_)
        for (int r = block.top; r < block.bottom; ++r)
            others_.setSpan(r, words.left, words.right - 1);
    else if (!fillKind(others_, words, -1, 0))
        return 0;
    invertBlock(others_, block);
    if (!fillKind(others_, words, -1, 1))
        return 0;
    invertBlock(others_, block);
    copyBlock(mask_, others_, block);
    return 1;
}

int CellOverlay::fillKind(ABitMatrix& mask, const CRect& cleared, int without,
                          int isNeverClean) const
{
    for (int i = 0; i < areas(); ++i) {
        const Area& area = areas_.data()[i];
        if (i != without && (area.isNeverClean != 0) == isNeverClean && !apart(area.box, cleared) &&
            !fill(mask, area))
            return 0;
    }
    return 1;
}

int CellOverlay::fill(ABitMatrix& mask, const Area& area) const
{
    int overflow = 0;
    return area.box.IsRectEmpty() || fillPolygon(mask, area.points, area.n, anyCrossings, overflow);
}

int CellOverlay::makeArea(const CPoint* points, int n, int isNeverClean, Area& area) const
{
    area = {nullptr, 0, {}, isNeverClean};
    if (n < 1 || !points)
        return 1;
    const auto bytes = static_cast<std::size_t>(n) * sizeof(CPoint);
    area.points = static_cast<CPoint*>(std::malloc(bytes));
    if (!area.points)
        return 0;
    std::memcpy(static_cast<void*>(area.points), points, bytes);
    area.n = n;
    const auto [left, right] = std::minmax_element(
        points, points + n, [](const CPoint& a, const CPoint& b) { return a.x < b.x; });
    const auto [top, bottom] = std::minmax_element(
        points, points + n, [](const CPoint& a, const CPoint& b) { return a.y < b.y; });
    area.box = {std::max(left->x, 0), std::max(top->y, 0),
                std::min(right->x, mask_.columns() - 1) + 1,
                std::min(bottom->y, mask_.rows() - 1) + 1};
    if (area.box.IsRectEmpty())
        area.box = CRect();
    return 1;
}

/// Finds what has changed in the words of a block, whose former bits are in the scratch matrix. A
/// word that two blocks share is found once.
void CellOverlay::compare(const CRect& block)
{
    if (block.IsRectEmpty())
        return;
    const WordRange range(block);
    for (int r = block.top; r < block.bottom; ++r) {
        const Word* const now = mask_.row(r);
        Word* const before = scratch_.row(r);
        for (std::int64_t w = range.first; w < range.end; ++w) {
            if (now[w] == before[w])
                continue;
            cells_ += std::popcount(now[w]) - std::popcount(before[w]);
            noteChange(r, w, now[w] ^ before[w]);
            before[w] = now[w];
        }
    }
}

void CellOverlay::noteChange(int row, std::int64_t word, Word bitsChanged)
{
    const int first = static_cast<int>(word) * bits + std::countr_zero(bitsChanged);
    const int last = static_cast<int>(word) * bits + bits - 1 - std::countl_zero(bitsChanged);
    changed_ = unionOf(changed_, {first, row, last + 1, row + 1});
    sums_.wordChanged(row, word);
}

AMatrixRect CellOverlay::takeChanged()
{
    const CRect block = std::exchange(changed_, CRect());
    return {block.top, block.left, block.bottom - 1, block.right - 1};
}

CellSum CellOverlay::total() { return {cells_, sums_.total(mask_)}; }

CellSum CellOverlay::ofArea(int area)
{
    CellSum result;
    const Area& one = areas_.data()[area];
    if (one.box.IsRectEmpty())
        return result;
    clearBlock(scratch_, one.box);
    if (!fill(scratch_, one))
        return result;
    const WordRange range(one.box);
    for (int r = one.box.top; r < one.box.bottom; ++r) {
        for (std::int64_t w = range.first; w < range.end; ++w)
            result.cells += std::popcount(scratch_.row(r)[w]);
        result.sum += sums_.ofWords(scratch_, r, range.first, range.end);
    }
    return result;
}

void CellOverlay::dropAreas()
{
    for (int i = 0; i < areas(); ++i)
        std::free(areas_.data()[i].points);
    areas_.cut(0);
    never_ = 0;
    isAllBefore_ = 1;
    lifted_ = lastReplaced_ = -1;
}

/// Without memory the overlay is that of no area, but never half of one.
int CellOverlay::fail()
{
    dropAreas();
    gathering_ = false;
    gathered_ = CRect();
    mask_.setAll(1);
    cells_ = mask_.count();
    changed_ = wholeMap();
    sums_.maskChanged();
    return 0;
}

}  // namespace pavane
