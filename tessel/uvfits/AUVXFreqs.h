#pragma once

#include "tessel/uvfits/StoredNumber.h"

#include <vector>

namespace pavane
{

/// One IF of a frequency selection.
struct UvIf {
    StoredNumber offset;        ///< Hz, from the reference frequency to the IF's reference channel
    StoredNumber channelWidth;  ///< Hz
    StoredNumber bandwidth;     ///< Hz
    int sideband = 1;           ///< 1 upper, -1 lower, as stored
};

/// A frequency selection of a data file: its number and its IFs, in the file's order.
struct AUVXFreqs {
    int id = 1;  ///< what groups and scans call it
    std::vector<UvIf> ifs;
};

}  // namespace pavane
