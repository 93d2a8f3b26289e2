#pragma once

#include "tessel/AMatrix.h"

namespace pavane
{

/// The bicubic interpolation (Keys 1981, a = -1/2) of cells at a place, from 0; NaN where one of
/// the cells that it takes in is not finite or beyond the edge. On a cell's centre, to 1e-5 cells,
/// only that one counts.
float bicubicAt(const AMatrix<float>& cells, double column, double row);

}  // namespace pavane
