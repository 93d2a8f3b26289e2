#pragma once

#include "pavane/axes/ranges/AMnMxMCTransform.h"
#include "pavane/trackers/shapes/AreaShape.h"
#include "pavane/trackers/shapes/ShapeValues.h"
#include "platform/api.h"

namespace pavane
{

// Shapes between cells of a map (MP) and data values (RP) through the map's transform. Values may
// fall with the column or the row, and steps may differ: angles and sizes are converted with the
// shape, an ellipse stays an ellipse, and a turned rectangle that would be off by more than 1e-6
// cells at its corners becomes a polygon.

/// The shape in data values. The left edge of a rectangle is at its first column, its top at its
/// last row, as on a screen whose rows grow upwards. Turned shapes have left below right, as drawn
/// ones do, and top and bottom in the order in which the outline runs the same way round: the mask
/// is the same to the cell. 0 for a shape without size or a map without steps.
PAVANE_API int valuesOf(const AreaShape& shape, const AMnMxMCTransform& map, ShapeValues& values);

/// The shape in cells; sizes are positive whatever the order of the edges. 0 as above.
PAVANE_API int shapeOf(const ShapeValues& values, const AMnMxMCTransform& map, AreaShape& shape);

}  // namespace pavane
