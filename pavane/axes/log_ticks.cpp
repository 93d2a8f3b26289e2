#include "pavane/axes/log_ticks.h"

#include "tessel/rounding.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace pavane
{
namespace
{

constexpr int ticksOfDecade = 9;

/// 10^decade, correctly rounded; subnormal numbers included, infinite above 308.
double decadeValue(int decade)
{
    if (decade > 308)
        return HUGE_VAL;
    char text[16] = "1e";
    const auto end = std::to_chars(text + 2, text + sizeof text, decade).ptr;
    double value = 0;
    std::from_chars(text, end, value);
    return value;
}

/// 10^d + k (10^(d+1) - 10^d) / 9; in the last decade, whose next power is no double, (k + 1) 10^d.
ALogItem logItem(int decade, int k)
{
    const double start = decadeValue(decade);
    const double next = decadeValue(decade + 1);
    const double value =
        std::isfinite(next) ? start + k * (next - start) / ticksOfDecade : (k + 1) * start;
    return {value, static_cast<std::int16_t>(decade), static_cast<std::int16_t>(k)};
}

}  // namespace

int decadeOf(double value)
{
    int decade = truncated(std::floor(std::log10(value)));
    if (decadeValue(decade) > value)
        --decade;
    else if (decadeValue(decade + 1) <= value)
        ++decade;
    return decade;
}

int GetLogArray(AArray<ALogItem>& items, TMnMx& range, ALogItem* below, ALogItem* above)
{
    items.Free();
    ALogItem under;
    ALogItem over;
    const bool usable = range.min > 0 && range.min < range.max && std::isfinite(range.max);
    const int lastDecade = usable ? decadeOf(range.max) : 0;
    double last = 0;  // subnormal decades repeat values
    for (int d = usable ? decadeOf(range.min) : 1; d <= lastDecade && !over.value; ++d) {
        for (int k = 0; k < ticksOfDecade && !over.value; ++k) {
            const ALogItem item = logItem(d, k);
            if (!(item.value > last) || !std::isfinite(item.value))
                continue;
            last = item.value;
            if (item.value < range.min)
                under = item;
            else if (item.value > range.max)
                over = item;
            else
                items.Add(item);
        }
    }
    if (usable && !over.value && std::isfinite(decadeValue(lastDecade + 1)))
        over = logItem(lastDecade + 1, 0);
    if (below)
        *below = under;
    if (above)
        *above = over;
    return items.count();
}

}  // namespace pavane
