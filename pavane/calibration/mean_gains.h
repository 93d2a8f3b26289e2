#pragma once

#include "platform/api.h"
#include "tessel/gains/AGains.h"

#include <cstddef>
#include <vector>

namespace pavane
{

/// Amplitudes and phases of the usable solutions of an antenna, in one group and hand or in all.
struct MeanGain {
    std::size_t antenna = 0, group = 0, hand = 0;
    std::size_t solutions = 0;  ///< usable ones; without any all numbers are 0
    std::size_t failed = 0, flagged = 0;
    double amplitude = 0;         ///< median
    double amplitudeScatter = 0;  ///< 1.4826 times the median absolute deviation from it
    double phase = 0;             ///< degrees: of the mean of unit vectors
    double phaseScatter = 0;      ///< degrees: the same deviation of the phases from it
};

/// For each antenna, group and hand, in the order of these.
PAVANE_API std::vector<MeanGain> meanGains(const AGains& gains);
/// The median of the amplitudes of an antenna over all groups and hands; 0 without a usable one.
PAVANE_API double medianAmplitude(const AGains& gains, std::size_t antenna);

}  // namespace pavane
