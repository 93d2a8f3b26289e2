#include "pavane/axes/multi/period_ticks.h"

#include "pavane/axes/axis_titles.h"
#include "pavane/axes/ranges/ticks.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

/// A step as a part of the period, and what divides it into round parts in turn.
struct Part {
    double ofPeriod;
    int minor;
};
constexpr Part parts[] = {{1.0 / 24, 3}, {1.0 / 12, 3}, {1.0 / 8, 3}, {1.0 / 4, 3}, {1.0 / 2, 4},
                          {1, 4},        {2, 4},        {5, 5},       {10, 5},      {20, 4},
                          {50, 5},       {100, 5},      {200, 4},     {500, 5},     {1000, 5}};

/// Digits behind the point that write `step` and so all its multiples; at most `most`.
int digitsOf(double step, int most)
{
    int digits = 0;
    for (double scaled = step; digits < most; ++digits, scaled *= 10)
        if (std::fabs(scaled - std::round(scaled)) < 1e-9 * scaled)
            break;
    return digits;
}

CString plainTitle(const CString& name)
{
    return hasPrefixMarker(name) ? withPrefix(name, {}) : withMultiplier(name, {});
}

}  // namespace

TickSet periodTicks(const TickWish& wish, double period)
{
    const double span = wish.range.max - wish.range.min;
    const Part* chosen = nullptr;
    for (const Part& part : parts) {
        chosen = &part;
        if (span <= part.ofPeriod * period * (wish.intervals + tickAllowance))
            break;
    }
    const double step = chosen->ofPeriod * period;
    constexpr double mostTicks = 1e4;
    constexpr double mostSteps = 1e12;  // from 0; beyond it steps are lost in rounding
    const double far = std::max(std::fabs(wish.range.min), std::fabs(wish.range.max));
    if (!(span > 0) || !(span / step < mostTicks) || !(far / step < mostSteps) ||
        (chosen == parts && span < 2 * step))
        return linearTicks(wish);
    TickSet set;
    set.title = plainTitle(wish.name);
    constexpr int mostDigits = 4;
    const int digits = digitsOf(step, mostDigits);
    const double minor = step / chosen->minor;
    const double first = std::ceil(wish.range.min / minor - tickAllowance);
    const int count = static_cast<int>(std::floor(wish.range.max / minor + tickAllowance) - first);
    for (int k = 0; k <= count; ++k) {
        const double i = first + k;
        if (std::fmod(i, chosen->minor) == 0)
            set.major.push_back({i * minor, nValToStr(i * minor + 0.0, digits)});
        else if (wish.minor)
            set.minor.push_back(i * minor);
    }
    return set;
}

}  // namespace pavane
