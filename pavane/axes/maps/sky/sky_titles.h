#pragma once

#include "platform/api.h"
#include "platform/types.h"
#include "tessel/sky_frame.h"

namespace pavane
{

/// "Right ascension (ICRS)", "Galactic latitude", "Relative declination (FK5 at 1975)" ...
PAVANE_API CString skyAxisTitle(const SkyFrame& frame, int isLatitude, int isRelative);

}  // namespace pavane
