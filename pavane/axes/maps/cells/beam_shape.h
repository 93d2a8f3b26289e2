#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/MapBeam.h"
#include "pavane/axes/ranges/TMinMax.h"

#include <vector>

namespace pavane
{

/// A value of a map and where it is, on the axes.
struct BeamPoint {
    double value = 0;
    double x = 0, y = 0;
};

/// What a dirty beam looks like in numbers.
struct BeamShape {
    MapBeam fitted;  ///< unset when no Gaussian fits the main lobe
    BeamPoint peak;
    BeamPoint sideLobe;  ///< farthest from 0 outside the main lobe, also a negative one
    int hasSideLobe = 0;
};

/// A cut through a dirty beam: values at distances from the peak, growing along the position
/// angle. Beyond the map and at blank cells values are not numbers.
struct BeamCut {
    std::vector<double> distance, value;
    /// Where the main lobe falls to half of the peak, at both sides; not numbers where it does not.
    double halfBefore = 0, halfAfter = 0;
    double halfWidth() const { return halfAfter - halfBefore; }
};

/// The main lobe is what one reaches from the peak going down, as far as values lie above 0.
/// `centres` as fitBeam takes them. Non-zero on success; 0 for a map without a value above 0, one
/// whose centres are not apart, and without memory.
PAVANE_API int beamShape(const AMatrixAccess& cells, const TMinMax& centres, BeamShape& shape);

/// The cut through the peak at a position angle in degrees, north (y) through east (growing x), in
/// steps of half a cell or more.
PAVANE_API BeamCut cutBeam(const AMatrixAccess& cells, const TMinMax& centres,
                           const BeamPoint& peak, double angle);

}  // namespace pavane
