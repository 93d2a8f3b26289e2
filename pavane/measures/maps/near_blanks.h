#pragma once

#include "tessel/AMatrix.h"

#include <cstdint>

namespace pavane
{

/// How many finite cells lie within `reach` of a cell that is not, or of one beyond the edge;
/// columns and rows are apart by so much, in the unit of the reach. -1 without memory.
std::int64_t cellsNearBlanks(const AMatrix<float>& cells, double column, double row, double reach);

}  // namespace pavane
