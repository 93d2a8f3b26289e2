#pragma once

#include "pavane/trackers/regions/region_place.h"
#include "pavane/trackers/shapes/AreaShape.h"

#include <functional>
#include <string>
#include <vector>

namespace pavane
{

/// Appends one shape to the text of a region file. In the image system it is in cells; on the sky
/// its positions and sizes are in degrees and its angle runs from west towards north.
using RegionLine = std::function<void(const AreaShape& shape, std::string& text)>;

/// Writes every shape that can be written through `line` and notes the others by their number;
/// `frame` is that of positions on the sky. With `excludedLast` never-clean areas stand behind all
/// others, for programs that take a file line by line.
void appendRegionLines(const std::vector<AreaShape>& shapes, RegionSystem system,
                       const SkyCoordinates* sky, const SkyFrame& frame, const RegionLine& line,
                       RegionNotes& notes, std::string& text, int excludedLast = 0);

/// Non-zero when the system can be written; else 0 and `error`.
int canWrite(const std::string& file, RegionSystem system, const SkyCoordinates* sky,
             std::string& error);

}  // namespace pavane
