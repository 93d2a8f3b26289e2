#include "pavane/dialogs/values/TimeSteps.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pavane
{

namespace
{

constexpr double microseconds = 1e6;
constexpr double longestStep = 366.0 * 86400;
constexpr std::size_t mostSteps = std::size_t{1} << 20;
/// Dates in single precision jitter by some milliseconds; so far apart steps may be one, and never
/// farther than a twentieth.
constexpr std::int64_t jitter = 20000;
constexpr std::int64_t jitterPart = 20;
/// The mean of steps is rounded as coarsely as they jitter, but keeps so many parts.
constexpr double leastParts = 100;

/// Seconds of a mean of microseconds that are `spread` apart: a decimal power of them is a unit.
double rounded(double mean, double spread)
{
    double unit = 1;
    while (2 * unit < spread && 10 * unit * leastParts <= mean)
        unit *= 10;
    return std::floor(mean / unit + 0.5) * unit / microseconds;
}

}  // namespace

void TimeSteps::add(double seconds)
{
    if (!(seconds > 0 && seconds < longestStep))
        return;
    const std::int64_t step = std::llround(seconds * microseconds);
    if (step > 0 && (counts_.size() < mostSteps || counts_.contains(step)))
        ++counts_[step];
}

double TimeSteps::commonest() const
{
    std::vector<std::pair<std::int64_t, std::int64_t>> steps(counts_.begin(), counts_.end());
    std::sort(steps.begin(), steps.end());
    std::int64_t most = 0;
    double found = 0;
    std::int64_t count = 0;
    double sum = 0;  // of the steps from `first` to before `end`
    for (std::size_t first = 0, end = 0; first < steps.size(); ++first) {
        const std::int64_t shortest = steps[first].first;
        const std::int64_t reach = shortest + std::min(jitter, shortest / jitterPart);
        for (; end < steps.size() && steps[end].first <= reach; ++end) {
            count += steps[end].second;
            sum += static_cast<double>(steps[end].first) * static_cast<double>(steps[end].second);
        }
        if (count > most) {
            most = count;
            const double mean = sum / static_cast<double>(count);
            found = rounded(mean, static_cast<double>(steps[end - 1].first - shortest));
        }
        count -= steps[first].second;
        sum -= static_cast<double>(shortest) * static_cast<double>(steps[first].second);
    }
    return found;
}

}  // namespace pavane
