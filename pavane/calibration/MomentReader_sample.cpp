// What a first look at a file tells: how long its integrations are, and which baselines are good.
#include "pavane/calibration/MomentReader.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr double secondsPerDay = 86400;
/// Groups that tell the length of an integration.
constexpr std::int64_t firstGroups = 1 << 16;
/// Times jitter by some thousandths of a second; steps are told apart to so many of them, and to
/// the second unit where all steps are shorter.
constexpr double stepUnits[] = {0.1, 0.001};
/// Parts of a file that are looked at beforehand, the share of it that they are at most, and how
/// often all baselines come in each.
constexpr std::int64_t mostSamples = 32, shareOfSamples = 20, timesOfSample = 2;

using BaselineTimes = std::map<std::tuple<int, int, int>, std::vector<double>>;

/// Days between a time of a baseline and its next one, most often; 0 where there is no next one.
double commonestStep(BaselineTimes& baselines)
{
    for (auto& [baseline, times] : baselines)
        std::sort(times.begin(), times.end());
    for (const double unit : stepUnits) {
        std::map<double, int> counts;
        for (const auto& [baseline, times] : baselines)
            for (std::size_t i = 1; i < times.size(); ++i)
                if (const double step =
                        std::floor((times[i] - times[i - 1]) * secondsPerDay / unit + 0.5);
                    step > 0)
                    ++counts[step];
        const auto most =
            std::max_element(counts.begin(), counts.end(),
                             [](const auto& a, const auto& b) { return a.second < b.second; });
        if (most != counts.end())
            return most->first * unit / secondsPerDay;
    }
    return 0;
}

}  // namespace

/// Those of one baseline each, since the times of different ones may lie beside each other.
void MomentReader::measureStep()
{
    BaselineTimes times;
    const std::int64_t last = std::min(firstGroups, file_.header().groups);
    for (std::int64_t g = 0; g < last;) {
        const std::int64_t count = std::min<std::int64_t>(file_.blockGroups(), last - g);
        if (!readBlock(g, count, UvGroups::baselines | UvGroups::times))
            return;
        for (std::size_t i = 0; i < groups_.time.size(); ++i)
            if (std::isfinite(groups_.time[i]))
                times[{groups_.subarray[i], groups_.antenna1[i], groups_.antenna2[i]}].push_back(
                    groups_.time[i]);
        g += count;
    }
    half_ = std::max(commonestStep(times) / 2, leastHalf);
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
