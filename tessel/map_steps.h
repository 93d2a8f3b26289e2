#pragma once

#include "tessel/api.h"
#include "tessel/map_header.h"

namespace pavane
{

/// How the matrix of a header goes from cell to cell: the one place that turns it into steps and a
/// turn. On the sky all are degrees, elsewhere units of the axes.
struct MapSteps {
    double column = -1;  ///< to the next column, signed
    double row = 1;      ///< to the next row, signed
    /// Rows and columns run askew to longitude and latitude. Then `row` is above 0, `column` has
    /// the sign of the matrix's determinant, and the rest is in `turn`. Else the signs are those of
    /// the diagonal and there is no turn, also in a map that is upside down.
    int isTurned = 0;
    double turn[2][2] = {{1, 0}, {0, 1}};  ///< from (longitude, latitude) to (column, row) offsets
    /// (longitude, latitude) = sky * (columns, rows), from the reference pixel; elsewhere the axes.
    double sky[2][2] = {{-1, 0}, {0, 1}};
    double cellArea = 1;  ///< of one cell, above 0
};

/// The steps of a map; a matrix that maps cells onto a line, or is not finite, gives steps of 1
/// where there is none. A turn below 0.01 degrees, two cells in the corner of a big map, is none.
PAVANE_API MapSteps stepsOf(const MapHeader& header);

}  // namespace pavane
