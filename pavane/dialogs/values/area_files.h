#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/trackers/regions/region_place.h"
#include "pavane/trackers/regions/RegionNotes.h"
#include "platform/api.h"
#include "tessel/SkyCoordinates.h"

#include <string>

namespace pavane
{

class AreaCollection;

/// The map that areas lie on, for the forms of files that count in cells or on the sky.
struct AreaMap {
    TMinMax range;  ///< values (RP) at the centres of its first and last cells
    int rows = 0, columns = 0;
    const SkyCoordinates* sky = nullptr;        ///< outlives it; null, or not set, off the sky
    RegionSystem system = RegionSystem::image;  ///< in which region files are written
};

// Files of areas without a window: the ending of the name says the form, ".areas" the collection's
// own, ".reg" and ".crtf" regions, ".cma" polygons of cells.

/// Reads a file into areas in the place of what there is, one step of undo. Non-zero on success; a
/// file of which only a part could be read is one, and `notes` tells. Else 0, and one line in
/// `error` that names the file; the areas are as they were.
PAVANE_API int readAreas(const std::string& file, const AreaMap& map, AreaCollection& areas,
                         RegionNotes& notes, std::string& error);
/// What would be lost or changed by writing them under this name.
PAVANE_API RegionNotes lossesOfAreas(const std::string& file, const AreaMap& map,
                                     const AreaCollection& areas);
/// Writes them, whole or not at all. Non-zero on success, else one line in `error`.
PAVANE_API int writeAreas(const std::string& file, const AreaMap& map, const AreaCollection& areas,
                          std::string& error);

}  // namespace pavane
