#include "pavane/trackers/masks/thin_outline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace pavane
{

namespace
{

/// How far p is from the line from a to b, whose ends count too.
double distanceFrom(CPoint p, CPoint a, CPoint b)
{
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    const double x = p.x - a.x;
    const double y = p.y - a.y;
    const double along = length > 0 ? std::clamp((x * dx + y * dy) / length, 0.0, 1.0) : 0;
    return std::hypot(x - along * dx, y - along * dy);
}

}  // namespace

std::vector<CPoint> thinOutline(const std::vector<CPoint>& outline, double distance)
{
    const std::size_t n = outline.size();
    if (n <= 3)
        return outline;
    const auto at = [&](std::size_t i) { return outline[i < n ? i : 0]; };
    std::vector<char> stays(n, 0);
    std::size_t worst = 0;
    const auto farthest = [&](std::size_t first, std::size_t last) {
        double most = -1;
        for (std::size_t i = first + 1; i < last; ++i)
            if (const double d = distanceFrom(at(i), at(first), at(last)); d > most)
                most = d, worst = i;
        return most;
    };
    stays[0] = 1;
    (void)farthest(0, n);
    const std::size_t middle = worst;
    stays[middle] = 1;
    std::vector<std::pair<std::size_t, std::size_t>> parts{{0, middle}, {middle, n}};
    std::size_t third = 0;
    double thirdDistance = -1;
    while (!parts.empty()) {
        const auto [first, last] = parts.back();
        parts.pop_back();
        const double most = farthest(first, last);
        if (most > thirdDistance)
            thirdDistance = most, third = worst;
        if (most < distance)
            continue;
        stays[worst] = 1;
        parts.emplace_back(first, worst);
        parts.emplace_back(worst, last);
    }
    if (std::count(stays.begin(), stays.end(), 1) < 3)
        stays[third] = 1;
    std::vector<CPoint> thinned;
    for (std::size_t i = 0; i < n; ++i)
        if (stays[i])
            thinned.push_back(outline[i]);
    return thinned;
}

}  // namespace pavane
