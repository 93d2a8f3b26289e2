#include "pavane/calibration/ClosureCounter.h"

#include <algorithm>
#include <utility>

namespace pavane
{

ClosureCounter::ClosureCounter(std::vector<ClosureTriangle> triangles,
                               std::vector<ClosureQuad> quads)
    : triangles_(std::move(triangles)), quads_(std::move(quads)), legs_(triangles_, quads_)
{
}

void ClosureCounter::restart(const UvCells& cells)
{
    for (ClosureTriangle& triangle : triangles_)
        triangle.points = 0;
    for (ClosureQuad& quad : quads_)
        quad.points = 0;
    runs_.clear();
    starts_ = cells.starts;
    words_.assign(1, 0);
    for (std::size_t part = 0; part + 1 < starts_.size(); ++part)
        words_.push_back(words_.back() + (starts_[part + 1] - starts_[part] + 63) / 64);
    bits_.assign(words_.back() * legs_.baselines.size(), 0);
}

void ClosureCounter::fill(const UvLeg& leg, std::uint64_t* bits) const
{
    std::fill(bits, bits + words_.back(), 0);
    for (std::size_t part = 0; part + 1 < starts_.size(); ++part)
        for (std::size_t i = starts_[part]; i < starts_[part + 1]; ++i) {
            const std::size_t bit = i - starts_[part];
            bits[words_[part] + bit / 64] |= std::uint64_t{leg.valid[i] > 0} << bit % 64;
        }
}

namespace
{

template <std::size_t count>
bool hasAll(const std::vector<char>& has, const std::array<ClosureLegs::Leg, count>& legs)
{
    return std::all_of(legs.begin(), legs.end(),
                       [&](const ClosureLegs::Leg& leg) { return has[leg.baseline] != 0; });
}

}  // namespace

/// Parts in which all legs have a cell.
template <std::size_t count>
std::int64_t ClosureCounter::pointsOf(const std::array<ClosureLegs::Leg, count>& legs) const
{
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

void ClosureCounter::take(const UvMoment& moment)
{
    const auto found = legs_.subarrays.find(moment.subarray);
    if (found == legs_.subarrays.end())
        return;
    const ClosureLegs::Members& members = found->second;
    const bool isWhole =
        std::all_of(members.baselines.begin(), members.baselines.end(),
                    [&](std::size_t b) { return !moment.has[b] || moment.legs[b].isWhole; });
    if (isWhole) {
        Run& run = runs_[moment.subarray];
        if (run.has != moment.has) {
            add(run, members);
            run.has = moment.has;
        }
        run.points += static_cast<std::int64_t>(words_.size()) - 1;
        return;
    }
    for (const std::size_t b : members.baselines)
        if (moment.has[b])
            fill(moment.legs[b], bits_.data() + b * words_.back());
    for (const std::size_t t : members.triangles)
        if (hasAll(moment.has, legs_.triangles[t]))
            triangles_[t].points += pointsOf(legs_.triangles[t]);
    for (const std::size_t q : members.quads)
        if (hasAll(moment.has, legs_.quads[q]))
            quads_[q].points += pointsOf(legs_.quads[q]);
}

void ClosureCounter::add(Run& run, const ClosureLegs::Members& members)
{
    const std::int64_t points = std::exchange(run.points, 0);
    if (!points)
        return;
    for (const std::size_t t : members.triangles)
        triangles_[t].points += hasAll(run.has, legs_.triangles[t]) ? points : 0;
    for (const std::size_t q : members.quads)
        quads_[q].points += hasAll(run.has, legs_.quads[q]) ? points : 0;
}

void ClosureCounter::finish()
{
    for (auto& [subarray, run] : runs_)
        add(run, legs_.subarrays.at(subarray));
}

}  // namespace pavane
