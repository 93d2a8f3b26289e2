#pragma once

#include "pavane/axes/maps/cells/MapBeam.h"
#include "tessel/AMatrix.h"

namespace pavane
{

/// Takes point sources off `map` (Hogbom 1974, A&AS 15, 417): `iterations` times `gain` of the
/// greatest absolute value inside the middle part of the map that the beam, twice as wide as the
/// map, covers; stops below `least`. What is taken off is put back as Gaussians, `beam` in cells:
/// the restored map.
AMatrix<float> cleaned(AMatrix<float> map, const AMatrix<float>& dirtyBeam, const MapBeam& beam,
                       int iterations, double gain, double least);

}  // namespace pavane
