#pragma once

#include "pavane/calibration/ClosureLegs.h"
#include "pavane/calibration/MomentReader.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// Counts how many points triangles and quads of a file would have, in slices: the times, and where
/// they are kept apart the IFs and polarisations, with a channel in which no leg is flagged or
/// missing. Quicker than the points themselves. File and marks outlive it.
class PAVANE_API ClosureCounter final : private MomentSink
{
public:
    ClosureCounter(AUVXFile& file, std::vector<ClosureTriangle> triangles,
                   std::vector<ClosureQuad> quads, const UvMarks& marks, const UvSplit& split);

    /// As that of ClosureReader.
    int step(std::int64_t bytes) { return reader_.step(bytes, *this); }
    double done() const { return reader_.done(); }  ///< 0 to 1
    const std::string& error() const { return reader_.error(); }
    /// With the points so far.
    const std::vector<ClosureTriangle>& triangles() const { return triangles_; }
    const std::vector<ClosureQuad>& quads() const { return quads_; }

private:
    void take(UvMoment& moment) override;
    void restart() override;
    void fill(const UvLeg& leg, std::uint64_t* bits) const;
    template <std::size_t count>
    std::int64_t pointsOf(const UvMoment& moment,
                          const std::array<ClosureLegs::Leg, count>& legs) const;

    std::vector<ClosureTriangle> triangles_;
    std::vector<ClosureQuad> quads_;
    ClosureLegs legs_;
    MomentReader reader_;
    std::vector<std::size_t> words_;   ///< where the bits of each part begin, and their end
    std::vector<std::uint64_t> bits_;  ///< of the baselines: which cells count
};

}  // namespace pavane
