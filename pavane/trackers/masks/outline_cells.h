#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/containers/AArray.h"
#include "pavane/containers/APoint.h"
#include "pavane/containers/ARect.h"
#include "platform/api.h"
#include "platform/geometry.h"

namespace pavane
{

/// A map of cells as masks know it: columns, rows and the values at its first and last of each, in
/// either order.
struct MapCells {
    int columns = 0;
    int rows = 0;
    TMinMax range;
    /// Non-zero when values can be turned into cells.
    int usable() const;
};

/// Points of an ellipse's outline (RP; `angle` in radians) that its mask asks for: 8 for each cell
/// of the larger semi-axis, 16 to 65536, a multiple of 4.
PAVANE_API int ellipsePointsForMask(const ARect<double>& rect, double angle, const MapCells& map);

/// Cells of an outline in data values, as AMnMxMCTransform rounds them, but that a value within
/// 1e-9 cells of a half counts as one; replaces `cells`. 0 and no cells without a usable map or
/// without memory.
PAVANE_API int cellsOf(const AArray<APoint<double>>& outline, const MapCells& map,
                       AArray<CPoint>& cells);

}  // namespace pavane
