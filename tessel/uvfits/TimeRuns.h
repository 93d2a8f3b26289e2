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
    /// No more than `most` times are kept; beyond, a file is no observation, and memory would run
    /// out before the file does.
    explicit TimeRuns(std::size_t most = std::size_t{1} << 22);
    /// Where groups come from.
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
    /// Takes group `number`, greater than those before. 0 when there are too many times; then
    /// nothing more is to be added.
    int add(double time, const Origin& origin, std::int64_t number)
    {
        // most groups have the time of the one before
        if (last_ && time == lastTime_ && origin == lastOrigin_) {
            last_->last = number;
            return 1;
        }
        return addOther(time, origin, number);
    }
    /// The scans that they make, by start.
    std::vector<UvScan> scans() const;

private:
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
    int addOther(double time, const Origin& origin, std::int64_t number);
    void addScans(std::vector<Moments::Item>& moments, std::vector<UvScan>& scans) const;

    Distinct<Origin, int> origins_;
    Moments moments_;
    double lastTime_ = 0;
    Origin lastOrigin_{};
    Groups* last_ = nullptr;
};

}  // namespace pavane
