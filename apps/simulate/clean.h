#pragma once

#include "tessel/AMatrix.h"

#include <vector>

namespace pavane
{

/// A Gaussian beam: full widths at half maximum in cells, the position angle of the major axis in
/// degrees, north through east.
struct CleanBeam {
    double major = 0, minor = 0, angle = 0;
};

/// The Gaussian that has the curvature of a dirty beam's peak at the centre cell: fitted to the
/// logarithm of the cells above half of the peak.
CleanBeam fitBeam(const AMatrix<float>& dirtyBeam);

/// Takes point sources off `map` (Hogbom 1974, A&AS 15, 417): `iterations` times `gain` of the
/// greatest absolute value inside the middle part of the map that the beam, twice as wide as the
/// map, covers; stops below `least`. What is taken off is put back as Gaussians: the restored map.
AMatrix<float> cleaned(AMatrix<float> map, const AMatrix<float>& dirtyBeam, const CleanBeam& beam,
                       int iterations, double gain, double least);

}  // namespace pavane
