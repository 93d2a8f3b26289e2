#pragma once

#include "platform/api.h"
#include "platform/geometry.h"

#include <vector>

namespace pavane
{

/// Appends the parts of parallel lines at 45 degrees, `spacing` apart along x, that lie inside a
/// closed curve and cross `box`; all in one kind of units. Lines of all curves are parts of one
/// lattice, so that neighbours match. Nothing for a spacing below 1 or points that are not finite.
PAVANE_API void addHatching(const std::vector<CPointF>& curve, const CRect& box, double spacing,
                            std::vector<std::vector<CPointF>>& lines);

}  // namespace pavane
