#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/MapBeam.h"
#include "pavane/axes/ranges/TMinMax.h"

namespace pavane
{

/// The Gaussian that fits the main lobe of a dirty beam best, in least squares of the cells above
/// 0.35 of the peak that hang together with it, by a side or a corner; its height and centre are
/// fitted too. `centres` are those of a map graph: x and y of the first and the last column and
/// row. The position angle is counted from growing y (north) to growing x (east), in [-90, 90).
///
/// 0, and `beam` keeps what it holds, when these cells touch the edge of the map, are fewer than 6
/// or more than a million, or make no peak, and when the centres of a direction are not apart.
PAVANE_API int fitBeam(const AMatrixAccess& cells, const TMinMax& centres, MapBeam& beam);

}  // namespace pavane
