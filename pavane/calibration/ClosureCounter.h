#pragma once

#include "pavane/calibration/ClosureLegs.h"
#include "pavane/calibration/MomentReader.h"

#include <cstdint>
#include <map>
#include <vector>

namespace pavane
{

/// Counts how many points triangles and quads have in the moments that it is given: the times, and
/// where they are kept apart the IFs and polarisations, with a channel in which no leg is flagged
/// or missing.
class PAVANE_API ClosureCounter
{
public:
    ClosureCounter(std::vector<ClosureTriangle> triangles, std::vector<ClosureQuad> quads);

    /// Begins anew; the moments to come have legs of `legs().baselines`, with these cells.
    void restart(const UvCells& cells);
    void take(const UvMoment& moment);
    /// Puts the points so far into `triangles` and `quads`.
    void finish();

    const ClosureLegs& legs() const { return legs_; }
    const std::vector<ClosureTriangle>& triangles() const { return triangles_; }
    const std::vector<ClosureQuad>& quads() const { return quads_; }

private:
    void fill(const UvLeg& leg, std::uint64_t* bits) const;
    /// Moments one after another with the same legs, of which all cells count.
    struct Run {
        std::vector<char> has;
        std::int64_t points = 0;
    };
    void add(Run& run, const ClosureLegs::Members& members);
    template <std::size_t count>
    std::int64_t pointsOf(const std::array<ClosureLegs::Leg, count>& legs) const;

    std::vector<ClosureTriangle> triangles_;
    std::vector<ClosureQuad> quads_;
    ClosureLegs legs_;
    std::vector<std::size_t> starts_;  ///< of the parts in the cells, and their end
    std::vector<std::size_t> words_;   ///< where the bits of each part begin, and their end
    std::vector<std::uint64_t> bits_;  ///< of the baselines: which cells count
    std::map<int, Run> runs_;          ///< of the subarrays
};

}  // namespace pavane
