#pragma once

#include "platform/geometry.h"

namespace pavane
{

/// The largest rectangle inside `plot` that columns x rows square cells fill, in the middle. `plot`
/// itself when there is no cell, and when so few rows or columns would fill a sliver too thin for
/// labels.
CRect squareCells(const CRect& plot, int columns, int rows);

}  // namespace pavane
