#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/UvSlices.h"
#include "tessel/uvfits/UvTimes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// Numbers of all groups; least above greatest where there was nothing to look at.
struct UvTotals {
    std::int64_t groups = 0, visibilities = 0;
    std::int64_t flagged = 0;    ///< of a weight of 0 or below, or none
    std::int64_t notFinite = 0;  ///< that are infinite or no number, flagged or not
    /// Of the visibilities that are neither, in the parallel hands, or I where the file has those:
    /// distance in wavelengths and amplitude.
    double leastUv = 1, greatestUv = 0, leastAmplitude = 1, greatestAmplitude = 0;
};

/// Reads all groups of a file once, in slices, and finds what only all of them tell. May be dropped
/// at any time. The file outlives it.
class PAVANE_API UvGroupScan
{
public:
    /// Bits that choose what is looked for; `totals` reads the cells of the groups as well.
    enum What : int { baselines = 1, scans = 2, totals = 4 };

    /// Groups outside of `times` count for nothing.
    UvGroupScan(AUVXFile& file, int what, const UvTimes& times = {});
    UvGroupScan(const UvGroupScan&) = delete;
    UvGroupScan& operator=(const UvGroupScan&) = delete;
    ~UvGroupScan();

    /// Goes on with some `bytes` of the file, one block at the least. Non-zero while more remains;
    /// 0 when all is done, or cannot be: then `error` is not empty.
    int step(std::int64_t bytes = std::int64_t{16} << 20);
    /// 0 to 1.
    double done() const { return slices_.done(); }
    /// Why it ended early, a clause without its subject; "" else.
    const std::string& error() const { return slices_.error(); }

    /// Of the groups so far, by subarray and numbers. Those of groups that name no telescopes are
    /// left out.
    std::vector<UvBaseline> foundBaselines() const;
    /// Of the groups so far, by start. A scan is what follows in time within a subarray without
    /// another source or selection in its place and without a pause longer than both a minute and
    /// three times the commonest step of its subarray. Groups without a time are left out. None
    /// when there are more different times than an observation has (four million): then
    /// `hasScans` is 0.
    std::vector<UvScan> foundScans() const;
    int hasScans() const { return hasScans_; }
    const UvTotals& foundTotals() const { return totals_; }

private:
    struct Found;
    int isIn(const UvGroups& groups, int i) const
    {
        return times_.isAll() || times_.holds(groups.time[static_cast<std::size_t>(i)]);
    }
    int take(const UvGroups& groups);
    int takeBaselines(const UvGroups& groups);
    void takeTimes(const UvGroups& groups);
    void addTotals(const UvGroups& groups);

    AUVXFile& file_;
    UvSlices slices_;
    int what_;
    UvTimes times_;
    int hasScans_ = 1;
    UvTotals totals_;
    std::unique_ptr<Found> found_;
};

}  // namespace pavane
