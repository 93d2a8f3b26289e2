#include "pavane/axes/maps/cells/zscale.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace pavane
{

namespace
{

constexpr double farDeviations = 2.5;
constexpr int mostFits = 5;
constexpr int leastLeft = 5;
/// About a far value so large a part of all is left out too.
constexpr int partLeftOut = 100;

struct Line {
    double slope = 0;
    double atMiddle = 0;
    double middle = 0;
    double at(double x) const { return atMiddle + slope * (x - middle); }
};

/// The straight line of least squares through the values that count.
Line lineThrough(const std::vector<float>& values, const std::vector<char>& isFar)
{
    Line line;
    double n = 0;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!isFar[i]) {
            line.middle += static_cast<double>(i);
            line.atMiddle += static_cast<double>(values[i]);
            ++n;
        }
    line.middle /= n;
    line.atMiddle /= n;
    double products = 0, squares = 0;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!isFar[i]) {
            const double x = static_cast<double>(i) - line.middle;
            products += x * (static_cast<double>(values[i]) - line.atMiddle);
            squares += x * x;
        }
    line.slope = squares > 0 ? products / squares : 0;
    return line;
}

/// How far the values that count scatter about the line.
double scatter(const std::vector<float>& values, const std::vector<char>& isFar, const Line& line)
{
    double n = 0, sum = 0, squares = 0;
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!isFar[i]) {
            const double away = static_cast<double>(values[i]) - line.at(static_cast<double>(i));
            sum += away;
            squares += away * away;
            ++n;
        }
    const double mean = sum / n;
    return std::sqrt(std::max(0.0, squares / n - mean * mean));
}

/// A far value takes the values about it along, of an odd number one more after than before it.
std::vector<char> withNeighbours(const std::vector<char>& isFar)
{
    const auto count = static_cast<std::int64_t>(isFar.size());
    const std::int64_t grown = std::max<std::int64_t>(1, count / partLeftOut);
    const std::int64_t before = (grown - 1) / 2, after = grown / 2;
    std::vector<char> all(isFar.size());
    for (std::int64_t i = 0; i < count; ++i)
        if (isFar[static_cast<std::size_t>(i)])
            std::fill(all.begin() + std::max<std::int64_t>(0, i - before),
                      all.begin() + std::min(count, i + after + 1), 1);
    return all;
}

}  // namespace

TMnMx zscaleOf(std::vector<float> values, double contrast)
{
    if (values.empty())
        return {0, 0};
    std::sort(values.begin(), values.end());
    const auto count = static_cast<std::int64_t>(values.size());
    TMnMx range{static_cast<double>(values.front()), static_cast<double>(values.back())};
    const std::int64_t least = std::max<std::int64_t>(leastLeft, count / 2);
    std::vector<char> isFar(values.size());
    Line line;
    std::int64_t left = count, before = count + 1;
    for (int fit = 0; fit < mostFits && left < before && left >= least; ++fit) {
        line = lineThrough(values, isFar);
        const double most = farDeviations * scatter(values, isFar, line);
        for (std::size_t i = 0; i < values.size(); ++i)
            if (std::fabs(static_cast<double>(values[i]) - line.at(static_cast<double>(i))) > most)
                isFar[i] = 1;
        isFar = withNeighbours(isFar);
        before = left;
        left = std::count(isFar.begin(), isFar.end(), 0);
    }
    if (left < least)
        return range;
    const double slope = contrast > 0 ? line.slope / contrast : line.slope;
    const auto middle = static_cast<std::size_t>(count / 2);
    // to the precision of the values, as they are
    const double median =
        count % 2
            ? static_cast<double>(values[middle])
            : static_cast<double>(static_cast<float>(
                  (static_cast<double>(values[middle - 1]) + static_cast<double>(values[middle])) /
                  2));
    const auto centre = static_cast<double>((count - 1) / 2);
    range.min = std::max(range.min, median - (centre - 1) * slope);
    range.max = std::min(range.max, median + (static_cast<double>(count) - centre) * slope);
    return range;
}

}  // namespace pavane
