#pragma once

#include "tessel/uvfits/uv_values.h"

#include <limits>

namespace pavane
{

/// A part of an observation in time, both ends in it: days since 0h of the reference date. Groups
/// without a time are in no part.
struct UvTimes {
    double start = -std::numeric_limits<double>::infinity();
    double stop = std::numeric_limits<double>::infinity();

    /// The same in seconds. Times of groups are sums of days, exact to the millisecond and no more:
    /// those at the ends are in.
    static UvTimes ofSeconds(double from, double to)
    {
        constexpr double day = 86400;
        constexpr double slack = 5e-4;
        return {(from - slack) / day, (to + slack) / day};
    }
    int isAll() const { return start == UvTimes().start && stop == UvTimes().stop; }
    int holds(double time) const { return isAll() || (time >= start && time <= stop); }
    /// Whether a part of the scan is in it.
    int meets(const UvScan& scan) const
    {
        return isAll() || (scan.start <= stop && scan.end >= start);
    }
};

}  // namespace pavane
