#pragma once

#include "pavane/trackers/masks/AAreaArray.h"
#include "pavane/trackers/masks/LoadReport.h"
#include "platform/api.h"

#include <string>

namespace pavane
{

// Area files (*.cma): the number of polygons (int32), then for each the number of its points
// (int32) and that many pairs x, y (int32 each); little-endian, cells of the map from 0.

/// Reads a whole area file. A file that cannot be read, a negative number, or a length that is not
/// exactly what the numbers say gives 0, no areas, and one line in `error` that names the file.
PAVANE_API int readCellAreaFile(const std::string& file, AAreaArray& areas, std::string& error);

/// The same for a damaged file: takes the polygons up to the first fault, which `report` tells. 0
/// when the file cannot be opened or has no number of polygons to believe.
PAVANE_API int readCellAreaFile(const std::string& file, AAreaArray& areas, LoadReport& report,
                                std::string& error);

/// Writes an area file under a temporary name in the same folder and renames it. A failure gives 0
/// and one line in `error`; a file of the name stays as it was.
PAVANE_API int writeCellAreaFile(const std::string& file, const AAreaArray& areas,
                                 std::string& error);

}  // namespace pavane
