#pragma once

#include "platform/geometry.h"
#include "tessel/ABitMatrix.h"

#include <algorithm>
#include <map>
#include <vector>

namespace pavane::test
{

__extension__ using Wide = __int128;

/// The fill rule written down plainly, one row of one edge after the other, in 128 bits. Only for
/// polygons whose edges have few rows inside the mask; returns the most crossings of such a row.
inline int plainFill(ABitMatrix& mask, const std::vector<CPoint>& points)
{
    const int n = static_cast<int>(points.size());
    std::map<int, std::vector<int>> table;
    for (int i = 0; i < n; ++i) {
        const CPoint a = points[static_cast<std::size_t>(i)];
        const CPoint b = points[static_cast<std::size_t>((i + 1) % n)];
        if (a.y == b.y) {
            mask.setSpan(a.y, std::min(a.x, b.x), std::max(a.x, b.x));
            continue;
        }
        int before = i;
        do
            before = (before + n - 1) % n;
        while (before != i && points[static_cast<std::size_t>(before)].y == a.y);
        const int yPrev = points[static_cast<std::size_t>(before)].y;
        for (int y = std::max(std::min(a.y, b.y), 0);
             y <= std::min(std::max(a.y, b.y), mask.rows() - 1); ++y) {
            const bool extreme = (a.y > b.y && a.y > yPrev) || (a.y < b.y && a.y < yPrev);
            if (y == a.y && !extreme)
                continue;
            const Wide product =
                Wide{static_cast<long long>(b.x) - a.x} * (static_cast<long long>(y) - a.y);
            table[y].push_back(
                static_cast<int>(a.x + product / (static_cast<long long>(b.y) - a.y)));
        }
    }
    int most = 0;
    for (auto& [y, xs] : table) {
        std::sort(xs.begin(), xs.end());
        for (std::size_t k = 0; k + 1 < xs.size(); k += 2)
            mask.setSpan(y, xs[k], xs[k + 1]);
        most = std::max(most, static_cast<int>(xs.size()));
    }
    return most;
}

}  // namespace pavane::test
