#pragma once

#include "pavane/trackers/regions/region_place.h"
#include "pavane/trackers/regions/RegionNotes.h"
#include "pavane/trackers/shapes/AreaShape.h"
#include "platform/api.h"
#include "tessel/SkyCoordinates.h"

#include <string>
#include <vector>

namespace pavane
{

/// The files that hold areas for other programs.
enum class AreaFileFormat {
    cells,   ///< *.cma, polygons of whole cells
    ds9,     ///< *.reg
    crtf,    ///< *.crtf
    windows  ///< *.win
};

/// The format that a name's suffix stands for: .reg, .crtf, .win, else cells.
PAVANE_API AreaFileFormat areaFormatOf(const std::string& file);

/// Reads areas from a file of any of the formats; a first line that begins with #CRTF decides, then
/// the suffix. `shapes` and `notes` begin empty. 0 and one line in `error` as the readers of the
/// formats say.
PAVANE_API int readAreaShapes(const std::string& file, const SkyCoordinates* sky,
                              std::vector<AreaShape>& shapes, RegionNotes& notes,
                              std::string& error);

/// Writes areas in the format, whole or not at all; `system` does not matter for cells and
/// windows, which cannot hold never-clean areas (`notes.firstLoss` tells). 0 and one line in
/// `error` as the writers of the formats say.
PAVANE_API int writeAreaShapes(const std::string& file, AreaFileFormat format,
                               const std::vector<AreaShape>& shapes, RegionSystem system,
                               const SkyCoordinates* sky, RegionNotes& notes, std::string& error);

}  // namespace pavane
