#include "pavane/axes/maps/scale_ticks.h"

#include "pavane/axes/AB2DAxis.h"
#include "pavane/axes/ranges/decimal_power.h"
#include "pavane/axes/ranges/log_ticks.h"
#include "pavane/axes/ranges/ticks.h"
#include "tessel/rounding.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr int levelDigits = 3;
constexpr int tickDigits = 6;

/// What A2DAxis would choose for the range, with its title.
struct LinearTicks {
    int count = 0;
    int decimals = 0;
    double first = 0;
    double step = 0;
    double divisor = 1;
    CString title;

    LinearTicks(const CString& name, double low, double high, int intervals) : count(intervals)
    {
        int whole = 1;
        int power = 0;
        decimals = 2;
        divisor = AB2DAxis::getAxisParam(name, title, count, whole, decimals, low, high, first,
                                         step, power);
        title.erase(0, title.find_first_not_of(' '));  // before a power or a unit alone
    }
};

void add(ScaleTicks& ticks, const MapScale& scale, double value, const CString& label)
{
    ticks.ticks.push_back({value, scale.position(value), label});
}

void addLogarithmic(ScaleTicks& ticks, const MapScale& scale, double divisor)
{
    AArray<ALogItem> items;
    TMnMx range = withTickAllowance({scale.low(), scale.high()});
    GetLogArray(items, range, nullptr, nullptr);
    const int few = scale.high() / scale.low() < 100;
    for (int i = 0; i < items.count(); ++i) {
        const int factor = items(i).index + 1;
        if (factor == 1 || (few && (factor == 2 || factor == 5)))
            add(ticks, scale, items(i).value, valToStr(items(i).value / divisor, levelDigits));
    }
}

/// The value nearest to `value` with as few digits as tell it from others `distance` away.
double roundedValue(double value, double distance)
{
    if (!(distance > 0))
        return value;
    const double unit = powerOfTen(truncated(std::floor(std::log10(distance / 2))));
    return std::round(value / unit) * unit;
}

void addEqualized(ScaleTicks& ticks, const MapScale& scale, double divisor, int intervals)
{
    for (int i = 0; i <= intervals; ++i) {
        const double place = static_cast<double>(i) / intervals;
        const double value = scale.value(place);
        const double distance = std::min(value - scale.value(place - 1.0 / intervals) +
                                             (i ? 0 : scale.high() - scale.low()),
                                         scale.value(place + 1.0 / intervals) - value +
                                             (i < intervals ? 0 : scale.high() - scale.low()));
        const double rounded = roundedValue(value, distance);
        if (rounded >= scale.low() && rounded <= scale.high() &&
            (ticks.ticks.empty() || rounded > ticks.ticks.back().value))
            add(ticks, scale, rounded, valToStr(rounded / divisor, tickDigits));
    }
}

}  // namespace

ScaleTicks scaleTicks(const MapScale& scale, const CString& name, int intervals)
{
    const int wanted = std::max(1, intervals);
    const LinearTicks linear(name, scale.low(), scale.high(), wanted);
    ScaleTicks ticks;
    ticks.title = linear.title;
    if (scale.kind() == MapScaleKind::logarithmic)
        addLogarithmic(ticks, scale, linear.divisor);
    if (scale.kind() == MapScaleKind::equalized)
        addEqualized(ticks, scale, linear.divisor, wanted);
    if (ticks.ticks.size() > 1)
        return ticks;
    ticks.ticks.clear();
    for (int i = 0; i <= linear.count; ++i) {
        const double value = tickValue(linear.first, linear.step, i);
        add(ticks, scale, value, nValToStr(value / linear.divisor, linear.decimals));
    }
    return ticks;
}

ScaleTicks valueTicks(const std::vector<double>& values, double low, double high,
                      const CString& name)
{
    const LinearTicks linear(name, low, high, 5);
    ScaleTicks ticks;
    ticks.title = linear.title;
    for (const double value : values) {
        const double place = values.size() > 1 ? static_cast<double>(ticks.ticks.size()) /
                                                     static_cast<double>(values.size() - 1)
                                               : 0.5;
        ticks.ticks.push_back({value, place, valToStr(value / linear.divisor, levelDigits)});
    }
    return ticks;
}

}  // namespace pavane
