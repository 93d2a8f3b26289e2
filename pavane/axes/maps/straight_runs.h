#pragma once

#include "platform/geometry.h"

#include <vector>

namespace pavane
{

/// Leaves out points of a line, in place, that lie within `tolerance` of the straight run between
/// those that stay, in the units of the points. The first and the last point stay, and so does
/// each point where the line turns back. One pass (sleeve fitting, Zhao and Saalfeld 1997).
void keepStraightRuns(std::vector<CPointF>& points, double tolerance);

}  // namespace pavane
