#pragma once

#include "pavane/calibration/closure_sets.h"

#include <array>
#include <cstddef>
#include <map>
#include <vector>

namespace pavane
{

/// The baselines that triangles and quads are made of.
struct ClosureLegs {
    struct Leg {
        std::size_t baseline;  ///< in `baselines`
        float sign;            ///< -1: from the higher to the lower number
    };
    /// What there is of a subarray, by index.
    struct Members {
        std::vector<std::size_t> triangles, quads;
        std::vector<std::size_t> baselines;  ///< of all triangles and quads there
        std::size_t count() const { return triangles.size() + quads.size(); }
    };
    std::vector<UvBaseline> baselines;          ///< each once, from the lower number
    std::vector<std::array<Leg, 3>> triangles;  ///< ab, bc, ca
    std::vector<std::array<Leg, 4>> quads;      ///< ab, cd, ac, bd
    std::map<int, Members> subarrays;

    ClosureLegs() = default;
    /// `known` baselines stand first, whether a leg is one of them or not.
    ClosureLegs(const std::vector<ClosureTriangle>& triangles,
                const std::vector<ClosureQuad>& quads, std::vector<UvBaseline> known = {});
};

}  // namespace pavane
