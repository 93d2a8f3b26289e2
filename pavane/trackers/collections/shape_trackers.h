#pragma once

#include "pavane/axes/ranges/AMnMxMCTransform.h"
#include "pavane/trackers/masks/AAreaArray.h"
#include "pavane/trackers/regions/RegionNotes.h"
#include "pavane/trackers/shapes/AreaShape.h"
#include "platform/api.h"

#include <vector>

namespace pavane
{

class ABTracker;
class ARPTrackerArray;
class CWnd;

/// A new tracker in data values with the shape; the caller owns it. Of a turned rectangle that
/// none can hold exactly it is the polygon. Null for a shape without size, a map without steps, or
/// without memory.
PAVANE_API ABTracker* newTracker(const AreaShape& shape, const AMnMxMCTransform& map);

/// The shape of a tracker in cells of the map. 0 for a shape without size, an open polygon, a map
/// without steps, or a class that is none of the four shapes.
PAVANE_API int shapeOf(const ABTracker& tracker, const AMnMxMCTransform& map, AreaShape& shape);

/// Appends the areas' polygons of whole cells of a map, empty ones too: what their mask fills, and
/// what an area file holds, which is none of the never-clean ones. Non-zero unless memory is short.
PAVANE_API int polygonsOf(const ARPTrackerArray& trackers, int columns, int rows,
                          const TMinMax& mapRange, AAreaArray& areas);

/// Appends a tracker for each shape as one step of undo (`window` may be null). What is not held,
/// or as a polygon only, is noted as "area 3: ...". Returns how many were added.
PAVANE_API int addShapes(ARPTrackerArray& trackers, CWnd* window,
                         const std::vector<AreaShape>& shapes, const AMnMxMCTransform& map,
                         RegionNotes& notes);

/// The shapes of all trackers in order; those without one are noted.
PAVANE_API std::vector<AreaShape> shapesOf(const ARPTrackerArray& trackers,
                                           const AMnMxMCTransform& map, RegionNotes& notes);

}  // namespace pavane
