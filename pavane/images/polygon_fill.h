#pragma once

#include "platform/geometry.h"

#include <cstdint>

namespace pavane
{

/// The inside of a closed figure, as toggles: byte (row y, column x) of `toggles`, one row after
/// the other for the rows and columns of `box` (edges included) and one column more, is odd where
/// the row changes between outside and inside just before that pixel, by the even-odd rule of
/// ADIBase::Polygon. The buffer comes cleared. Exact for any ints.
void markCrossings(const CPoint* points, int n, const CRect& box, unsigned char* toggles);

}  // namespace pavane
