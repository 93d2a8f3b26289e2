#include "pavane/dialogs/values/time_texts.h"

#include "tessel/plain_text.h"
#include "tessel/time_text.h"
#include "tessel/value_text.h"

#include <cmath>

namespace pavane
{

namespace
{

constexpr double secondsPerDay = 86400;

/// "12:00:00", "1/12:00:00" or "129600".
int readMoment(const CString& text, double& seconds)
{
    const std::size_t slash = text.find('/');
    double time = 0;
    if (slash == CString::npos) {
        if (!readTime(text, 1, time) && !readTime(text, 0, time))
            return 0;
    } else {
        int days = 0;
        const CString clock = text.substr(slash + 1);
        if (!stoval(text.substr(0, slash), days) || days < 0 || clock.find('-') != CString::npos ||
            !readTime(clock, 1, time))
            return 0;
        time += days * secondsPerDay;
    }
    seconds = time;
    return 1;
}

}  // namespace

CString timeText(double seconds, int asClock)
{
    return asClock ? dateTimeToStr(seconds, -1) : valToStr(seconds);
}

int readTime(const CString& text, int asClock, double& seconds)
{
    double time = 0;
    if (!(asClock ? strToTime(text, time) : stoval(text, time)) || !std::isfinite(time))
        return 0;
    seconds = time;
    return 1;
}

int readTimeRange(const CString& text, TimeRange& range, CString& error)
{
    const std::size_t comma = text.find(',');
    TimeRange read;
    int isRead = comma != CString::npos && text.size() > 1;
    const CString start = text.substr(0, comma);
    if (isRead && !start.empty())
        isRead = readMoment(start, read.start);
    if (isRead && comma + 1 < text.size())
        isRead = readMoment(text.substr(comma + 1), read.stop);
    if (!isRead) {
        error = '\'';
        error += plainText(text) + "' are no times, such as 01:00:00,02:30:00";
        return 0;
    }
    if (!(read.start < read.stop)) {
        error = '\'';
        error += plainText(text) + "' does not start before it stops";
        return 0;
    }
    range = read;
    return 1;
}

}  // namespace pavane
