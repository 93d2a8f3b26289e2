#pragma once

#include "pavane/containers/APoint.h"
#include "pavane/containers/ARect.h"

#include <vector>

namespace pavane
{

/// The shape of one area as numbers, in data values (RP) or in pixels: apart from the classes that
/// draw it. A plain value.
struct ShapeValues {
    enum class Kind { rectangle, rotatedRectangle, ellipse, polygon };
    Kind kind = Kind::rectangle;
    ARect<double> rect;                  ///< of all but polygons; either order of its edges
    double angle = 0;                    ///< radians, of the turned kinds
    std::vector<APoint<double>> points;  ///< of polygons
    friend bool operator==(const ShapeValues&, const ShapeValues&) = default;
};

}  // namespace pavane
