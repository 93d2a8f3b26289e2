#pragma once

#include "tessel/api.h"
#include "tessel/gains/AGains.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/uvfits/UvMarks.h"

#include <string>
#include <vector>

namespace pavane
{

/// What gains are looked for, of which times, IFs and hands.
struct GainFrameRules {
    double seconds = 60;  ///< of an interval; 0 or less: a scan is one
    int isWhole = 0;      ///< non-zero: one gain for the whole time of a subarray
    /// IFs, from 0, that share a gain; those of no group are not used. None: each by itself.
    std::vector<std::vector<int>> groups{};
    int joinsHands = 0;  ///< non-zero: one gain for both hands
};

/// Makes the empty gains of a file: all antennas of its tables and of `baselines`, by subarray and
/// number; intervals from its index of scans and, for times that it does not tell of, from those
/// that were `found`; hands that `marks` mark and that are parallel. `integration` in days.
/// Non-zero on success, else `error` is a clause about the file without its subject.
PAVANE_API int makeGainFrame(const AUVXFile& file, const UvMarks& marks,
                             const GainFrameRules& rules, const std::vector<UvBaseline>& baselines,
                             const std::vector<UvScan>& found, double integration, AGains& frame,
                             std::string& error);

/// Indices of the antennas of these names, or numbers where no antenna has that name, of all
/// subarrays, in this order. 0 when the gains have none of a name: `error` says so.
PAVANE_API int antennasNamed(const AGains& gains, const std::vector<std::string>& names,
                             std::vector<int>& antennas, std::string& error);

}  // namespace pavane
