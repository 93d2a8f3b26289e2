#pragma once

#include "pavane/axes/maps/MapFrame.h"
#include "pavane/trackers/collections/area_outlines.h"
#include "pavane/trackers/masks/AAreaArray.h"

#include <vector>

namespace pavane
{

/// The polygons through the centres of their cells.
std::vector<AreaOutline> outlinesOf(const AAreaArray& areas, const MapFrame& frame);

}  // namespace pavane
