#pragma once

#include "platform/geometry.h"

#include <cstddef>
#include <vector>

namespace pavane
{

/// A rectangle between pixels, right and bottom included.
struct BoxF {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

/// A piece of a polyline inside a box, and how far along the whole line it begins.
struct CurvePiece {
    std::vector<CPointF> points;
    double distance = 0;
};

/// The pieces of a polyline that lie inside `box`. Points may be as far away as a double goes.
std::vector<CurvePiece> clippedCurve(const CPointF* points, std::size_t count, const BoxF& box);

/// The polygon cut to `box`, which may run along the box's edges.
std::vector<CPointF> clippedPolygon(const CPointF* points, std::size_t count, const BoxF& box);

/// Lines of a hatch across `box`, `spacing` apart and passing through the origin's lattice: pairs
/// of end points.
std::vector<CPointF> hatchLines(int hatch, const BoxF& box, double spacing);

}  // namespace pavane
