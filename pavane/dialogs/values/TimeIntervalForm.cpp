#include "pavane/dialogs/values/TimeIntervalForm.h"

#include "pavane/dialogs/values/time_texts.h"
#include "pavane/resources/time_messages.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Clock texts hold microseconds: the lengths of as many intervals as there are may be off by half
/// of one each, and the piece that is then left over, never more than this of an interval, is none.
constexpr double clockRounding = 0.6e-6;
constexpr double numberRounding = 1e-9;
constexpr double mostRounding = 0.01;
constexpr double mostCounted = 1e300;

struct Intervals {
    double count = -1;
    bool isLastShorter = false;
};

Intervals cut(double start, double stop, double interval)
{
    // half of each, so that the length of no range overflows
    const double ratio = (stop / 2 - start / 2) / (interval / 2);
    if (!(start < stop) || !(interval > 0) || !(ratio < mostCounted))
        return {};
    const double whole = std::floor(ratio + 0.5);
    const double rounding = whole * (numberRounding + clockRounding / interval);
    if (whole >= 1 && std::abs(ratio - whole) <= std::min(rounding, mostRounding))
        return {whole, false};
    return {std::ceil(ratio), true};
}

}  // namespace

void TimeIntervalForm::setRecord(const AUVXTIntervalPM& record, int asClock)
{
    record_ = record;
    isClock_ = asClock != 0;
    everyPoint_ = record.everyPoint != 0;
    setTimes(record.start, record.stop, record.interval);
}

void TimeIntervalForm::setClock(int asClock)
{
    asClock = asClock != 0;
    if (asClock == isClock_)
        return;
    for (CString& text : texts_) {
        double time = 0;
        if (readTime(text, isClock_, time))
            text = timeText(time, asClock);
    }
    isClock_ = asClock;
}

double TimeIntervalForm::info(TimeField field) const
{
    return field == TimeField::stop       ? record_.infoStop
           : field == TimeField::interval ? record_.infoInterval
                                          : record_.infoStart;
}

void TimeIntervalForm::setTimes(double start, double stop, double interval)
{
    texts_ = {timeText(start, isClock_), timeText(stop, isClock_), timeText(interval, isClock_)};
}

TimeRefusal TimeIntervalForm::readTimes(Times& times, int withInterval) const
{
    if (!readTime(text(TimeField::start), isClock_, times.start))
        return {TimeField::start, invalidStartTime};
    if (!readTime(text(TimeField::stop), isClock_, times.stop))
        return {TimeField::stop, invalidStopTime};
    if (!readTime(text(TimeField::interval), isClock_, times.interval) && withInterval)
        return {TimeField::interval, invalidTimeInterval};
    if (withInterval && !(times.interval > 0))
        return {TimeField::interval, zeroTimeInterval};
    if (times.start >= times.stop)
        return {TimeField::stop, startBehindStop};
    return {};
}

TimeRefusal TimeIntervalForm::save()
{
    Times times{0, 0, record_.interval};
    const TimeRefusal refusal = readTimes(times, !everyPoint_);
    if (refusal.field != TimeField::none)
        return refusal;
    if (times.start >= record_.infoStop)
        return {TimeField::start, invalidStartTime};
    record_.start = times.start;
    record_.stop = times.stop;
    record_.interval = times.interval;
    record_.everyPoint = everyPoint_;
    return {};
}

TimeRefusal TimeIntervalForm::proposeCount(int& count) const
{
    Times times;
    const TimeRefusal refusal = readTimes(times, 1);
    if (refusal.field != TimeField::none)
        return refusal;
    const double wanted = (times.stop / 2 - times.start / 2) / (times.interval / 2) + 0.5;
    count = static_cast<int>(std::clamp(wanted, double{leastIntervals}, double{mostIntervals}));
    return {};
}

int TimeIntervalForm::applyCount(const CString& text)
{
    int count = 0;
    Times times;
    if (!stoval(text, count) || count < leastIntervals || count > mostIntervals ||
        !readTime(texts_[0], isClock_, times.start) || !readTime(texts_[1], isClock_, times.stop) ||
        times.start >= times.stop)
        return 0;
    const double length = times.stop - times.start;
    if (!std::isfinite(length))
        return 0;
    setText(TimeField::interval, timeText(length / count, isClock_));
    return 1;
}

CString TimeIntervalForm::countText() const
{
    Times times;
    if (readTimes(times, !everyPoint_).field != TimeField::none)
        return {};
    if (everyPoint_)
        return "every point by itself";
    const Intervals intervals = cut(times.start, times.stop, times.interval);
    if (intervals.count < 0)
        return {};
    const CString count = valToStr(intervals.count);
    return intervals.count == 1
               ? "1 interval"
               : count + " intervals" + (intervals.isLastShorter ? ", the last one shorter" : "");
}

double intervalsOf(double start, double stop, double interval)
{
    return cut(start, stop, interval).count;
}

}  // namespace pavane
