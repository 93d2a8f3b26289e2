#include "pavane/progress/TimeLeft.h"

#include "pavane/resources/progress_messages.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace pavane
{

namespace
{

constexpr double leastTime = 1;        // s, before which nothing is told
constexpr double leastMemory = 2;      // s, over which the speed is taken
constexpr double longest = 7 * 86400;  // s
constexpr double minute = 60;
constexpr double hour = 3600;

}  // namespace

void TimeLeft::add(double seconds, double fraction)
{
    if (!(fraction >= 0 && fraction <= 1) || !std::isfinite(seconds))
        return;
    if (begin_ < 0) {
        begin_ = time_ = seconds;
        fraction_ = fraction;
        return;
    }
    const double passed = seconds - time_;
    if (passed <= 0)
        return;
    const double speed = std::max(fraction - fraction_, 0.0) / passed;
    const double all = seconds - begin_;
    // at first all that passed counts alike, later the last quarter of the time most
    const double share =
        std::max(passed / all, 1 - std::exp(-passed / std::max(all / 4, leastMemory)));
    rate_ += (speed - rate_) * std::min(share, 1.0);
    time_ = seconds;
    fraction_ = fraction;
}

double TimeLeft::seconds() const
{
    if (begin_ < 0 || time_ - begin_ < leastTime || rate_ <= 0)
        return -1;
    const double left = (1 - fraction_) / rate_;
    return left <= longest ? left : -1;
}

CString timeLeftText(double seconds)
{
    if (!(seconds >= 0 && seconds <= longest))
        return {};
    const auto text = [](double value, const char* unit) {
        return CString(leftAbout) + std::to_string(static_cast<long>(std::ceil(value))) + unit;
    };
    // two of a unit tell more than one of the next
    if (seconds <= 2 * minute)
        return text(seconds, secondsLeft);
    return seconds <= 2 * hour ? text(seconds / minute, minutesLeft)
                               : text(seconds / hour, hoursLeft);
}

}  // namespace pavane
