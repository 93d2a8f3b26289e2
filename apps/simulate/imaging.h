#pragma once

#include "apps/simulate/observation.h"
#include "tessel/AMatrix.h"

namespace pavane
{

/// Weights between natural and uniform: a sample that shares a cell of the aperture plane with n -
/// 1 others counts 1 / sqrt(n). Cells are as wide as a map of `field` arcseconds resolves. A map
/// and the beam that belongs to it need the same weights.
void temperWeights(Visibilities& samples, double field);

/// The dirty map of `samples`: size x size cells of `cell` arcseconds, Jy/beam, row 0 in the south,
/// column 0 in the east; the phase centre lies at row and column size / 2. With a non-zero `beam`
/// every sample counts as 1 Jy: the dirty beam, 1 at the phase centre. Size is even; empty without
/// memory.
AMatrix<float> dirtyImage(const Visibilities& samples, int size, double cell, int beam);

}  // namespace pavane
