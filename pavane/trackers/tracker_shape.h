#pragma once

#include "pavane/trackers/shapes/ShapeValues.h"
#include "platform/api.h"

namespace pavane
{

class ATracker;

/// The shape of a tracker of any of the library's kinds as numbers: pixels, or data values for the
/// trackers that are kept in these. 0 for other kinds.
PAVANE_API int shapeOf(const ATracker& tracker, ShapeValues& shape);
/// The other way; pixels are cut towards zero. 0, and the tracker as it was, for another kind of
/// shape and for numbers that are not finite.
PAVANE_API int setShapeOf(ATracker& tracker, const ShapeValues& shape);

}  // namespace pavane
