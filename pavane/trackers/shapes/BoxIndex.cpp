#include "pavane/trackers/shapes/BoxIndex.h"

#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// A box that covers more cells of the grid is kept in the list of large ones.
constexpr std::int64_t mostCellsOfABox = 16;

/// Cells along one side of the grid at most.
constexpr int mostCells = 2048;

/// So many boxes tell what a usual one is.
constexpr int sampleSize = 512;

/// One direction of the sample: sides and centres.
struct Sample {
    double sides[sampleSize];
    double centres[sampleSize];
    int n = 0;

    void add(double from, double to)
    {
        const double side = to - from;
        const double centre = from + side / 2;
        if (!std::isfinite(side) || !std::isfinite(centre))
            return;
        sides[n] = side;
        centres[n++] = centre;
    }
};

double quantile(double* values, int n, int hundredths)
{
    double* const at = values + static_cast<std::int64_t>(n - 1) * hundredths / 100;
    std::nth_element(values, at, values + n);
    return *at;
}

/// Where the grid begins and its cells per unit along one direction. A few boxes far out or much
/// larger than the others do not make the cells coarse; they lie in the outermost cells.
struct GridLine {
    double start = 0;
    double cellsPerUnit = 0;
    int cells = 1;

    GridLine(Sample& sample, int wanted)
    {
        if (sample.n < 1)
            return;
        start = quantile(sample.centres, sample.n, 1);
        const double length = quantile(sample.centres, sample.n, 99) - start;
        const double usual = quantile(sample.sides, sample.n, 50);
        const double perUnit = 1 / std::max(usual, length / wanted);
        if (!(length > 0) || !std::isfinite(perUnit) || !std::isfinite(length))
            return;
        cellsPerUnit = perUnit;
        cells = std::clamp(truncated(length * perUnit) + 1, 1, mostCells);
    }
};

ARect<double> inOrder(const ARect<double>& box)
{
    return {std::min(box.left, box.right), std::min(box.top, box.bottom),
            std::max(box.left, box.right), std::max(box.top, box.bottom)};
}

bool isBox(const ARect<double>& box) { return box.left <= box.right && box.top <= box.bottom; }

bool meet(const ARect<double>& a, const ARect<double>& b)
{
    return a.left <= b.right && b.left <= a.right && a.top <= b.bottom && b.top <= a.bottom;
}

bool hasNaN(const ARect<double>& box)
{
    return std::isnan(box.left) || std::isnan(box.top) || std::isnan(box.right) ||
           std::isnan(box.bottom);
}

}  // namespace

int BoxIndex::build(const ARect<double>* boxes, int n)
{
    clear();
    if (n < 1)
        return 1;
    if (!items_.reserve(static_cast<std::size_t>(n)))
        return 0;
    for (int i = 0; i < n; ++i)
        (void)items_.add({hasNaN(boxes[i]) ? boxes[i] : inOrder(boxes[i]), !hasNaN(boxes[i])});
    return rebuild();
}

int BoxIndex::rebuild()
{
    chooseGrid();
    links_.cut(0);
    free_ = large_ = none;
    changes_ = 0;
    const auto cells = static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_);
    if (!heads_.reserve(cells)) {
        clear();
        return 0;
    }
    std::fill_n(heads_.data(), cells, none);
    for (int i = 0; i < count(); ++i)  // the later ones come first in every list
        if (!place(i))
            return 0;
    return 1;
}

void BoxIndex::chooseGrid()
{
    Sample x;
    Sample y;
    const int n = count();
    const int samples = std::min(n, sampleSize);
    for (int i = 0; i < samples; ++i) {
        const ARect<double>& b = box(static_cast<int>(std::int64_t{i} * n / samples));
        if (isBox(b)) {
            x.add(b.left, b.right);
            y.add(b.top, b.bottom);
        }
    }
    const int side = std::min(static_cast<int>(truncated(std::sqrt(n))) + 1, mostCells);
    const GridLine across(x, side);
    const GridLine down(y, side);
    columns_ = across.cells;
    rows_ = down.cells;
    left_ = across.start;
    top_ = down.start;
    cellsPerX_ = across.cellsPerUnit;
    cellsPerY_ = down.cellsPerUnit;
}

int BoxIndex::column(double x) const
{
    return std::clamp(truncated((x - left_) * cellsPerX_), 0, columns_ - 1);
}

int BoxIndex::row(double y) const
{
    return std::clamp(truncated((y - top_) * cellsPerY_), 0, rows_ - 1);
}

BoxIndex::Block BoxIndex::blockOf(const ARect<double>& box) const
{
    return {column(box.left), row(box.top), column(box.right), row(box.bottom)};
}

