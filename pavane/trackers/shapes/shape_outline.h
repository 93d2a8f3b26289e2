#pragma once

#include "pavane/containers/AArray.h"
#include "pavane/trackers/shapes/ShapeValues.h"
#include "platform/api.h"

namespace pavane
{

// Closed outlines of shapes in data values, in order around the shape: what masks fill and what is
// drawn. They replace `points`; without memory these have fewer points than asked for.

/// (left, top), (right, top), (right, bottom), (left, bottom).
PAVANE_API void rectOutline(const ARect<double>& rect, AArray<APoint<double>>& points);
/// The same corners turned about the centre, from the x towards the y axis.
PAVANE_API void turnedOutline(const ARect<double>& rect, double angle,
                              AArray<APoint<double>>& points);
/// `count` points of the ellipse inscribed in the turned rectangle, 65536 at most, from the end of
/// the first semi-axis on; a count below 1 takes 720.
PAVANE_API void ellipseOutline(const ARect<double>& rect, double angle, int count,
                               AArray<APoint<double>>& points);
/// Of any shape; `count` is for ellipses.
PAVANE_API void outlineOf(const ShapeValues& shape, int count, AArray<APoint<double>>& points);

}  // namespace pavane
