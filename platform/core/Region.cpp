#include "platform/core/Region.h"

#include "platform/core/pixel_rounding.h"
#include "platform/gdi_constants.h"

#include <algorithm>

namespace pavane
{

namespace
{

bool wanted(bool inA, bool inB, int mode)
{
    switch (mode) {
    case RGN_AND:
        return inA && inB;
    case RGN_OR:
        return inA || inB;
    case RGN_XOR:
        return inA != inB;
    case RGN_DIFF:
        return inA && !inB;
    default:
        return inA;
    }
}

/// Combines two sorted run lists into `out`, going over their ends from left to right.
void combineRuns(const Run* a, std::size_t countA, const Run* b, std::size_t countB, int mode,
                 std::vector<Run>& out)
{
    out.clear();
    std::size_t ia = 0;
    std::size_t ib = 0;  // halves: even = a run's start, odd = its end
    bool inside = false;
    int start = 0;
    while (ia < 2 * countA || ib < 2 * countB) {
        const auto end = [](const Run* runs, std::size_t i) {
            return i % 2 == 0 ? runs[i / 2].a : runs[i / 2].b;
        };
        const bool moreA = ia < 2 * countA;
        const bool moreB = ib < 2 * countB;
        const int xa = moreA ? end(a, ia) : 0;
        const int xb = moreB ? end(b, ib) : 0;
        const int x = !moreB || (moreA && xa <= xb) ? xa : xb;
        if (moreA && xa == x)
            ++ia;
        if (moreB && xb == x)
            ++ib;
        const bool now = wanted(ia % 2 == 1, ib % 2 == 1, mode);
        if (now == inside)
            continue;
        if (now)
            start = x;
        else if (!out.empty() && out.back().b == start)
            out.back().b = x;
        else
            out.push_back({start, x});
        inside = now;
    }
}

}  // namespace

Region::Region(const CRect& rect)
{
    if (!rect.IsRectEmpty()) {
        runs_.push_back({rect.left, rect.right});
        bands_.push_back({rect.top, rect.bottom, 0, 1});
    }
}

CRect Region::box() const
{
    if (bands_.empty())
        return {};
    CRect box(runs_.front().a, bands_.front().top, runs_.front().b, bands_.back().bottom);
    for (const Band& band : bands_) {
        box.left = std::min(box.left, runs(band)[0].a);
        box.right = std::max(box.right, runs(band)[band.count - 1].b);
    }
    return box;
}

int Region::kind() const
{
    if (bands_.empty())
        return NULLREGION;
    return bands_.size() == 1 && bands_[0].count == 1 ? SIMPLEREGION : COMPLEXREGION;
}

std::size_t Region::bandFrom(int y) const
{
    const auto band = std::upper_bound(bands_.begin(), bands_.end(), y,
                                       [](int row, const Band& b) { return row < b.bottom; });
    return static_cast<std::size_t>(band - bands_.begin());
}

bool Region::contains(int x, int y) const
{
    const std::size_t at = bandFrom(y);
    if (at == bands_.size() || y < bands_[at].top)
        return false;
    const Run* const first = runs(bands_[at]);
    const Run* const last = first + bands_[at].count;
    const Run* const run =
        std::upper_bound(first, last, x, [](int column, const Run& r) { return column < r.b; });
    return run != last && x >= run->a;
}

bool Region::overlaps(const CRect& rect) const
{
    if (rect.IsRectEmpty())
        return false;
    for (std::size_t i = bandFrom(rect.top); i < bands_.size() && bands_[i].top < rect.bottom;
         ++i) {
        const Run* const first = runs(bands_[i]);
        for (const Run* run = first; run != first + bands_[i].count; ++run) {
            if (run->a < rect.right && run->b > rect.left)
                return true;
        }
    }
    return false;
}

void Region::offset(int dx, int dy)
{
    for (Band& band : bands_) {
        band.top = saturated(Wide{band.top} + dy);
        band.bottom = saturated(Wide{band.bottom} + dy);
    }
    for (Run& run : runs_) {
        run.a = saturated(Wide{run.a} + dx);
        run.b = saturated(Wide{run.b} + dx);
    }
}

void Region::append(int top, int bottom, const std::vector<Run>& runs)
{
    if (top >= bottom || runs.empty())
        return;
    if (!bands_.empty()) {
        Band& last = bands_.back();
        const Run* const above = this->runs(last);
        if (last.bottom == top && std::equal(above, above + last.count, runs.begin(), runs.end())) {
            last.bottom = bottom;
            return;
        }
    }
    bands_.push_back({top, bottom, runs_.size(), runs.size()});
    runs_.insert(runs_.end(), runs.begin(), runs.end());
}

Region Region::combined(const Region& a, const Region& b, int mode)
{
    Region result;
    std::vector<Run> row;
    std::size_t ia = 0;
    std::size_t ib = 0;
    int y = std::numeric_limits<int>::min();
    while (ia < a.bands_.size() || ib < b.bands_.size()) {
        // the rows from y on, as far down as neither region changes
        const Band* const bandA = ia < a.bands_.size() ? &a.bands_[ia] : nullptr;
        const Band* const bandB = ib < b.bands_.size() ? &b.bands_[ib] : nullptr;
        int bottom = std::numeric_limits<int>::max();
        const Run* runsA = nullptr;
        const Run* runsB = nullptr;
        if (bandA && y >= bandA->top)
            runsA = a.runs(*bandA);
        if (bandB && y >= bandB->top)
            runsB = b.runs(*bandB);
        if (bandA)
            bottom = std::min(bottom, runsA ? bandA->bottom : bandA->top);
        if (bandB)
            bottom = std::min(bottom, runsB ? bandB->bottom : bandB->top);
        if (runsA || runsB) {
            combineRuns(runsA, runsA ? bandA->count : 0, runsB, runsB ? bandB->count : 0, mode,
                        row);
            result.append(y, bottom, row);
        }
        if (runsA && bottom == bandA->bottom)
            ++ia;
        if (runsB && bottom == bandB->bottom)
            ++ib;
        y = bottom;
    }
    return result;
}

}  // namespace pavane
