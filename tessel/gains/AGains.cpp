#include "tessel/gains/AGains.h"

#include <algorithm>
#include <limits>
#include <new>
#include <numeric>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace pavane
{

int AGains::create(std::vector<GainAntenna> antennas, std::vector<GainInterval> intervals,
                   std::vector<std::vector<int>> groups, std::vector<char> hands)
{
    try {
        antennas_ = std::move(antennas);
        intervals_ = std::move(intervals);
        groups_ = std::move(groups);
        hands_ = std::move(hands);
        std::size_t count = 1;
        for (const std::size_t size :
             {antennas_.size(), intervals_.size(), groups_.size(), hands_.size()}) {
            if (size != 0 && count > std::numeric_limits<std::size_t>::max() / sizeof(Gain) / size)
                throw std::length_error("gains");
            count *= size;
        }
        cells_.assign(count, {});
        groupOf_.clear();
        for (std::size_t g = 0; g < groups_.size(); ++g)
            for (const int i : groups_[g]) {
                if (i < 0)
                    continue;
                const auto at = static_cast<std::size_t>(i);
                if (at >= groupOf_.size())
                    groupOf_.resize(at + 1, -1);
                if (groupOf_[at] < 0)
                    groupOf_[at] = static_cast<int>(g);
            }
        sortIntervals();
        return 1;
    } catch (const std::exception&) {
        *this = {};
        return 0;
    }
}

void AGains::sortIntervals()
{
    byTime_.resize(intervals_.size());
    std::iota(byTime_.begin(), byTime_.end(), std::size_t{0});
    std::sort(byTime_.begin(), byTime_.end(), [this](std::size_t a, std::size_t b) {
        return std::tie(intervals_[a].subarray, intervals_[a].start, a) <
               std::tie(intervals_[b].subarray, intervals_[b].start, b);
    });
}

int AGains::intervalOf(int subarray, double time, int source) const
{
    const auto isBefore = [&](std::size_t i) {
        const GainInterval& interval = intervals_[i];
        return interval.subarray < subarray ||
               (interval.subarray == subarray && interval.start <= time);
    };
    auto after = std::partition_point(byTime_.begin(), byTime_.end(), isBefore);
    // several sources can have gains of the same time
    while (after != byTime_.begin()) {
        const GainInterval& interval = intervals_[*--after];
        if (interval.subarray != subarray || !(time < interval.end))
            return -1;
        if (interval.source == 0 || source == 0 || interval.source == source)
            return static_cast<int>(*after);
    }
    return -1;
}

int AGains::antennaOf(int subarray, int number) const
{
    for (std::size_t i = 0; i < antennas_.size(); ++i)
        if (antennas_[i].subarray == subarray && antennas_[i].number == number)
            return static_cast<int>(i);
    return -1;
}

int AGains::groupOf(int ifIndex) const
{
    return ifIndex < 0 || static_cast<std::size_t>(ifIndex) >= groupOf_.size()
               ? -1
               : groupOf_[static_cast<std::size_t>(ifIndex)];
}

int AGains::handOf(char hand) const
{
    const auto found = std::find(hands_.begin(), hands_.end(), hand);
    return found == hands_.end() ? -1 : static_cast<int>(found - hands_.begin());
}

std::size_t AGains::count(GainState state) const
{
    return static_cast<std::size_t>(std::count_if(
        cells_.begin(), cells_.end(), [state](const Gain& gain) { return gain.state == state; }));
}

}  // namespace pavane
