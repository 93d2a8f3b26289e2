#include "pavane/axes/TickSet.h"

#include "pavane/axes/AB2DAxis.h"
#include "pavane/axes/axis_titles.h"
#include "pavane/axes/ranges/decimal_power.h"
#include "pavane/axes/ranges/log_ticks.h"
#include "pavane/axes/ranges/ticks.h"
#include "pavane/axes/ranges/time_ticks.h"
#include "tessel/rounding.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace pavane
{
namespace
{

/// More ticks than these between two labels, or in all, are a smear.
constexpr int mostMinorTicks = 400;

/// Parts that a step divides into, each a round number: 0.2 into four of 0.05. 1 for none.
int roundParts(double step)
{
    const double mantissa = step / powerOfTen(decadeOf(step));
    struct Division {
        double mantissa;
        int parts;
    };
    constexpr Division divisions[] = {{1, 5}, {1.5, 3}, {2, 4}, {2.5, 5}, {3, 3},
                                      {4, 4}, {5, 5},   {6, 3}, {7.5, 3}, {8, 4}};
    for (const Division& d : divisions)
        if (std::fabs(mantissa - d.mantissa) < 1e-6)
            return d.parts;
    return 1;
}

/// Parts that a step of seconds divides into so that each is a whole number of clock units.
int clockParts(double step)
{
    if (step < 60)
        return roundParts(step);
    constexpr double minute = 60;
    constexpr double hour = 3600;
    constexpr double day = 24 * hour;
    const double unit = step <= hour ? minute : step <= day ? hour : day;
    if (step == minute || step == hour || step == day)
        return 4;  // quarters of an hour and of a minute, six hours of a day
    const double count = step / unit;
    for (const int parts : {5, 6, 4, 3, 2})
        if (std::fmod(count, parts) == 0)
            return parts;
    return 1;
}

/// Fills the gaps between major ticks, and beside the outermost ones, with `parts` to a step.
void addMinorTicks(TickSet& set, double first, double step, const TMnMx& range, int parts)
{
    if (parts < 2 || set.major.empty())
        return;
    const double part = step / parts;
    const double before = std::trunc((first - range.min) / part + tickAllowance);
    const double behind = std::trunc((range.max - first) / part + tickAllowance);
    if (!(before + behind <= mostMinorTicks))
        return;  // also for an end that is not finite
    for (int i = -truncated(before); i <= truncated(behind); ++i)
        if (i % parts != 0)
            set.minor.push_back(tickValue(first, part, i));
}

/// "10" with a raised exponent, or the plain number where it is as short.
CString decadeLabel(int exponent, int factor, bool plain)
{
    if (plain)
        return valToStr(factor * powerOfTen(exponent), 6);
    static constexpr const char* raised[] = {"\u2070", "\u00b9", "\u00b2", "\u00b3", "\u2074",
                                             "\u2075", "\u2076", "\u2077", "\u2078", "\u2079"};
    CString text = factor == 1 ? "10" : std::to_string(factor) + "\u00b710";
    for (const char digit : std::to_string(exponent))
        text += digit == '-' ? "\u207b" : raised[digit - '0'];
    return text;
}

/// Every how many decades a label stands, so that there are about `intervals` of them.
int labelledDecades(int decades, int intervals)
{
    for (const int every : {1, 2, 3, 5, 10, 20, 30, 50, 100})
        if (decades <= every * intervals)
            return every;
    return 200;
}

/// Which of the ticks 1 to 9 of a decade carry a label.
bool isLabelled(const ALogItem& item, bool denselyLabelled, int everyDecades)
{
    if (item.index == 0)
        return item.exponent % everyDecades == 0;
    return denselyLabelled && (item.index == 1 || item.index == 4);
}

}  // namespace

TickSet linearTicks(const TickWish& wish)
{
    TickSet set;
    TMnMx range = wish.range;
    int n = wish.intervals;
    int nPlus = wish.nPlus;
    int nMinus = wish.nMinus;
    double first = 0;
    double step = 0;
    int power = 0;
    double divisor = 1;
    // A tick or two at least: very few wanted intervals may miss the range.
    for (int wanted = wish.intervals; wanted <= wish.intervals + 3; ++wanted) {
        range = wish.range;
        n = wanted;
        nPlus = wish.nPlus;
        nMinus = wish.nMinus;
        divisor = AB2DAxis::getAxisParam(wish.name, set.title, n, nPlus, nMinus, range.min,
                                         range.max, first, step, power);
        if (n >= 1)
            break;
    }
    for (int i = 0; i <= n; ++i) {
        const double value = tickValue(first, step, i);
        set.major.push_back({value, nValToStr(value / divisor, nMinus)});
    }
    if (wish.minor && n >= 1 && step > 0 && std::isfinite(step))
        addMinorTicks(set, first, step, range, roundParts(step));
    return set;
}

TickSet logarithmicTicks(const TickWish& wish)
{
    AArray<ALogItem> items;
    TMnMx range = withTickAllowance(wish.range);
    const int count = GetLogArray(items, range, nullptr, nullptr);
    if (count < 2)
        return linearTicks(wish);
    const bool dense = std::log10(range.max) - std::log10(range.min) < 2;
    const int decades = items(count - 1).exponent - items(0).exponent;
    const int every = labelledDecades(decades, std::max(wish.intervals, 1));
    const int minorEvery = every <= 5 ? 1 : every / 5;
    // Plain numbers as long as none is longer than the power of ten would be.
    const bool plain = items(0).exponent >= -3 && items(count - 1).exponent <= 4;
    TickSet set;
    for (int i = 0; i < count; ++i) {
        const ALogItem& item = items(i);
        if (isLabelled(item, dense, every))
            set.major.push_back({item.value, decadeLabel(item.exponent, item.index + 1, plain)});
        else if (wish.minor && (every == 1 || (item.index == 0 && item.exponent % minorEvery == 0)))
            set.minor.push_back(item.value);
    }
    if (set.major.size() < 2)
        return linearTicks(wish);
    if (set.minor.size() > mostMinorTicks)
        set.minor.clear();
    set.title =
        hasPrefixMarker(wish.name) ? withPrefix(wish.name, {}) : withMultiplier(wish.name, {});
    return set;
}

TickSet timeTicks(const TickWish& wish)
{
    TickSet set;
    AArray<double> times;
    AObjArray<CString> labels;
    CString unit;
    for (int wanted = wish.intervals; wanted <= wish.intervals + 3; ++wanted)
        if (chooseTimeTicks(wish.range, wanted, times, labels, &unit) >= 2)
            break;
    for (int i = 0; i < times.count(); ++i)
        set.major.push_back({times(i), labels(i)});
    if (wish.minor && times.count() >= 2) {
        const double step = times(1) - times(0);
        addMinorTicks(set, times(0), step, wish.range, step > 0 ? clockParts(step) : 1);
    }
    set.title = wish.name;
    if (!set.title.empty() && set.title.find('[') == CString::npos)
        set.title += " " + unit;
    return set;
}

}  // namespace pavane
