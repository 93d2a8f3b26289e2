#pragma once

#include "pavane/trackers/regions/region_place.h"
#include "pavane/trackers/regions/RegionNotes.h"
#include "pavane/trackers/shapes/AreaShape.h"
#include "platform/api.h"
#include "tessel/SkyCoordinates.h"

#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

// Region files of DS9 (*.reg). Box, circle, ellipse and polygon in the systems image, physical
// (taken as image), icrs, fk5, fk4, galactic and ecliptic become areas; texts are passed over.
// Excluded shapes ("-circle(...)", "!circle(...)", include=0) become never-clean areas, which, as
// there, win over all others wherever they stand; with no others they are left out of the whole
// map. Image coordinates count from 1 there, cells from 0 here. `sky` places the map; null, or not
// set, leaves out what is on the sky.

/// Reads a file; `shapes` and `notes` begin empty. Non-zero on success. 0, and one line in `error`
/// that names the file, when it cannot be read, is no text, or not one of its lines is understood.
PAVANE_API int readDs9Regions(const std::string& file, const SkyCoordinates* sky,
                              std::vector<AreaShape>& shapes, RegionNotes& notes,
                              std::string& error);
/// The same for a text in memory; appends.
PAVANE_API void parseDs9Regions(std::string_view text, const SkyCoordinates* sky,
                                std::vector<AreaShape>& shapes, RegionNotes& notes);

/// The text of a region file. Numbers have all the digits of a double. What cannot be written, or
/// only as a polygon, is noted.
PAVANE_API std::string ds9RegionText(const std::vector<AreaShape>& shapes, RegionSystem system,
                                     const SkyCoordinates* sky, RegionNotes& notes);
/// Writes the file whole or not at all. 0 and one line in `error` when it cannot be written, or
/// when the sky is asked for and the map has none.
PAVANE_API int writeDs9Regions(const std::string& file, const std::vector<AreaShape>& shapes,
                               RegionSystem system, const SkyCoordinates* sky, RegionNotes& notes,
                               std::string& error);

}  // namespace pavane
