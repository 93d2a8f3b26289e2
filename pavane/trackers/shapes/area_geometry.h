#pragma once

#include "pavane/trackers/shapes/AreaShape.h"
#include "platform/api.h"

namespace pavane
{

/// Offsets in one plane to offsets in another: to = m * from.
struct PlaneMap {
    double m[2][2] = {{1, 0}, {0, 1}};
    APoint<double> operator()(double x, double y) const
    {
        return {m[0][0] * x + m[0][1] * y, m[1][0] * x + m[1][1] * y};
    }
};

/// The map back. A map onto a line gives not-a-number.
PlaneMap inverse(const PlaneMap& map);

/// Non-zero when a shape can be drawn at all: finite numbers of no more than 1e9, sizes above 0,
/// three vertices or more.
PAVANE_API int isWhole(const AreaShape& shape);

/// The outline, in order around the shape: four corners from columns towards rows, the vertices, or
/// points of an ellipse from the end of its first axis on, from rows towards columns; of a reversed
/// shape the other way round. So run shapes drawn where x falls with the column. `ellipsePoints`
/// below 3 takes 8 for each cell of the larger semi-axis, 16 to 65 536.
PAVANE_API std::vector<APoint<double>> outlineOf(const AreaShape& shape, int ellipsePoints = 0);

/// Sizes and angle of a rectangle in another plane, and how far it is from being one there: the
/// cosine between its sides, 0 when they stay perpendicular. The result is the rectangle with the
/// sides' lengths along the first side.
double mapRectangle(const PlaneMap& map, AreaShape& shape);

/// The same for an ellipse, which stays one in every plane.
void mapEllipse(const PlaneMap& map, AreaShape& shape);

/// Makes a turned rectangle whose sides run along columns and rows, to within 2e-7 cells, an
/// unturned one.
void straighten(AreaShape& shape);

/// The polygon of the shape's outline.
AreaShape asPolygon(const AreaShape& shape);

}  // namespace pavane
