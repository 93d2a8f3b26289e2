#pragma once

#include "pavane/axes/ranges/TMinMax.h"

#include <vector>

namespace pavane
{

/// The range about the median that a straight line through the values in rising order tells, its
/// slope divided by `contrast` (as it is with one that is not above 0): what display servers call
/// zscale. Values farther than 2.5 standard deviations from the line, and their neighbours, are
/// left out and the line is fitted again, five times at most; least to greatest when fewer than
/// half of the values, or fewer than five, are left. `values` are finite.
TMnMx zscaleOf(std::vector<float> values, double contrast);

}  // namespace pavane
