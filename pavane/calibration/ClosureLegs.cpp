#include "pavane/calibration/ClosureLegs.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace pavane
{

ClosureLegs::ClosureLegs(const std::vector<ClosureTriangle>& ofTriangles,
                         const std::vector<ClosureQuad>& ofQuads, std::vector<UvBaseline> known)
    : baselines(std::move(known))
{
    std::map<std::tuple<int, int, int>, std::size_t> indices;
    for (const UvBaseline& b : baselines)
        indices.emplace(std::tuple(b.subarray, b.first, b.second), indices.size());
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
    for (std::size_t i = 0; i < baselines.size(); ++i)
        if (const auto found = subarrays.find(baselines[i].subarray); found != subarrays.end())
            found->second.baselines.push_back(i);
}

}  // namespace pavane
