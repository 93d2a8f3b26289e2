#pragma once

#include "pavane/axes/maps/MapFrame.h"
#include "pavane/trackers/masks/AAreaArray.h"
#include "pavane/trackers/shapes/AreaLayer.h"

#include <vector>

namespace pavane
{

class ARPTrackerArray;

/// The polygons through the centres of their cells.
std::vector<AreaOutline> outlinesOf(const AAreaArray& areas, const MapFrame& frame);
/// The shapes, ellipses as 720 points.
std::vector<AreaOutline> outlinesOf(const ARPTrackerArray& areas);

}  // namespace pavane
