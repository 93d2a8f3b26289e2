#include "tessel/sky_steps.h"

#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

namespace pavane
{

namespace
{

constexpr double minute = 60;
constexpr double hour = 3600;
/// The finest step, in seconds: finer ones are lost in the rounding of degrees.
constexpr int mostDecimals = 9;
constexpr int mostDegreeDecimals = 12;
constexpr double farthestLatitude = 89.99;

struct Round {
    double step = 1;
    int decimals = 0;
};

/// 1, 2 or 5 times a power of ten, not below `least`.
Round decimalStep(double least, int mostDigits)
{
    const double floor = std::pow(10.0, -mostDigits);
    const double wanted = std::max(least, floor);
    int power = static_cast<int>(std::floor(std::log10(wanted)));
    for (;; ++power)
        for (const double digit : {1.0, 2.0, 5.0}) {
            // dividing keeps the step the nearest double to what is written
            const double step =
                power < 0 ? digit / std::pow(10.0, -power) : digit * std::pow(10.0, power);
            if (step >= wanted * (1 - 1e-9))
                return {step, std::max(0, -power)};
        }
}

template <std::size_t n>
double fromList(const double (&list)[n], double least)
{
    const auto* const found = std::find_if(std::begin(list), std::end(list),
                                           [least](double s) { return s >= least * (1 - 1e-9); });
    return found == std::end(list) ? list[n - 1] : *found;
}

/// Not below `least` seconds, in hours or degrees of so many seconds.
Round sexagesimalStep(double least, int inHours)
{
    static constexpr double below[] = {
        1,          2,          5,           10,          15,          20,          30,  minute,
        2 * minute, 5 * minute, 10 * minute, 15 * minute, 20 * minute, 30 * minute, hour};
    static constexpr double hours[] = {hour, 2 * hour, 3 * hour, 6 * hour, 12 * hour};
    static constexpr double degrees[] = {hour,      2 * hour,  5 * hour,  10 * hour,
                                         15 * hour, 30 * hour, 45 * hour, 90 * hour};
    if (least <= 0.5)
        return decimalStep(least, mostDecimals);
    if (least <= hour)
        return {fromList(below, least), 0};
    return {inHours ? fromList(hours, least) : fromList(degrees, least), 0};
}

double secondsPerDegree(SkyNumbers numbers) { return numbers == SkyNumbers::hours ? 240 : hour; }

std::string padded(long long number)
{
    const std::string text = std::to_string(number);
    return text.size() < 2 ? "0" + text : text;
}

/// Whole units of the last decimal, split into the parts that the step needs.
SkyText sexagesimalText(const SkySteps& steps, double seconds, int isLatitude)
{
    static constexpr const char* hourMarks[] = {"h", "m", "s"};
    static constexpr const char* arcMarks[] = {"\u00b0", "\u2032", "\u2033"};
    const int inHours = steps.numbers == SkyNumbers::hours;
    const auto* const marks = inHours ? hourMarks : arcMarks;
    const double stepSeconds = steps.step * secondsPerDegree(steps.numbers);
    const auto isWhole = [stepSeconds](double unit) {
        return std::fabs(std::remainder(stepSeconds, unit)) < 1e-6 * stepSeconds;
    };
    const double scale = std::pow(10.0, steps.decimals);
    const auto turn = static_cast<long long>((inHours ? 24 : 360) * hour * scale);
    auto units = std::llround(std::fabs(seconds) * scale);
    const int isNegative = seconds < 0 && units != 0;
    if (!isLatitude)
        units = isNegative ? (turn - units % turn) % turn : units % turn;
    const auto perMinute = static_cast<long long>(minute * scale);
    const long long minutes = units / perMinute;
    SkyText text;
    text.parts[0] = isLatitude ? (isNegative ? "\u2212" : "+") : "";
    text.parts[0] += (inHours || isLatitude ? padded(minutes / 60) : std::to_string(minutes / 60));
    text.parts[0] += marks[0];
    text.count = isWhole(hour) ? 1 : isWhole(minute) ? 2 : 3;
    if (text.count > 1)
        text.parts[1] = padded(minutes % 60) + marks[1];
    if (text.count > 2) {
        const std::string rest =
            nValToStr(static_cast<double>(units % perMinute) / scale, steps.decimals);
        text.parts[2] = (rest.find('.') == 1 || rest.size() == 1 ? "0" : "") + rest + marks[2];
    }
    return text;
}

}  // namespace

std::string SkyText::whole() const { return parts[0] + parts[1] + parts[2]; }

std::string SkyText::after(const SkyText& before) const
{
    std::size_t first = 0;
    while (first + 1 < count && first < before.count && parts[first] == before.parts[first])
        ++first;
    std::string text;
    for (std::size_t i = first; i < count; ++i)
        text += parts[i];
    return text;
}

SkyNumbers numbersOf(const SkyFrame& frame, SkyLabels labels, int isLatitude)
{
    const int isEquatorial =
        frame.system != SkyFrame::System::galactic && frame.system != SkyFrame::System::ecliptic;
    if (labels == SkyLabels::degrees || labels == SkyLabels::offsets ||
        (labels == SkyLabels::usual && !isEquatorial))
        return SkyNumbers::degrees;
    return isEquatorial && !isLatitude ? SkyNumbers::hours : SkyNumbers::arc;
}

SkySteps roundSteps(SkyNumbers numbers, double span, int most)
{
    SkySteps steps;
    steps.numbers = numbers;
    const double least = std::isfinite(span) ? std::fabs(span) / std::max(most, 1) : 360;
    if (numbers != SkyNumbers::degrees) {
        const double perDegree = secondsPerDegree(numbers);
        const Round round = sexagesimalStep(least * perDegree, numbers == SkyNumbers::hours);
        steps.step = round.step / perDegree;
        steps.decimals = round.decimals;
        return steps;
    }
    static constexpr double large[] = {1, 2, 5, 10, 15, 30, 45, 90};
    const Round round =
        least <= 1 ? decimalStep(least, mostDegreeDecimals) : Round{fromList(large, least), 0};
    steps.step = round.step;
    steps.decimals = round.decimals;
    return steps;
}

SkySteps offsetSteps(double reference, double latitude, int isLatitude, double span, int most)
{
    static constexpr struct {
        double degrees;
        const char* name;
    } units[] = {{1, "deg"}, {1 / 60.0, "arcmin"}, {1 / hour, "as"}, {1 / hour / 1e3, "mas"}};
    const double nearest = std::clamp(latitude, -farthestLatitude, farthestLatitude);
    const double factor = isLatitude ? 1 : std::cos(nearest * std::numbers::pi / 180);
    const double onSky = std::fabs(span) * factor;
    const auto* unit = std::begin(units);
    while (unit + 1 != std::end(units) && onSky < 2 * unit->degrees)
        ++unit;
    const Round round = decimalStep(onSky / std::max(most, 1) / unit->degrees, mostDecimals);
    SkySteps steps;
    steps.isOffset = 1;
    steps.origin = reference;
    steps.shown = round.step;
    steps.step = round.step * unit->degrees / factor;
    steps.decimals = round.decimals;
    steps.unit = unit->name;
    return steps;
}

int roundParts(const SkySteps& steps)
{
    // what a step counts in its largest unit, and whether that is one of time or arc
    double count = steps.isOffset ? steps.shown : steps.step;
    int isClock = 0;
    if (!steps.isOffset && steps.numbers != SkyNumbers::degrees) {
        constexpr double degreesPerHour = 15;
        constexpr double sixty = 60;
        count *= sixty * sixty / (steps.numbers == SkyNumbers::hours ? degreesPerHour : 1);
        isClock = count > 1 - 1e-9;
        for (int i = 0; i < 2 && count > sixty - 1e-6; ++i)
            count /= sixty;
    }
    if (!(count > 0) || !std::isfinite(count))
        return 1;
    if (!isClock)
        count /= std::pow(10, std::floor(std::log10(count) + 1e-9));
    // of 1 hour, minute, degree quarters; of 15, 30, 45 and 3, 6 thirds
    static constexpr struct {
        double count;
        int ofDecimals, ofClock;
    } parts[] = {{1, 5, 4},  {1.5, 3, 3}, {2, 4, 4},  {3, 3, 3},  {4.5, 3, 3},
                 {5, 5, 5},  {6, 3, 3},   {9, 3, 3},  {10, 5, 5}, {12, 4, 4},
                 {15, 3, 3}, {20, 4, 4},  {30, 3, 3}, {45, 3, 3}};
    for (const auto& each : parts)
        if (std::fabs(count - each.count) < 1e-6 * each.count)
            return isClock ? each.ofClock : each.ofDecimals;
    return 1;
}

SkyText skyText(const SkySteps& steps, double k, int isLatitude)
{
    SkyText text;
    text.count = 1;
    if (steps.isOffset) {
        text.parts[0] = nValToStr(k * steps.shown, steps.decimals);
        return text;
    }
    const double value = steps.value(k);
    if (steps.numbers != SkyNumbers::degrees)
        return sexagesimalText(steps, value * secondsPerDegree(steps.numbers), isLatitude);
    const double scale = std::pow(10.0, steps.decimals);
    double shown = std::round(value * scale) / scale;
    if (!isLatitude) {
        shown = std::fmod(shown, 360.0);
        shown += shown < 0 ? 360 : 0;
    }
    text.parts[0].append(shown < 0 ? "\u2212" : isLatitude && shown > 0 ? "+" : "");
    text.parts[0].append(nValToStr(std::fabs(shown), steps.decimals));
    text.parts[0] += "\u00b0";
    return text;
}

}  // namespace pavane
