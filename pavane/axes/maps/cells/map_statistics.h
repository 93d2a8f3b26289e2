#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/simd_path.h"

#include <cstdint>

namespace pavane
{

/// Range of the finite cells of a map, and where its greatest lies.
struct MapRange {
    double least = 1;
    double greatest = 0;
    int peakRow = -1;  ///< the first cell, in memory order, that holds the greatest value
    int peakColumn = -1;
    int isEmpty() const { return least > greatest; }  ///< no finite cell at all
};

/// Goes over the map once.
PAVANE_API MapRange mapRange(const AMatrixAccess& cells, SimdPath path = bestSimdPath());

/// Location and width of the noise of a map, undisturbed by the sources in it.
struct MapNoise {
    std::int64_t finiteCells = 0;
    double median = 0;
    double sigma = 0;  ///< 1.4826 times the median absolute deviation from the median
};

/// The exact medians of all finite cells (with an even count the mean of the middle two): two
/// passes over most maps, and memory for a sixteenth of the cells.
PAVANE_API MapNoise mapNoise(const AMatrixAccess& cells, SimdPath path = bestSimdPath());

}  // namespace pavane
