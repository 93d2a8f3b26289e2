#pragma once

#include "apps/simulate/observation.h"
#include "tessel/AMatrix.h"

namespace pavane
{

/// The dirty map of `samples`: size x size cells of `cell` arcseconds, Jy/beam, row 0 in the south,
/// column 0 in the east; the phase centre lies at row and column size / 2. With a non-zero `beam`
/// every sample counts as 1 Jy: the dirty beam, 1 at the phase centre. Samples have equal weights,
/// tempered where many share a cell of the grid. Size is even; empty without memory.
AMatrix<float> dirtyImage(const Visibilities& samples, int size, double cell, int beam);

}  // namespace pavane
