#pragma once

#include "pavane/trackers/ATracker.h"
#include "pavane/trackers/shapes/shape_handles.h"

namespace pavane
{

/// The shape of a tracker as numbers: pixels, or data values for the trackers that are kept in
/// these. 0 for classes that have none.
inline int shapeOf(const ATracker& tracker, ShapeValues& shape)
{
    shape = {};
    return tracker.GetShape(shape);
}

/// The other way; pixels are cut towards zero. 0, and the tracker as it was, for another kind of
/// shape and for numbers that are not finite.
inline int setShapeOf(ATracker& tracker, const ShapeValues& shape)
{
    return isFinite(shape) && tracker.SetShape(shape);
}

}  // namespace pavane
