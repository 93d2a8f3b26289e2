#pragma once

#include "platform/types.h"

#include <limits>

namespace pavane
{

/// A time as clock text, "00:01:30.5", or as a plain number of seconds.
PAVANE_API CString timeText(double seconds, int asClock);
/// Reads a text that is wholly a time of that form, and finite. Non-zero on success; else `seconds`
/// is left alone.
PAVANE_API int readTime(const CString& text, int asClock, double& seconds);

/// A range of times of an observation; without an end where that is infinite.
struct TimeRange {
    double start = -std::numeric_limits<double>::infinity();
    double stop = std::numeric_limits<double>::infinity();
};
/// Reads "START,STOP", each as clock text, with days in front ("1/02:00:00", as tables show it) or
/// as seconds; one of them may be empty. Non-zero when start lies before stop; else 0, `range` is
/// left alone and `error` is one line.
PAVANE_API int readTimeRange(const CString& text, TimeRange& range, CString& error);

}  // namespace pavane
