#pragma once

#include "pavane/trackers/regions/RegionNotes.h"
#include "pavane/trackers/shapes/AreaShape.h"
#include "platform/api.h"
#include "tessel/SkyCoordinates.h"

#include <string>
#include <string_view>
#include <vector>

namespace pavane
{

// Files of CLEAN windows as Difmap keeps them (*.win): a rectangle a line, xmin xmax ymin ymax in
// mas from the reference position in the plane of the map, x towards east, y towards north; blanks
// or commas between the numbers, the edges in any order, "!" before what is a comment. They have a
// place only on a map that is on the sky. Where its cells run along the sky a window is a
// rectangle, where they are turned a turned one, where they are oblique a polygon.

/// Reads a file; `shapes` and `notes` begin empty. Non-zero on success. 0, and one line in `error`
/// that names the file, when it cannot be read, is no text, or not one of its lines is understood.
PAVANE_API int readWindowRegions(const std::string& file, const SkyCoordinates* sky,
                                 std::vector<AreaShape>& shapes, RegionNotes& notes,
                                 std::string& error);
/// The same for a text in memory; appends.
PAVANE_API void parseWindowRegions(std::string_view text, const SkyCoordinates* sky,
                                   std::vector<AreaShape>& shapes, RegionNotes& notes);

/// The text of such a file. Numbers have all the digits of a double. What is no rectangle along
/// east and north, and never-clean areas, are left out, which is noted; names and colours are lost,
/// which is noted once.
PAVANE_API std::string windowRegionText(const std::vector<AreaShape>& shapes,
                                        const SkyCoordinates* sky, RegionNotes& notes);
/// Writes the file whole or not at all. 0 and one line in `error` when it cannot be written, or
/// when the map has no sky.
PAVANE_API int writeWindowRegions(const std::string& file, const std::vector<AreaShape>& shapes,
                                  const SkyCoordinates* sky, RegionNotes& notes,
                                  std::string& error);

}  // namespace pavane
