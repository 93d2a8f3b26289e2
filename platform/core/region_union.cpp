#include "platform/core/region_union.h"

#include <algorithm>

namespace pavane
{

Region unionOf(std::vector<CRect> rects)
{
    std::erase_if(rects, [](const CRect& r) { return r.IsRectEmpty(); });
    std::sort(rects.begin(), rects.end(),
              [](const CRect& a, const CRect& b) { return a.top < b.top; });
    std::vector<int> edges;
    for (const CRect& r : rects) {
        edges.push_back(r.top);
        edges.push_back(r.bottom);
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());

    Region region;
    std::vector<CRect> active;  // of this band, from left to right
    std::vector<Run> runs;
    std::size_t next = 0;
    for (std::size_t i = 0; i + 1 < edges.size(); ++i) {
        std::erase_if(active, [&](const CRect& r) { return r.bottom <= edges[i]; });
        for (; next < rects.size() && rects[next].top == edges[i]; ++next) {
            const auto at =
                std::upper_bound(active.begin(), active.end(), rects[next],
                                 [](const CRect& a, const CRect& b) { return a.left < b.left; });
            active.insert(at, rects[next]);
        }
        runs.clear();
        for (const CRect& r : active) {
            if (!runs.empty() && runs.back().b >= r.left)
                runs.back().b = std::max(runs.back().b, r.right);
            else
                runs.push_back({r.left, r.right});
        }
        if (!runs.empty())
            region.append(edges[i], edges[i + 1], runs);
    }
    return region;
}

}  // namespace pavane
