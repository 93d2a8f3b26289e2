#include "pavane/axes/ranges/log_ticks.h"

#include "pavane/axes/ranges/ticks.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace pavane
{
namespace
{

constexpr int ticksOfDecade = 9;

/// factor * 10^decade as text reads it, so that a range end written by a user meets its tick.
/// Subnormal numbers included; infinite where no double holds it.
double decadeValue(int decade, int factor = 1)
{
    char text[16] = {};
    char* end = std::to_chars(text, text + sizeof text, factor).ptr;
    *end++ = 'e';
    end = std::to_chars(end, text + sizeof text, decade).ptr;
    double value = 0;
    if (std::from_chars(text, end, value).ec != std::errc() && decade > 0)
        return HUGE_VAL;
    return value;
}

bool isUsable(const TMnMx& range)
{
    return range.min > 0 && range.min < range.max && std::isfinite(range.max);
}

bool isSet(const ALogItem& item) { return item.value != 0; }

ALogItem logItem(int decade, int k)
{
    return {decadeValue(decade, k + 1), static_cast<std::int16_t>(decade),
            static_cast<std::int16_t>(k)};
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

TMnMx withTickAllowance(const TMnMx& range)
{
    if (!isUsable(range))
        return range;
    const TMnMx wider{range.min - tickAllowance * decadeValue(decadeOf(range.min)),
                      range.max + tickAllowance * decadeValue(decadeOf(range.max))};
    return isUsable(wider) ? wider : range;
}

int GetLogArray(AArray<ALogItem>& items, TMnMx& range, ALogItem* below, ALogItem* above)
{
    items.Free();
    ALogItem under;
    ALogItem over;
    const bool usable = isUsable(range);
    const int lastDecade = usable ? decadeOf(range.max) : 0;
    double last = 0;  // subnormal decades repeat values
    for (int d = usable ? decadeOf(range.min) : 1; d <= lastDecade && !isSet(over); ++d) {
        for (int k = 0; k < ticksOfDecade && !isSet(over); ++k) {
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
    if (usable && !isSet(over) && std::isfinite(decadeValue(lastDecade + 1)))
        over = logItem(lastDecade + 1, 0);
    if (below)
        *below = under;
    if (above)
        *above = over;
    return items.count();
}

}  // namespace pavane
