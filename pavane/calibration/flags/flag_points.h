#pragma once

#include "tessel/api.h"
#include "tessel/flags/VisibilityFlags.h"

#include <vector>

namespace pavane
{

/// A plotted point that is to be flagged: a visibility, or the mean of some.
struct FlagPoint {
    int subarray = 1, first = 0, second = 0;
    double time = 0;   ///< days since 0h of the reference day
    int ifIndex = -1;  ///< from 0; -1: the mean of all
    int stokes = 0;    ///< FITS code; 0: the mean of all
    int source = 0;    ///< 0: not told
};

/// What is flagged at the times of points that were chosen.
struct FlagScope {
    enum class Antennas {
        baseline,  ///< the point's own
        antenna,   ///< all baselines of `antenna`, where it is one of the point's
        all
    };
    Antennas antennas = Antennas::baseline;
    int antenna = 0;
    int isAllIfs = 0;    ///< else the point's
    int isAllHands = 0;  ///< else the point's
    int isRestore = 0;
};

/// The lines that flag the points, with what the scope says, half an `integration` (days) to both
/// sides of their times. Points of neighbouring times become one line, as do IFs of the same times.
PAVANE_API std::vector<FlagLine> flagLinesOf(const std::vector<FlagPoint>& points,
                                             const FlagScope& scope, double integration);

}  // namespace pavane
