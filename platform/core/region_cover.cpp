#include "platform/core/region_cover.h"

#include <algorithm>

namespace pavane
{

namespace
{

/// Adds the runs of a band to those of a group of rows; runs closer than `gap` become one.
void join(std::vector<Run>& group, const Run* runs, std::size_t count, int gap)
{
    group.insert(group.end(), runs, runs + count);
    std::sort(group.begin(), group.end(), [](const Run& p, const Run& q) { return p.a < q.a; });
    std::size_t kept = 0;
    for (const Run& r : group) {
        if (kept > 0 && group[kept - 1].b + gap >= r.a)
            group[kept - 1].b = std::max(group[kept - 1].b, r.b);
        else
            group[kept++] = r;
    }
    group.resize(kept);
}

std::vector<CRect> coarse(const Region& region, int gap)
{
    std::vector<CRect> rects;
    std::vector<Run> group;
    int top = 0;
    int bottom = 0;
    const auto finish = [&] {
        for (const Run& r : group)
            rects.emplace_back(r.a, top, r.b, bottom);
        group.clear();
    };
    for (const Region::Band& band : region.bands()) {
        if (!group.empty() && (band.top > bottom || band.bottom - top > gap))
            finish();
        if (group.empty())
            top = band.top;
        bottom = band.bottom;
        join(group, region.runs(band), band.count, gap);
    }
    finish();
    return rects;
}

}  // namespace

std::vector<CRect> coverOf(const Region& region, std::size_t most)
{
    std::vector<CRect> rects = coarse(region, 0);
    for (int gap = 8; rects.size() > most && gap <= 1024; gap *= 2)
        rects = coarse(region, gap);
    if (rects.size() > most)
        rects = {region.box()};
    return rects;
}

}  // namespace pavane