bool BoxIndex::isLarge(const Block& block) const
{
    return (std::int64_t{block.right} - block.left + 1) * (block.bottom - block.top + 1) >
           mostCellsOfABox;
}

int BoxIndex::update(int item, const ARect<double>& box)
{
    take(item);
    items_.data()[item] = {hasNaN(box) ? box : inOrder(box), !hasNaN(box)};
    // once in a while the grid is fitted to what has become of the boxes
    constexpr int usualChanges = 64;
    if (++changes_ > usualChanges + count() / 2)
        return rebuild();
    return place(item);
}

int BoxIndex::append(const ARect<double>& box)
{
    if (!items_.add({box, false})) {
        clear();
        return 0;
    }
    if (count() == 1) {
        items_.data()[0] = {hasNaN(box) ? box : inOrder(box), !hasNaN(box)};
        return rebuild();
    }
    return update(count() - 1, box);
}

int BoxIndex::place(int item)
{
    if (!items_.data()[item].placed)
        return 1;
    const Block block = blockOf(box(item));
    if (isLarge(block))
        return enter(large_, item);
    for (int r = block.top; r <= block.bottom; ++r)
        for (int c = block.left; c <= block.right; ++c)
            if (!enter(heads_.data()[r * columns_ + c], item))
                return 0;
    return 1;
}

void BoxIndex::take(int item)
{
    if (!items_.data()[item].placed)
        return;
    const Block block = blockOf(box(item));
    if (isLarge(block)) {
        leave(large_, item);
        return;
    }
    for (int r = block.top; r <= block.bottom; ++r)
        for (int c = block.left; c <= block.right; ++c)
            leave(heads_.data()[r * columns_ + c], item);
}

int BoxIndex::enter(std::int32_t& head, int item)
{
    std::int32_t at = free_;
    if (at != none) {
        free_ = links_.data()[at].next;
    } else {
        at = static_cast<std::int32_t>(links_.count());
        if (!links_.add({})) {
            clear();
            return 0;
        }
    }
    Link* const links = links_.data();
    std::int32_t* before = &head;
    while (*before != none && links[*before].item > item)
        before = &links[*before].next;
    links[at] = {item, *before};
    *before = at;
    return 1;
}

void BoxIndex::leave(std::int32_t& head, int item)
{
    Link* const links = links_.data();
    std::int32_t* before = &head;
    while (*before != none && links[*before].item != item)
        before = &links[*before].next;
    const std::int32_t at = *before;
    if (at == none)
        return;
    *before = links[at].next;
    links[at].next = free_;
    free_ = at;
}

BoxIndex::Descent BoxIndex::descend(double x, double y) const
{
    if (!count())
        return {nullptr, nullptr};
    return {link(heads_.data()[row(y) * columns_ + column(x)]), link(large_)};
}

void BoxIndex::next(Descent& at) const
{
    const Link*& list = at.fromCell() ? at.inCell : at.large;
    list = link(list->next);
}

int BoxIndex::meeting(const ARect<double>& rect, Pile<int>& found) const
{
    const ARect<double> wanted = inOrder(rect);
    if (!count() || hasNaN(rect))
        return 1;
    const Block block = blockOf(wanted);
    const std::int64_t cells =
        (std::int64_t{block.right} - block.left + 1) * (block.bottom - block.top + 1);
    constexpr int boxesPerCell = 4;  // looking at so many boxes takes as long as walking a cell
    if (cells < count() / boxesPerCell)
        return gatherByCell(wanted, block, found);
    for (int i = 0; i < count(); ++i)
        if (items_.data()[i].placed && meet(box(i), wanted) && !found.add(i))
            return 0;
    return 1;
}

int BoxIndex::gatherByCell(const ARect<double>& rect, const Block& block, Pile<int>& found) const
{
    const std::size_t before = found.count();
    for (const Link* at = link(large_); at; at = link(at->next))
        if (meet(box(at->item), rect) && !found.add(at->item))
            return 0;
    for (int r = block.top; r <= block.bottom; ++r)
        for (int c = block.left; c <= block.right; ++c)
            for (const Link* at = link(heads_.data()[r * columns_ + c]); at; at = link(at->next)) {
                const ARect<double>& b = box(at->item);
                // a box in several cells counts in the first of them
                const bool first = c == std::max(column(b.left), block.left) &&
                                   r == std::max(row(b.top), block.top);
                if (first && meet(b, rect) && !found.add(at->item))
                    return 0;
            }
    std::sort(found.data() + before, found.data() + found.count());
    return 1;
}

void BoxIndex::clear()
{
    items_.cut(0);
    links_.cut(0);
    free_ = large_ = none;
    columns_ = rows_ = 0;
    changes_ = 0;
}

}  // namespace pavane
