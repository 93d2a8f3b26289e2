#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/Distinct.h"
#include "tessel/uvfits/UvChoice.h"
#include "tessel/uvfits/UvPlotRows.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace pavane
{

/// Means of visibilities over time, as vectors with their weights: of each baseline, source,
/// frequency selection, IF, channel and polarisation by itself, of what is marked, not flagged and
/// finite. Time, u, v and w are means with the same weights, the weight is the sum.
///
/// Intervals are counted from 0h of the reference date, so a mean never bridges a pause that is
/// longer than one. Groups without a time stay alone. Where a baseline goes back in time, a new
/// mean begins.
class PAVANE_API UvTimeMeans
{
public:
    /// Visibilities of a group times baselines that may be averaged at once, usually.
    static constexpr std::size_t usualSums = std::size_t{1} << 23;
    /// Why `add` gives 0, a clause without its subject.
    static constexpr const char* tooMany =
        "has more channels than are averaged at once; mark fewer of them or of the baselines";
    using Take = std::function<void(const UvPointOrigin& mean)>;

    /// File and choice outlive it. `seconds` is above 0.
    UvTimeMeans(const AUVXFile& file, UvChoice& choice, double seconds,
                std::size_t mostSums = usualSums);

    /// Adds group `i` of those read with times, baselines, origins, places and cells; `take` gets
    /// the means that end before it. 0 when there are more sums than are kept.
    int add(const UvGroups& groups, int i, const Take& take);
    /// Ends all means, in the order in which their baselines were met.
    void finish(const Take& take);

private:
    struct Sums {
        double real = 0, imaginary = 0, weight = 0, time = 0, u = 0, v = 0, w = 0;
        std::int64_t count = 0, first = 0;
    };
    struct Key {
        UvPair baseline;
        int source, selection;
        bool operator==(const Key&) const = default;
        std::uint64_t hash() const
        {
            return spread(baseline.hash() ^
                          (std::uint64_t{static_cast<std::uint32_t>(source)} << 32 |
                           static_cast<std::uint32_t>(selection)));
        }
    };
    struct Mean {
        double interval = 0;
        const double* frequencies = nullptr;  ///< null: nothing is open
        std::vector<Sums> sums;               ///< of the cells
    };
    /// A visibility of a group that is marked.
    struct Cell {
        UvCell cell;
        std::size_t frequency;
    };
    const std::vector<Cell>& cellsOf(const UvGroups& groups, std::size_t i,
                                     const double* frequencies);
    void end(const Key& key, Mean& mean, const Take& take);

    const AUVXFile& file_;
    UvChoice& choice_;
    double seconds_;
    std::size_t most_, kept_ = 0;
    Distinct<Key, std::size_t> keys_;
    std::vector<Mean> means_;
    std::vector<std::vector<Cell>> cells_;  ///< of each selection
};

}  // namespace pavane
