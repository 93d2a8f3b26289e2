#include "pavane/images/LineSteps.h"

#include <algorithm>

namespace pavane
{

namespace
{

__extension__ using Wide = __int128;  // products of two lengths of 33 bits

template <typename Int>
Int ceilOfQuotient(Int a, Int positive)
{
    const Int q = a / positive;
    return q + (a % positive > 0 ? 1 : 0);
}

std::int64_t magnitude(std::int64_t v) { return v < 0 ? -v : v; }

// First i in [first, end) for which `holds`, which stays true once it is, else end.
template <typename Condition>
std::int64_t firstWhere(std::int64_t first, std::int64_t end, const Condition& holds)
{
    while (first < end) {
        const std::int64_t middle = first + (end - first) / 2;
        if (holds(middle))
            end = middle;
        else
            first = middle + 1;
    }
    return first;
}

}  // namespace

LineSteps::LineSteps(CPoint from, CPoint to) : from_(from)
{
    const std::int64_t dx = std::int64_t{to.x} - from.x;
    const std::int64_t dy = std::int64_t{to.y} - from.y;
    steep_ = magnitude(dy) > magnitude(dx);
    const std::int64_t run = steep_ ? dy : dx;
    majorStep_ = run > 0 ? 1 : run < 0 ? -1 : 0;
    n_ = magnitude(run);
    rise_ = steep_ ? dx : dy;
}

std::int64_t LineSteps::minorOffset(std::int64_t i) const
{
    // ceil(rise * i / n - 1/2)
    constexpr std::int64_t small = std::int64_t{1} << 30;
    if (i < small && magnitude(rise_) < small)
        return ceilOfQuotient<std::int64_t>(2 * rise_ * i - n_, 2 * n_);
    return static_cast<std::int64_t>(ceilOfQuotient<Wide>(Wide{2} * rise_ * i - n_, Wide{2} * n_));
}

CPoint LineSteps::at(std::int64_t i) const
{
    const auto along = static_cast<int>((steep_ ? from_.y : from_.x) + majorStep_ * i);
    const auto across = static_cast<int>((steep_ ? from_.x : from_.y) + minorOffset(i));
    return steep_ ? CPoint(across, along) : CPoint(along, across);
}

LineSteps::Range LineSteps::inside(const CRect& box) const
{
    const std::int64_t start = steep_ ? from_.y : from_.x;
    const std::int64_t low = steep_ ? box.top : box.left;
    const std::int64_t high = steep_ ? box.bottom : box.right;
    Range range{majorStep_ > 0 ? low - start : start - high,
                majorStep_ > 0 ? high - start : start - low};
    range.first = std::max<std::int64_t>(range.first, 0);
    range.end = std::min(range.end + 1, n_);
    if (range.first >= range.end)
        return {0, 0};
    const std::int64_t acrossStart = steep_ ? from_.x : from_.y;
    const std::int64_t least = (steep_ ? box.left : box.top) - acrossStart;
    const std::int64_t most = (steep_ ? box.right : box.bottom) - acrossStart;
    if (rise_ >= 0) {
        range.first = firstWhere(range.first, range.end,
                                 [&](std::int64_t i) { return minorOffset(i) >= least; });
        range.end = firstWhere(range.first, range.end,
                               [&](std::int64_t i) { return minorOffset(i) > most; });
    } else {
        range.first = firstWhere(range.first, range.end,
                                 [&](std::int64_t i) { return minorOffset(i) <= most; });
        range.end = firstWhere(range.first, range.end,
                               [&](std::int64_t i) { return minorOffset(i) < least; });
    }
    return range;
}

LineSteps::Walk LineSteps::walkFrom(std::int64_t i) const
{
    const Wide value = Wide{2} * rise_ * i - n_;
    const Wide rest = Wide{minorOffset(i)} * 2 * n_ - value;
    return {static_cast<std::int64_t>(rest), 2 * magnitude(rise_), 2 * n_};
}

}  // namespace pavane
