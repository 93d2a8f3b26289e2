#pragma once

#include "pavane/axes/maps/MapFrame.h"
#include "pavane/containers/APoint.h"
#include "pavane/trackers/masks/AAreaArray.h"

#include <vector>

namespace pavane
{

class ARPTrackerArray;

/// A closed curve in data values (RP), from the last point back to the first.
using AreaOutline = std::vector<APoint<double>>;

/// The polygons through the centres of their cells.
std::vector<AreaOutline> outlinesOf(const AAreaArray& areas, const MapFrame& frame);
/// The shapes, ellipses as 720 points.
std::vector<AreaOutline> outlinesOf(const ARPTrackerArray& areas);

}  // namespace pavane
