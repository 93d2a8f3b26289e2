#include "pavane/calibration/flags/flag_points.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>

namespace pavane
{

namespace
{

/// Days; what times jitter by, so that each point is within its line.
constexpr double leastHalf = 5e-4 / 86400;
/// Times that are no farther from each other, in integrations, follow on.
constexpr double farthestNext = 1.5;

using Where = std::tuple<int, int, int, int, int>;  // subarray, antennas, polarisation, source
constexpr int allIfs = -1;

}  // namespace

std::vector<FlagLine> flagLinesOf(const std::vector<FlagPoint>& points, const FlagScope& scope,
                                  double integration)
{
    const double half =
        std::isfinite(integration) ? std::max(integration / 2, leastHalf) : leastHalf;
    std::map<std::pair<Where, int>, std::vector<double>> times;
    for (const FlagPoint& point : points) {
        if (!std::isfinite(point.time))
            continue;
        int first = std::min(point.first, point.second);
        int second = std::max(point.first, point.second);
        if (scope.antennas == FlagScope::Antennas::all)
            first = second = 0;
        if (scope.antennas == FlagScope::Antennas::antenna) {
            if (first != scope.antenna && second != scope.antenna)
                continue;
            first = scope.antenna;
            second = 0;
        }
        const Where where{point.subarray, first, second, scope.isAllHands ? 0 : point.stokes,
                          point.source};
        times[{where, scope.isAllIfs || point.ifIndex < 0 ? allIfs : point.ifIndex}].push_back(
            point.time);
    }
    // of a place and a span of time its IFs
    std::map<std::tuple<double, double, Where>, std::vector<int>> spans;
    for (auto& [key, list] : times) {
        std::sort(list.begin(), list.end());
        for (std::size_t i = 0; i < list.size();) {
            std::size_t end = i + 1;
            while (end < list.size() && list[end] - list[end - 1] <= 2 * half * farthestNext)
                ++end;
            spans[{list[i] - half, list[end - 1] + half, key.first}].push_back(key.second);
            i = end;
        }
    }
    std::vector<FlagLine> lines;
    for (auto& [key, ifs] : spans) {
        const auto& [start, end, where] = key;
        FlagLine line;
        line.isRestore = scope.isRestore;
        std::tie(line.subarray, line.first, line.second, line.stokes, line.source) = where;
        line.start = start;
        line.end = end;
        std::sort(ifs.begin(), ifs.end());
        if (ifs.front() != allIfs)
            line.ifs = std::move(ifs);
        lines.push_back(std::move(line));
    }
    return lines;
}

}  // namespace pavane
