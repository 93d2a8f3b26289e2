#pragma once

#include "tessel/uvfits/Distinct.h"
#include "tessel/uvfits/uv_values.h"

#include <bit>
#include <cstdint>
#include <vector>

namespace pavane
{

/// The times at which a file has groups, for each subarray, source and selection apart. Groups may
/// come in any order. Private to tessel's sources.
class TimeRuns
{
public:
    TimeRuns();
    /// Takes group `number`. 0 when there are too many times.
    int add(double time, int subarray, int source, int selection, std::int64_t number);
    /// The scans that they make, by start.
    std::vector<UvScan> scans() const;

private:
    struct Origin {
        int subarray, source, selection;
        bool operator==(const Origin&) const = default;
        std::uint64_t hash() const
        {
            return spread(spread(spread(static_cast<std::uint32_t>(subarray)) ^
                                 static_cast<std::uint32_t>(source)) ^
                          static_cast<std::uint32_t>(selection));
        }
    };
    struct Moment {
        double time;
        int origin;
        bool operator==(const Moment&) const = default;
        std::uint64_t hash() const
        {
            return spread(std::bit_cast<std::uint64_t>(time) ^ static_cast<std::uint32_t>(origin));
        }
    };
    struct Groups {
        std::int64_t first, last;
    };
    using Moments = Distinct<Moment, Groups>;
    void addScans(std::vector<Moments::Item>& moments, std::vector<UvScan>& scans) const;

    Distinct<Origin, int> origins_;
    Moments moments_;
};

}  // namespace pavane
