#pragma once

#include "platform/geometry.h"

namespace pavane
{

/// The largest rectangle inside `plot` that columns x rows square cells fill, in the middle. `plot`
/// itself when there is no cell, and when the cells would fill a sliver too thin for its labels.
CRect squareCells(const CRect& plot, int columns, int rows);

}  // namespace pavane
