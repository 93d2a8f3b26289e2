#pragma once

#include "platform/api.h"
#include "platform/geometry.h"
#include "tessel/ABitMatrix.h"

namespace pavane
{

/// The cells of an area as bits of the smallest block that holds them.
struct AreaCells {
    ABitMatrix mask;  ///< 0 x 0 for an area that sets no cell of the map
    int firstRow = 0, firstColumn = 0;
};

/// Those that a closed polygon of cells (x = column, y = row) sets in a map of so many rows and
/// columns, outline included, as FillMatrixForItem fills it. 0 without memory.
PAVANE_API int cellsOfPolygon(const CPoint* points, int n, int rows, int columns, AreaCells& cells);

}  // namespace pavane
