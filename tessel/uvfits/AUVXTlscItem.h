#pragma once

#include "tessel/uvfits/StoredNumber.h"

#include <string>

namespace pavane
{

/// A telescope as its antenna table has it. Positions are as stored: neither moved by the array's
/// own position nor mirrored, since writers differ in handedness.
struct AUVXTlscItem {
    std::string name;
    int number = 0;           ///< what groups and baselines call it
    int subarray = 1;         ///< from 1
    StoredNumber x, y, z;     ///< metres
    int mount = 0;            ///< 0 ALTAZ, 1 EQUATORIAL, 2 ORBITING, others are codes of the writer
    StoredNumber axisOffset;  ///< metres
};

}  // namespace pavane
