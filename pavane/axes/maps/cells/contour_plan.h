#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/simd_path.h"

#include <cstdint>
#include <vector>

namespace pavane
{

/// How the lines of many contour levels are traced within a limit of memory.
struct ContourPlan {
    /// The levels to trace, by index and in order; the levels of a band are traced in one go.
    std::vector<std::vector<int>> bands;
    std::int64_t mostPoints = 0;  ///< that all of them can have
};

/// Bytes that a crossing takes while its level is traced, in blocks of `crossingBlock` of them, and
/// that a point and its part of a line take from then on.
inline constexpr std::int64_t crossingBytes = 24;
inline constexpr std::int64_t crossingBlock = 1 << 14;
inline constexpr std::int64_t pointBytes = 28;

/// How often each of `levels`, which rise, crosses the line between two neighbouring cells, as far
/// as these are finite: at least the points that its lines have. Non-zero on success; 0 without
/// memory.
int countCrossings(const AMatrixAccess& cells, const std::vector<double>& levels, SimdPath path,
                   std::vector<std::int64_t>& crossings);

/// Chooses the levels with the fewest crossings, as many as fit into `bytes`, none of them with
/// more than `mostOfLevel`.
ContourPlan planContours(const std::vector<std::int64_t>& crossings, std::int64_t mostOfLevel,
                         std::int64_t bytes);

}  // namespace pavane
