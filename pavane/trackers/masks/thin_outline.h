#pragma once

#include "platform/api.h"
#include "platform/geometry.h"

#include <vector>

namespace pavane
{

/// The closed outline without the vertices that are nearer than `distance` cells to the line
/// through those that stay (Douglas and Peucker 1973); three at least where there are so many.
PAVANE_API std::vector<CPoint> thinOutline(const std::vector<CPoint>& outline, double distance);

}  // namespace pavane
