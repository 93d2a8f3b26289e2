#pragma once

#include "pavane/trackers/shapes/AreaLayer.h"

namespace pavane
{

class ARPTrackerArray;

/// The outlines of the shapes, ellipses as 720 points.
PAVANE_API std::vector<AreaOutline> outlinesOf(const ARPTrackerArray& areas);

}  // namespace pavane
