// What a first look at a file tells: how long its integrations are, and which baselines are good.
#include "pavane/calibration/gains/integration.h"
#include "pavane/calibration/MomentReader.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Parts of a file that are looked at beforehand, the share of it that they are at most, and how
/// often all baselines come in each.
constexpr std::int64_t mostSamples = 32, shareOfSamples = 20, timesOfSample = 2;

}  // namespace

void MomentReader::measureStep()
{
    double step = 0;
    if (!measureIntegration(file_, step))
        error_ = "has become shorter while it was read";
    half_ = std::max(step / 2, leastHalf);
}

/// The moments at both ends of a part are not whole and do not count.
void MomentReader::takeSample()
{
    sample_.assign(baselines_, 0);
    const std::int64_t groups = file_.header().groups;
    const auto all = timesOfSample * static_cast<std::int64_t>(baselines_);
    const std::int64_t part = std::min(std::max<std::int64_t>(file_.blockGroups(), all), groups);
    if (part <= 0)
        return;
    const std::int64_t parts =
        std::clamp<std::int64_t>(groups / shareOfSamples / part, 1, mostSamples);
    const int isAll = part == groups;
    UvLeg taken;
    std::vector<std::pair<double, std::size_t>> good;  // times and baselines of a part
    for (std::int64_t p = 0; p < parts; ++p) {
        good.clear();
        const std::int64_t start = groups / parts * p;
        const std::int64_t end = std::min(start + part, groups);
        double firstTime = 0;
        double lastTime = 0;
        for (std::int64_t first = start; first < end;) {
            const std::int64_t count = std::min<std::int64_t>(file_.blockGroups(), end - first);
            if (!readBlock(first, count, what_))
                return;
            if (first == start)
                firstTime = groups_.time.front();
            lastTime = groups_.time.back();
            first += count;
            for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
                const auto leg =
                    wanted_.find({groups_.subarray[i], groups_.antenna1[i], groups_.antenna2[i]});
                if (leg == wanted_.end() || !isWanted(i))
                    continue;
                const double* const frequencies = choice_.frequenciesOf(groups_, i);
                if (frequencies && taken.take(groups_, static_cast<int>(i), cells_, frequencies, 1))
                    good.emplace_back(groups_.time[i],
                                      static_cast<std::size_t>(leg->second.baseline));
            }
        }
        for (const auto& [time, baseline] : good)
            sample_[baseline] +=
                isAll || (std::abs(time - firstTime) > half_ && std::abs(time - lastTime) > half_);
    }
}

}  // namespace pavane
