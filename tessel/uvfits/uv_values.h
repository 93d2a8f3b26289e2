#pragma once

#include "tessel/api.h"
#include "tessel/uvfits/StoredNumber.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// What the header of a data file says of the observation.
struct UvHeader {
    std::string object, telescope, instrument, observer;
    std::string dateObs;  ///< as it stands there
    std::string bunit;
    /// Julian date of 0h of the reference date, which times count from: of the first antenna table,
    /// else DATE-OBS, else the day of the first group.
    double referenceDay = 0;
    double ra = 0, dec = 0;  ///< degrees, of the axes; NaN without them
    double equinox = 0;      ///< years, 0 when unknown
    std::int64_t groups = 0;
    std::vector<int> stokes;  ///< codes of the file's polarisations, see `stokesName`
    int channels = 1;
    int ifs = 1;                                                   ///< of the cells of a group
    double frequency = 0, channelWidth = 0, referenceChannel = 1;  ///< Hz, from 1
};

/// A source of the file. Without a table of sources the object of the header is the only one.
struct UvSource {
    int id = 1;
    std::string name;
    StoredNumber ra, dec;  ///< degrees
    double equinox = 0;    ///< years, 0 when unknown
};

/// A scan. Times are days since 0h of the reference date; group numbers count from 1 and are, from
/// an index table, as stored.
struct UvScan {
    int source = 1, subarray = 1, selection = 1;
    double start = 0, end = 0;
    std::int64_t first = 0, last = 0;
};

/// A baseline that some groups have.
struct UvBaseline {
    int subarray = 1, first = 0, second = 0;
    std::int64_t groups = 0;
};

/// "ALTAZ", "EQUATORIAL", "ORBITING"; other codes are their number.
PAVANE_API std::string mountName(int mount);
/// "d/hh:mm:ss.s" of a time in days; "" when it is not finite.
PAVANE_API std::string uvTimeText(double days);

}  // namespace pavane
