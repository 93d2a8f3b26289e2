#include "pavane/axes/maps/cells/contour_lines.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace pavane
{

namespace
{

/// Where a line ends: non-zero behind a point after which it does not go on.
using Cuts = std::vector<char>;

void findCuts(const CPointF* points, std::size_t count, int closed, double farthest, Cuts& cuts)
{
    cuts.assign(count, 0);
    for (std::size_t i = 0; i < count; ++i) {
        const CPointF& a = points[i];
        const CPointF& b = points[(i + 1) % count];
        const int isLast = i + 1 == count && !closed;
        // also where one of them is no place
        cuts[i] = isLast || !(std::hypot(b.x - a.x, b.y - a.y) <= farthest);
    }
}

void addPieces(const ContourLine& line, const Cuts& cuts, std::vector<ContourLine>& pieces)
{
    std::size_t start = 0;
    for (std::size_t i = 0; i < cuts.size(); ++i) {
        if (!cuts[i])
            continue;
        if (i > start)
            pieces.push_back({line.level, 0, line.first + static_cast<std::int64_t>(start),
                              static_cast<std::int64_t>(i + 1 - start)});
        start = i + 1;
    }
}

}  // namespace

int ContourLines::carry(const std::function<int(CPointF&)>& place, double farthest)
{
    try {
        std::vector<ContourLine> carried;
        Cuts cuts;
        for (const ContourLine& line : lines_) {
            CPointF* const points = points_.data() + line.first;
            const auto count = static_cast<std::size_t>(line.count);
            for (std::size_t i = 0; i < count; ++i)
                if (!place(points[i]))
                    points[i].x = std::numeric_limits<double>::quiet_NaN();
            findCuts(points, count, line.closed, farthest, cuts);
            const auto first = std::find(cuts.begin(), cuts.end(), 1);
            if (line.closed && first == cuts.end()) {
                carried.push_back(line);
                continue;
            }
            if (line.closed) {  // a loop that is open somewhere begins there
                const auto behind = first - cuts.begin() + 1;
                std::rotate(points, points + behind, points + count);
                std::rotate(cuts.begin(), cuts.begin() + behind, cuts.end());
            }
            addPieces(line, cuts, carried);
        }
        lines_.swap(carried);
    } catch (const std::bad_alloc&) {
        lines_.clear();
        return 0;
    }
    return 1;
}

}  // namespace pavane
