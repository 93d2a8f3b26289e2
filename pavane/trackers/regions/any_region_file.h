#pragma once

#include "pavane/trackers/regions/area_kind.h"
#include "pavane/trackers/regions/RegionNotes.h"
#include "pavane/trackers/shapes/AreaShape.h"
#include "platform/api.h"
#include "tessel/SkyCoordinates.h"

#include <string>
#include <vector>

namespace pavane
{

/// Reads a file of regions, ds9, crtf or windows, that a user chose: beyond what its reader says a
/// last line that may be cut and areas that the text promises and does not hold are noted.
/// `promised`: how many areas the file holds or says it does. Non-zero when it is such a file, even
/// if not all of it could be read; else 0 and `error`, one line without the file's name. Without an
/// area and without a loss the file says itself that it holds none.
PAVANE_API int readRegionFile(const std::string& file, AreaKind kind, const SkyCoordinates* sky,
                              std::vector<AreaShape>& shapes, RegionNotes& notes, int& promised,
                              std::string& error);

}  // namespace pavane
