#pragma once

#include "pavane/trackers/shapes/ShapeValues.h"
#include "platform/api.h"

namespace pavane
{

// Handles of shapes as the keyboard goes through them, in the coordinates of the shape. Upright
// rectangles have 8 (corners clockwise from (left, top), then the middles of top, right, bottom and
// left), turned ones a ninth that turns, ellipses the middles and the one that turns, polygons
// their vertices.

/// How many handles a shape has.
PAVANE_API int handleCount(const ShapeValues& shape);
/// Place of a handle that exists.
PAVANE_API APoint<double> handlePoint(const ShapeValues& shape, int handle);
/// Moves one handle: the opposite side stays where it is, the handle that turns turns. 0, and the
/// shape as it was, where a side would shrink to nothing or a number leave what doubles hold.
PAVANE_API int moveHandle(ShapeValues& shape, int handle, APoint<double> offset);

/// Adds one offset to everything.
PAVANE_API void moveShape(ShapeValues& shape, APoint<double> offset);
/// What the shape covers, its turn included; left and top are the smaller values.
PAVANE_API ARect<double> shapeBox(const ShapeValues& shape);
/// Middle of the rectangle, or mean of the vertices.
PAVANE_API APoint<double> shapeCentre(const ShapeValues& shape);
/// Non-zero when all numbers are finite, and polygons have a vertex.
PAVANE_API int isFinite(const ShapeValues& shape);

}  // namespace pavane
