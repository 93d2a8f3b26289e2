#include "pavane/calibration/gains/integration.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <vector>

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

using BaselineTimes = std::map<std::tuple<int, int, int>, std::vector<double>>;

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

/// The steps are those of one baseline each, since the times of different ones may lie beside each
/// other.
int measureIntegration(AUVXFile& file, double& days)
{
    BaselineTimes times;
    UvGroups groups;
    const std::int64_t last = std::min(firstGroups, file.header().groups);
    for (std::int64_t g = 0; g < last;) {
        const std::int64_t count = std::min<std::int64_t>(file.blockGroups(), last - g);
        if (!file.readGroups(g, static_cast<int>(count), UvGroups::baselines | UvGroups::times,
                             groups))
            return 0;
        for (std::size_t i = 0; i < groups.time.size(); ++i)
            if (std::isfinite(groups.time[i]))
                times[{groups.subarray[i], groups.antenna1[i], groups.antenna2[i]}].push_back(
                    groups.time[i]);
        g += count;
    }
    days = commonestStep(times);
    return 1;
}

}  // namespace pavane
