#pragma once

#include "pavane/measures/maps/GaussianFilter.h"
#include "pavane/measures/maps/smooth_map.h"
#include "tessel/map_steps.h"

namespace pavane
{

/// A beam on the cells of a map.
CellGaussian cellGaussianOf(const SkyBeam& beam, const MapSteps& steps);

}  // namespace pavane
