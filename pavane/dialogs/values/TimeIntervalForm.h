#pragma once

#include "pavane/dialogs/values/AUVXTIntervalPM.h"
#include "platform/types.h"

#include <array>

namespace pavane
{

/// The three edits of the page of time intervals.
enum class TimeField { none, start, stop, interval };

/// Why a choice is refused, and which edit gets the focus.
struct TimeRefusal {
    TimeField field = TimeField::none;  ///< none: all is well
    const char* message = "";
};

/// Counts of intervals that the dialog takes.
inline constexpr int leastIntervals = 1;
inline constexpr int mostIntervals = 1000000;

/// What stands on the page of time intervals: a record, three texts and a check box. The page hands
/// what the user does to it and shows what it holds.
class PAVANE_API TimeIntervalForm
{
public:
    const AUVXTIntervalPM& record() const { return record_; }
    /// Takes a record and shows its times as clock text or seconds.
    void setRecord(const AUVXTIntervalPM& record, int asClock);

    const CString& text(TimeField field) const { return texts_[indexOf(field)]; }
    void setText(TimeField field, const CString& text) { texts_[indexOf(field)] = text; }
    /// Whether the texts are clock texts; new ones are read so too.
    int isClock() const { return isClock_; }
    /// Writes the texts in the other form; what is no time stays as it is.
    void setClock(int asClock);
    int everyPoint() const { return everyPoint_; }
    void setEveryPoint(int on) { everyPoint_ = on != 0; }
    /// Of the data: the value that the page shows beside `field`.
    double info(TimeField field) const;
    /// Shows these times.
    void setTimes(double start, double stop, double interval);

    /// Checks the texts and takes them into the record when they are good.
    TimeRefusal save();

    /// The count that the dialog of intervals begins with; refused without a range and an interval.
    TimeRefusal proposeCount(int& count) const;
    /// Cuts the range into `count` intervals; 0 when the count is none that the dialog takes, or
    /// the range is none.
    int applyCount(const CString& count);

    /// "4 intervals, the last one shorter", of what stands on the page now; "" when it is no
    /// choice.
    CString countText() const;

private:
    struct Times {
        double start = 0, stop = 0, interval = 0;
    };
    static std::size_t indexOf(TimeField field)
    {
        return field == TimeField::stop ? 1 : field == TimeField::interval ? 2 : 0;
    }
    TimeRefusal readTimes(Times& times, int withInterval) const;

    AUVXTIntervalPM record_;
    std::array<CString, 3> texts_;
    int isClock_ = 1;
    int everyPoint_ = 1;
};

/// Intervals that begin in a range, the last of which may be shorter; those of 1e300 and more, and
/// of no range or interval, as -1.
PAVANE_API double intervalsOf(double start, double stop, double interval);

}  // namespace pavane
