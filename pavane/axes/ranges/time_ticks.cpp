#include "pavane/axes/ranges/time_ticks.h"

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

constexpr double minute = 60;
constexpr double hour = 60 * minute;
constexpr double day = 24 * hour;
constexpr int secondDigits = 9;  ///< significant digits of seconds and days
constexpr int mostDigits = 17;   ///< where steps are finer than those show
constexpr int mostDecimals = 12;
/// Beyond so many seconds the parts of a day are below what a double holds of the time.
constexpr double farthestClock = 1e13;

/// Steps between a second and a day that divide the next unit evenly.
constexpr double clockSteps[] = {1,           2,           5,           10,          15,
                                 20,          30,          minute,      2 * minute,  5 * minute,
                                 10 * minute, 15 * minute, 20 * minute, 30 * minute, hour,
                                 2 * hour,    3 * hour,    4 * hour,    6 * hour,    12 * hour};

/// The first step that is at least `wanted` seconds less a fifth.
double clockStep(double wanted)
{
    for (const double step : clockSteps)
        if (step >= 0.8 * wanted)
            return step;
    return day;
}

/// 1, 2 or 5 times a power of ten days, in seconds.
double dayStep(double wanted)
{
    const double unit = powerOfTen(decimalPower(wanted / day, 1, 1));
    for (const int factor : {1, 2, 5})
        if (factor * unit * day >= 0.8 * wanted)
            return std::max(1.0, factor * unit) * day;
    return std::max(1.0, 10 * unit) * day;
}

struct TimeSteps {
    double first = 0;
    double step = 1;
    int intervals = -1;
};

/// Puts the ends in order and chooses steps between them.
TimeSteps chooseSteps(double& low, double& high, int n)
{
    TimeSteps decimal;
    int power = 0;
    int nPlus = 1;
    int nMinus = 2;
    decimal.intervals = n;
    chooseTicks(low, high, decimal.intervals, nPlus, nMinus, decimal.first, decimal.step, power, 0);
    if (low > high)
        std::swap(low, high);
    const double wanted = (high - low) / std::clamp(n, 1, mostIntervals);
    if (wanted < 0.7 || std::max(std::fabs(low), std::fabs(high)) > farthestClock)
        return decimal;
    TimeSteps steps;
    steps.step = wanted > 0.7 * day ? dayStep(wanted) : clockStep(wanted);
    const double firstStep = std::ceil(low / steps.step - tickAllowance);
    steps.first = firstStep * steps.step;
    steps.intervals = truncated(std::floor(high / steps.step + tickAllowance) - firstStep);
    return steps;
}

enum class Form { seconds, clock, clockWithSeconds, days };

Form formOf(double reach, double step)
{
    if (reach > farthestClock || reach < minute)
        return Form::seconds;
    if (std::fmod(step, day) == 0)
        return Form::days;
    return std::fmod(step, minute) == 0 ? Form::clock : Form::clockWithSeconds;
}

const char* headerOf(Form form, bool withDays)
{
    switch (form) {
    case Form::seconds:
        return "[s]";
    case Form::days:
        return "[days]";
    case Form::clock:
        return withDays ? "[d h:m]" : "[h:m]";
    case Form::clockWithSeconds:
        return withDays ? "[d h:m:s]" : "[h:m:s]";
    }
    return "";
}

CString twoDigits(int value)
{
    const CString text = std::to_string(value);
    return text.size() < 2 ? "0" + text : text;
}

/// `value` with up to `decimals` digits after the point, without zeros at the end.
CString shortDecimals(double value, int decimals)
{
    CString text = nValToStr(value, decimals);
    if (decimals > 0)
        text.erase(text.find_last_not_of('0') + 1);
    if (!text.empty() && text.back() == '.')
        text.pop_back();
    return text;
}

/// "-3d 12:30:05.5"; days only when `withDays`, seconds to `decimals` unless that is negative.
CString clockText(double time, bool withDays, int decimals)
{
    // Rounded as a whole first, so that no part shows 60.
    const double scale = powerOfTen(std::max(decimals, 0));
    double rest = std::fabs(time);
    if (rest * scale < 9e15)
        rest = std::round(rest * scale) / scale;
    const double days = withDays ? std::floor(rest / day) : 0;
    rest -= days * day;
    const int hours = truncated(rest / hour);
    rest -= hours * hour;
    const int minutes = truncated(rest / minute);
    rest -= minutes * minute;
    CString text = time < 0 ? "-" : "";
    if (withDays)
        text += valToStr(days, secondDigits) + "d ";
    text += twoDigits(hours) + ":" + twoDigits(minutes);
    if (decimals >= 0)
        text += (rest < 10 ? ":0" : ":") + shortDecimals(std::max(rest, 0.0), decimals);
    return text;
}

}  // namespace

int chooseTimeTicks(TMnMx range, int n, AArray<double>& ticks, AObjArray<CString>& labels,
                    CString* header)
{
    ticks.Free();
    labels.Free();
    const TimeSteps steps = chooseSteps(range.min, range.max, n);
    const double reach = std::max(std::fabs(range.min), std::fabs(range.max));
    const Form form = formOf(reach, steps.step);
    const bool withDays = reach > day;  // a single day ends at 24:00
    // As many digits as tell one step from the next.
    const int decimals = std::clamp(2 - decadeOf(steps.step), 0, mostDecimals);
    const int digits = std::clamp(decadeOf(reach) + 1 + decimals, secondDigits, mostDigits);
    for (int i = 0; i <= steps.intervals; ++i) {
        const double time = tickValue(steps.first, steps.step, i);
        ticks.Add(time);
        if (form == Form::days)
            labels.Add(valToStr(time / day, secondDigits));
        else if (form == Form::seconds)
            labels.Add(valToStr(time, digits));
        else
            labels.Add(clockText(time, withDays, form == Form::clock ? -1 : decimals));
    }
    if (header)
        *header = headerOf(form, withDays);
    return ticks.count();
}

}  // namespace pavane
