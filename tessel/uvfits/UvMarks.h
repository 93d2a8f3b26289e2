#pragma once

#include "tessel/ABitArray.h"
#include "tessel/api.h"
#include "tessel/uvfits/uv_values.h"
#include "tessel/uvfits/UvTimes.h"

#include <vector>

namespace pavane
{

/// What of a data file is to be plotted: marks in the order of its tables, an array without bits
/// for all of them. What a table does not know is plotted only where everything in it is marked.
struct UvMarks {
    ABitArray telescopes;   ///< of AUVXFile::telescopes; both of a baseline have to be marked
    ABitArray stokes;       ///< of UvHeader::stokes
    ABitArray sources;      ///< of AUVXFile::sources
    ABitArray frequencies;  ///< IFs of the first selection, then those of the next, and so on
    ABitArray baselines, scans;
    std::vector<UvBaseline> baselineTable;  ///< what the marks of baselines stand for, in any order
    std::vector<UvScan> scanTable;
    UvTimes times{};  ///< groups outside count for nothing
};

/// Marks of what is plotted without a choice: the parallel hands, or I; all where there are none.
PAVANE_API ABitArray usualStokes(const UvHeader& header);

/// Index of the scan that has a group of this origin, time (days) and number (from 1); -1 when none
/// of them does. Where scans of an index lie over each other, the nearest in time.
PAVANE_API int scanOf(const std::vector<UvScan>& scans, int subarray, int source, int selection,
                      double time, std::int64_t number);

}  // namespace pavane
