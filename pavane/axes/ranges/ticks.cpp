#include "pavane/axes/ranges/ticks.h"

#include "pavane/axes/ranges/decimal_power.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{
namespace
{

constexpr double farthestEnd = 1e306;        ///< sums of two such ends are finite
constexpr double leastSpan = 1e-290;         ///< a step of it is still a normal number
constexpr double leastRelativeSpan = 1e-11;  ///< of the larger end: steps well above its rounding
/// Least step in parts of the larger end, so that rounding moves a tick by at most 1e-3 of a step.
constexpr double leastRelativeStep = 4e-13;
/// The two ends in ascending order.
struct OrderedEnds {
    double low = 0;
    double high = 0;

    double larger() const { return std::max(std::fabs(low), std::fabs(high)); }
    bool tooFarOrTooNarrow() const
    {
        const double span = high - low;
        return larger() > farthestEnd || span < leastSpan || span < leastRelativeSpan * larger();
    }
};

/// Repairs the range, which stays in the order that it came in.
OrderedEnds repairedEnds(double& min, double& max)
{
    if (!std::isfinite(min) || !std::isfinite(max)) {
        min = -1;
        max = 1;
    }
    repairEqualEnds(min, max);
    return {std::min(min, max), std::max(min, max)};
}

struct TickSpan {
    double first = 0;
    double step = 0;
    int intervals = 0;
};

int limitedIntervals(int wanted, const OrderedEnds& ends)
{
    const double most = (ends.high - ends.low) / (leastRelativeStep * ends.larger());
    return std::clamp(wanted, 1, std::clamp(truncated(most), 1, mostIntervals));
}

/// Whole steps from 0 to `distance`, which is not negative.
int wholeSteps(double distance, double step) { return truncated(distance / step + tickAllowance); }

/// First tick and count of multiples of `step` inside the range.
TickSpan placeTicks(const OrderedEnds& ends, double step)
{
    if (ends.low <= 0 && ends.high >= 0) {
        const int below = wholeSteps(-ends.low, step);
        return {tickValue(0, step, -below), step, below + wholeSteps(ends.high, step)};
    }
    const double last = std::floor(ends.high / step + tickAllowance);
    const double inside = (last * step - ends.low) / step + tickAllowance;
    // -1 when the only multiple about is below the range
    const int intervals = inside < 0 ? -1 : truncated(inside);
    return {(last - intervals) * step, step, intervals};
}

/// Ticks at the two ends of a range that leaves no room for others.
double ticksAtEnds(const OrderedEnds& ends, int& n, int& nPlus, int& nMinus, double& first,
                   double& step, int& power, int engineering)
{
    n = 1;
    first = ends.low;
    step = ends.high - ends.low;
    if (!std::isfinite(step))
        step = ends.high * 0.5 - ends.low * 0.5;
    power = engineering ? engineeringPower(ends.low, ends.high, nPlus, nMinus)
                        : labelPower(ends.low, ends.high, nPlus, nMinus);
    const double divisor = powerOfTen(power);
    constexpr int mostDecimals = 17;  // beyond them a double repeats itself
    const double shown = step / divisor;
    const int needed = shown > 0 ? truncated(std::ceil(3 - std::log10(shown))) : mostDecimals;
    nMinus = std::clamp(needed, 0, mostDecimals);
    return divisor;
}

/// Step in units: 1 to 5, or a multiple of 5. `r` is the span of one wanted interval in units.
double wholeUnits(double r, bool& evenFives)
{
    evenFives = false;
    if (!(r > 5.0))
        return std::trunc(r + 0.6);
    const double fives = std::trunc(r / 5.0 + 0.6);
    evenFives = std::fmod(fives, 2.0) == 0;
    return fives * 5;
}

int limitedBudget(int digits) { return std::clamp(digits, 0, greatestPower); }

}  // namespace

double tickValue(double first, double step, int i)
{
    const double value = first + i * step;
    return std::fabs(value) <= 1e-9 * std::fabs(step) ? 0.0 : value;
}

double chooseTicks(double& min, double& max, int& nIntervals, int& nPlus, int& nMinus,
                   double& first, double& step, int& power, int engineering)
{
    const OrderedEnds ends = repairedEnds(min, max);
    nPlus = limitedBudget(nPlus);
    nMinus = limitedBudget(nMinus);
    if (ends.tooFarOrTooNarrow())
        return ticksAtEnds(ends, nIntervals, nPlus, nMinus, first, step, power, engineering);

    const int wanted = limitedIntervals(nIntervals, ends);
    const double span = ends.high - ends.low;
    const int digits = nMinus;
    double unit = 1;
    for (;;) {
        const int unitPower = greaterPower(min, max, nPlus, nMinus);
        unit = powerOfTen(unitPower);
        if (span / unit / wanted >= 1 || unitPower <= leastPower)
            break;
        ++nPlus;
        nMinus = std::max(nMinus - 1, 0);
    }
    nPlus += nMinus - digits;

    bool evenFives = false;
    const double units = std::max(1.0, wholeUnits(span / unit / wanted, evenFives));
    if (evenFives)
        ++nMinus;  // a multiple of ten units: its last digit is always 0
    int decimals = digits;
    power = engineering ? engineeringPower(min, max, nPlus, decimals)
                        : labelPower(min, max, nPlus, decimals);
    nMinus = std::max(0, decimals - nMinus);

    const TickSpan ticks = placeTicks(ends, units * unit);
    first = ticks.first;
    step = ticks.step;
    nIntervals = ticks.intervals;
    return powerOfTen(power);
}

double chooseTicksForPower(double& min, double& max, int& nIntervals, int& nPlus, int& nMinus,
                           double& first, double& step, int power)
{
    const OrderedEnds ends = repairedEnds(min, max);
    nPlus = limitedBudget(nPlus);
    nMinus = limitedBudget(nMinus);
    power = std::clamp(power, leastPower, greatestPower);
    if (ends.tooFarOrTooNarrow()) {
        int own = 0;
        ticksAtEnds(ends, nIntervals, nPlus, nMinus, first, step, own, 0);
        nMinus = std::clamp(nMinus + power - own, 0, greatestPower);
        return powerOfTen(power);
    }
    const int wanted = limitedIntervals(nIntervals, ends);
    const double span = ends.high - ends.low;
    while (span / powerOfTen(power - nMinus) / wanted < 1 && power - nMinus > leastPower) {
        nPlus = std::max(nPlus - 1, 0);
        ++nMinus;
    }
    const double unit = powerOfTen(power - nMinus);
    bool evenFives = false;
    const double units = std::max(1.0, wholeUnits(span / unit / wanted, evenFives));
    const TickSpan ticks = placeTicks(ends, units * unit);
    first = ticks.first;
    step = ticks.step;
    nIntervals = ticks.intervals;
    return powerOfTen(power);
}

}  // namespace pavane
