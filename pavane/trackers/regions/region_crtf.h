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

// Region files of CASA (*.crtf). box, centerbox, rotbox, circle, ellipse and poly become areas, in
// pixels (from 0, as cells; so are all numbers under coord=IMAGE, whatever unit stands behind them)
// or on the sky in ICRS, J2000, B1950, GALACTIC and ECLIPTIC; texts and annotations are passed
// over. Regions with a '-' in front are excluded and become never-clean areas. Other programs work
// such files off line by line, so that writers put them behind all others; here they win over all
// others wherever they stand. The angle of a rotbox turns it counter-clockwise as seen on the sky,
// that of an ellipse is the position angle of its first axis, from north (in pixels: from growing
// rows) through east. `sky` places the map; null, or not set, leaves out what is on the sky.

/// Reads a file; `shapes` and `notes` begin empty. Non-zero on success. 0, and one line in `error`
/// that names the file, when it cannot be read or does not begin with "#CRTF".
PAVANE_API int readCrtfRegions(const std::string& file, const SkyCoordinates* sky,
                               std::vector<AreaShape>& shapes, RegionNotes& notes,
                               std::string& error);
/// The same for a text in memory, whose first line does not matter; appends.
PAVANE_API void parseCrtfRegions(std::string_view text, const SkyCoordinates* sky,
                                 std::vector<AreaShape>& shapes, RegionNotes& notes);

/// The text of a region file. Numbers have all the digits of a double. What cannot be written, or
/// only as a polygon, is noted.
PAVANE_API std::string crtfRegionText(const std::vector<AreaShape>& shapes, RegionSystem system,
                                      const SkyCoordinates* sky, RegionNotes& notes);
/// Writes the file whole or not at all. 0 and one line in `error` when it cannot be written, or
/// when the sky is asked for and the map has none.
PAVANE_API int writeCrtfRegions(const std::string& file, const std::vector<AreaShape>& shapes,
                                RegionSystem system, const SkyCoordinates* sky, RegionNotes& notes,
                                std::string& error);

}  // namespace pavane
