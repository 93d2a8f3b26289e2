#pragma once

#include "platform/api.h"
#include "platform/geometry.h"

#include <vector>

namespace pavane
{

/// Appends rectangles that together cover a line through the points (from the last to the first
/// too, when closed), `margin` pixels on each side: thin ones along upright and level parts, a
/// chain of small boxes along slanted ones.
PAVANE_API void addOutlineStrips(std::vector<CRect>& strips, const CPoint* points, int n,
                                 bool closed, int margin);

}  // namespace pavane
