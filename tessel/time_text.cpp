#include "tessel/time_text.h"

#include "tessel/trimmed.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

constexpr int mostDecimals = 9;
constexpr int microsecondDecimals = 6;
constexpr int secondsInHour = 3600;
constexpr int secondsInMinute = 60;

/// Divides the whole number `digits` by 3600: the quotient, at least two digits of it, as text.
/// Text, because the hours of a great double fit in no integer.
std::string hoursOf(std::string_view digits, int& secondsLeft)
{
    std::string hours;
    secondsLeft = 0;
    for (const char digit : digits) {
        secondsLeft = secondsLeft * 10 + (digit - '0');
        hours += static_cast<char>('0' + secondsLeft / secondsInHour);
        secondsLeft %= secondsInHour;
    }
    const auto first = std::min(hours.find_first_not_of('0'), hours.size());
    hours.erase(0, first);
    return hours.size() < 2 ? std::string(2 - hours.size(), '0') + hours : hours;
}

std::string twoDigits(int value)
{
    return {static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)};
}

/// The seconds with the wanted decimals; -1 drops the zeros at the end of six.
std::string secondsText(double seconds, int decimals)
{
    std::string text =
        nValToStr(seconds, decimals < 0 ? microsecondDecimals : std::min(decimals, mostDecimals));
    if (decimals < 0) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text;
}

/// A field of digits, with one point among them where `withFraction` allows it.
int fieldValue(std::string_view field, int withFraction, double& value)
{
    const char* const allowed = withFraction ? "0123456789." : "0123456789";
    return !field.empty() && field.find_first_not_of(allowed) == std::string_view::npos &&
           stoval(field, value);
}

}  // namespace

std::string timeToStr(double seconds, int decimals)
{
    if (!std::isfinite(seconds))
        return {};
    const std::string text = secondsText(std::abs(seconds), decimals);
    const auto point = std::min(text.find('.'), text.size());
    int left = 0;
    const std::string hours = hoursOf(std::string_view(text).substr(0, point), left);
    const std::string clock = hours + ":" + twoDigits(left / secondsInMinute) + ":" +
                              twoDigits(left % secondsInMinute) + text.substr(point);
    const bool zero = clock.find_first_of("123456789") == std::string::npos;
    return seconds < 0 && !zero ? "-" + clock : clock;
}

std::string dateTimeToStr(double seconds, int decimals) { return timeToStr(seconds, decimals); }

int strToTime(std::string_view text, double& seconds)
{
    text = trimmed(text, whiteSpace);
    const bool negative = !text.empty() && text[0] == '-';
    if (negative || (!text.empty() && text[0] == '+'))
        text.remove_prefix(1);
    double sum = 0;
    for (int field = 0; field < 3; ++field) {
        const auto colon = text.find(':');
        const bool last = colon == std::string_view::npos;
        double value = 0;
        if (!fieldValue(text.substr(0, colon), last, value) ||
            (field > 0 && value >= secondsInMinute))
            return 0;
        sum = sum * secondsInMinute + value;
        if (last) {
            seconds = negative && sum != 0 ? -sum : sum;
            return 1;
        }
        text.remove_prefix(colon + 1);
    }
    return 0;
}

}  // namespace pavane
