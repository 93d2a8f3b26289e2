#include "pavane/calibration/ClosureLegs.h"

#include <algorithm>
#include <tuple>

namespace pavane
{

ClosureLegs::ClosureLegs(const std::vector<ClosureTriangle>& ofTriangles,
                         const std::vector<ClosureQuad>& ofQuads)
{
    std::map<std::tuple<int, int, int>, std::size_t> indices;
    const auto leg = [&](int subarray, int a, int b) {
        const auto [low, high] = std::minmax(a, b);
        const auto [found, isNew] =
            indices.emplace(std::tuple(subarray, low, high), baselines.size());
        if (isNew)
            baselines.push_back({subarray, low, high, 0});
        return Leg{found->second, a < b ? 1.0F : -1.0F};
    };
    for (const ClosureTriangle& t : ofTriangles) {
        const auto& [a, b, c] = t.telescopes;
        subarrays[t.subarray].triangles.push_back(triangles.size());
        triangles.push_back({leg(t.subarray, a, b), leg(t.subarray, b, c), leg(t.subarray, c, a)});
    }
    for (const ClosureQuad& q : ofQuads) {
        const auto& [a, b, c, d] = q.telescopes;
        subarrays[q.subarray].quads.push_back(quads.size());
        quads.push_back({leg(q.subarray, a, b), leg(q.subarray, c, d), leg(q.subarray, a, c),
                         leg(q.subarray, b, d)});
    }
}

}  // namespace pavane
