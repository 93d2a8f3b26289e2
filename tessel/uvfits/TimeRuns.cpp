#include "tessel/uvfits/TimeRuns.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

namespace pavane
{

namespace
{

constexpr std::size_t mostOrigins = 1 << 20;
constexpr double secondsPerDay = 86400;
constexpr double leastPause = 60;
constexpr double stepsOfPause = 3;
/// Steps are told apart to this many seconds; dates in single precision jitter by some thousandths.
constexpr double stepUnit = 0.1;

/// Seconds of the longest pause within a scan. `times` rise.
double longestPause(const std::vector<double>& times)
{
    std::map<double, int> counts;
    for (std::size_t i = 1; i < times.size(); ++i) {
        const double step = std::floor((times[i] - times[i - 1]) * secondsPerDay / stepUnit + 0.5);
        if (step > 0)
            ++counts[step];
    }
    double commonest = 0;
    int most = 0;
    for (const auto& [step, count] : counts)
        if (count > most) {
            most = count;
            commonest = step * stepUnit;
        }
    return std::max(leastPause, stepsOfPause * commonest) + stepUnit / 2;
}

}  // namespace

TimeRuns::TimeRuns(std::size_t most) : origins_(mostOrigins), moments_(most) {}

int TimeRuns::addOther(double time, const Origin& origin, std::int64_t number)
{
    const auto next = static_cast<int>(origins_.items().size());
    const int* const known = origins_.of(origin, next);
    // 0 and -0 are one time
    last_ = known ? moments_.of({time + 0.0, *known}, {number, number}) : nullptr;
    if (!last_)
        return 0;
    lastTime_ = time;
    lastOrigin_ = origin;
    last_->last = number;
    return 1;
}

void TimeRuns::addScans(std::vector<Moments::Item>& moments, std::vector<UvScan>& scans) const
{
    std::sort(moments.begin(), moments.end(), [](const auto& a, const auto& b) {
        return std::tie(a.key.time, a.key.origin) < std::tie(b.key.time, b.key.origin);
    });
    std::vector<double> times;
    for (const auto& moment : moments)
        if (times.empty() || moment.key.time != times.back())
            times.push_back(moment.key.time);
    const double pause = longestPause(times);
    // what each origin is in the middle of; several may run beside each other
    struct Running {
        std::size_t scan, time;
    };
    std::map<int, Running> running;
    std::size_t now = 0;
    for (const auto& moment : moments) {
        while (times[now] != moment.key.time)
            ++now;
        const Origin& origin = origins_.items()[static_cast<std::size_t>(moment.key.origin)].key;
        const auto found = running.find(moment.key.origin);
        const int goesOn = found != running.end() && found->second.time + 1 == now &&
                           (times[now] - times[now - 1]) * secondsPerDay <= pause;
        if (!goesOn) {
            running[moment.key.origin] = {scans.size(), now};
            scans.push_back({origin.source, origin.subarray, origin.selection, times[now],
                             times[now], moment.value.first, moment.value.last});
            continue;
        }
        UvScan& scan = scans[found->second.scan];
        found->second.time = now;
        scan.end = times[now];
        scan.first = std::min(scan.first, moment.value.first);
        scan.last = std::max(scan.last, moment.value.last);
    }
}

std::vector<UvScan> TimeRuns::scans() const
{
    std::map<int, std::vector<Moments::Item>> bySubarray;
    for (const auto& moment : moments_.items())
        bySubarray[origins_.items()[static_cast<std::size_t>(moment.key.origin)].key.subarray]
            .push_back(moment);
    std::vector<UvScan> scans;
    for (auto& [subarray, moments] : bySubarray)
        addScans(moments, scans);
    std::stable_sort(scans.begin(), scans.end(), [](const UvScan& a, const UvScan& b) {
        return std::tie(a.start, a.subarray) < std::tie(b.start, b.subarray);
    });
    return scans;
}

}  // namespace pavane
