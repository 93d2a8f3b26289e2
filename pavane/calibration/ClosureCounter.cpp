#include "pavane/calibration/ClosureCounter.h"

#include <algorithm>
#include <utility>

namespace pavane
{

ClosureCounter::ClosureCounter(AUVXFile& file, std::vector<ClosureTriangle> triangles,
                               std::vector<ClosureQuad> quads, const UvMarks& marks,
                               const UvSplit& split)
    : triangles_(std::move(triangles)), quads_(std::move(quads)), legs_(triangles_, quads_),
      reader_(file, marks, split, legs_.baselines, 0)
{
}

void ClosureCounter::restart()
{
    for (ClosureTriangle& triangle : triangles_)
        triangle.points = 0;
    for (ClosureQuad& quad : quads_)
        quad.points = 0;
    const std::vector<std::size_t>& starts = reader_.cells().starts;
    words_.assign(1, 0);
    for (std::size_t part = 0; part + 1 < starts.size(); ++part)
        words_.push_back(words_.back() + (starts[part + 1] - starts[part] + 63) / 64);
    bits_.assign(words_.back() * legs_.baselines.size(), 0);
}

void ClosureCounter::fill(const UvLeg& leg, std::uint64_t* bits) const
{
    const std::vector<std::size_t>& starts = reader_.cells().starts;
    std::fill(bits, bits + words_.back(), 0);
    for (std::size_t part = 0; part + 1 < starts.size(); ++part)
        for (std::size_t i = starts[part]; i < starts[part + 1]; ++i) {
            const std::size_t bit = i - starts[part];
            bits[words_[part] + bit / 64] |= std::uint64_t{leg.valid[i] > 0} << bit % 64;
        }
}

/// Parts in which all legs have a cell.
template <std::size_t count>
std::int64_t ClosureCounter::pointsOf(const UvMoment& moment,
                                      const std::array<ClosureLegs::Leg, count>& legs) const
{
    for (const ClosureLegs::Leg& leg : legs)
        if (!moment.has[leg.baseline])
            return 0;
    std::int64_t points = 0;
    for (std::size_t part = 0; part + 1 < words_.size(); ++part) {
        std::uint64_t any = 0;
        for (std::size_t w = words_[part]; w < words_[part + 1]; ++w) {
            std::uint64_t all = ~std::uint64_t{0};
            for (const ClosureLegs::Leg& leg : legs)
                all &= bits_[leg.baseline * words_.back() + w];
            any |= all;
        }
        points += any != 0;
    }
    return points;
}

void ClosureCounter::take(UvMoment& moment)
{
    const auto found = legs_.subarrays.find(moment.subarray);
    if (found == legs_.subarrays.end())
        return;
    for (std::size_t b = 0; b < moment.has.size(); ++b)
        if (moment.has[b])
            fill(moment.legs[b], bits_.data() + b * words_.back());
    for (const std::size_t t : found->second.triangles)
        triangles_[t].points += pointsOf(moment, legs_.triangles[t]);
    for (const std::size_t q : found->second.quads)
        quads_[q].points += pointsOf(moment, legs_.quads[q]);
}

}  // namespace pavane
