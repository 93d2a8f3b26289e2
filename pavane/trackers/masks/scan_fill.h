#pragma once

#include "platform/api.h"
#include "platform/geometry.h"
#include "tessel/ABitMatrix.h"
#include "tessel/StopFlag.h"

namespace pavane
{

/// Sets the bits of the closed polygon `points[0..n-1]` (cells: x = column, y = row, the last point
/// joined to the first) in `mask`; bits that are set stay set, cells outside are left out.
///
/// Each row is filled between its first and second, third and fourth ... crossing with the edges,
/// both ends included; an odd last crossing counts for nothing. A corner between a rise and a fall
/// is two crossings, one in the middle of a run is one. Level edges are filled as they are. Where
/// an edge crosses a row, the column is cut towards the edge's start.
///
/// `overflow` becomes 1, and is otherwise left alone, when a row of the mask has more than
/// `rowCapacity` crossings; these count all the same. Time grows with the crossings inside the
/// rows of the mask. Returns 0 when there is no memory: the polygon may be filled in part.
PAVANE_API int fillPolygon(ABitMatrix& mask, const CPoint* points, int n, int rowCapacity,
                           int& overflow);
/// The same for whoever may lose patience: a stop leaves the rest of the rows as they are.
PAVANE_API int fillPolygon(ABitMatrix& mask, const CPoint* points, int n, int rowCapacity,
                           int& overflow, const StopFlag* stop);

}  // namespace pavane
