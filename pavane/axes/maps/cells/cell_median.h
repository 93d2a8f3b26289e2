#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/simd_path.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// Finite cells spread over a map, by which a search guesses where a median lies; the same ones in
/// every run. Empty for maps that are small enough to be searched as a whole.
std::vector<float> sampleCells(const AMatrixAccess& cells);

/// The exact median of all finite cells, and how many they are.
struct CellMedian {
    double value = 0;  ///< with an even count the mean of the middle two
    std::int64_t count = 0;
};

/// The median of the finite cells, or of their distances from `*centre` rounded to float. `sample`
/// is that of the map. Goes over the map once, keeping what lies near the guess (a sixteenth of the
/// cells at most), and up to 33 times more where the guess is wrong.
CellMedian cellMedian(const AMatrixAccess& cells, const double* centre, std::vector<float> sample,
                      SimdPath path);

}  // namespace pavane
