#pragma once

#include "tessel/api.h"
#include "tessel/gains/AGains.h"
#include "tessel/uvfits/uv_values.h"

#include <vector>

namespace pavane
{

/// Cuts scans into intervals of `seconds`, each scan from its start on; a rest of less than half of
/// that joins the interval before it. With 0 or less a scan is an interval; one shorter than
/// `integration` (days) is one of a point. Scans of a subarray that meet are parted in the middle.
PAVANE_API std::vector<GainInterval> gainIntervals(const std::vector<UvScan>& scans, double seconds,
                                                   double integration);
/// One interval a subarray, for one gain for the whole time.
PAVANE_API std::vector<GainInterval> wholeInterval(const std::vector<UvScan>& scans,
                                                   double integration);

}  // namespace pavane
