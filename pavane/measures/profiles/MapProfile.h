#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/MapFrame.h"
#include "platform/api.h"
#include "tessel/SkyCoordinates.h"

#include <limits>
#include <string>
#include <vector>

namespace pavane
{

/// What becomes of the values beside each other in a wide profile. The sum is over cells, so that a
/// sum along the line too is that of the strip.
enum class AcrossLine : int { mean, greatest, sum };

/// A line of two or more corners over a map, in cells from 0 (x = column, y = row).
struct ProfileLine {
    std::vector<MapPlace> corners;
    double width = 1;  ///< in cells; up to 1 the line itself
    AcrossLine across = AcrossLine::mean;
};

/// The cells of a map along a line. A plain value.
struct PAVANE_API MapProfile {
    static constexpr double none = std::numeric_limits<double>::quiet_NaN();
    /// A line with more of them is refused.
    static constexpr int mostSamples = 4000000;

    struct Sample {
        MapPlace place;            ///< cell
        double cells = 0;          ///< along the line from its begin
        double arcseconds = none;  ///< the same on the sky
        double value = none;       ///< NaN: a gap
    };
    std::vector<Sample> samples;
    AcrossLine across = AcrossLine::mean;
    int hasSky = 0;  ///< arcseconds are known

    /// Takes the line each half cell from its first corner on, and at its end: the map there by
    /// bilinear interpolation, none where a cell that counts is blank or beyond the map. Of a wide
    /// line the values that stand a cell or less apart across it, as many as the width has cells;
    /// one that has none makes a gap. Distances on the sky are the sum of those between samples,
    /// not known from where the line leaves the sky. Non-zero on success, else `error` is a line:
    /// corners that are no places or too far, a line of no length, one of which nothing lies on the
    /// map.
    int take(const AMatrixAccess& cells, const ProfileLine& line, const SkyCoordinates& sky,
             const MapFrame& frame, std::string& error);
};

/// The value of a map between its cells; NaN beyond the centres of the outermost ones, and where a
/// cell that counts is blank.
PAVANE_API double bilinear(const AMatrixAccess& cells, double column, double row);

}  // namespace pavane
