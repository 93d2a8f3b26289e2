#pragma once

#include "apps/view/area_outlines.h"
#include "apps/view/options.h"
#include "apps/view/overlays.h"
#include "apps/view/uv_points.h"
#include "pavane/axes/maps/MapContent.h"
#include "pavane/axes/maps/sky/SkyMarkLayer.h"
#include "pavane/containers/AArray.h"
#include "pavane/tables/components/AComponents.h"
#include "pavane/trackers/shapes/area_label.h"
#include "tessel/ABitMatrix.h"
#include "tessel/SkyCoordinates.h"

#include <memory>
#include <string>
#include <vector>

namespace pavane
{

class RgbImage;

/// An area in cells of the map (x = column, y = row), for the table of its numbers.
struct MeasuredArea {
    AArray<CPoint> cells;
    int isNeverClean = 0;
    AreaLabel label;
    const char* kind = "";
};

/// Everything that the command line names, read and checked, and what follows from it.
struct ViewInputs : MapContent {
    std::vector<AreaOutline> areas;  ///< empty without --areas
    std::vector<MeasuredArea> measured;
    ABitMatrix mask;  ///< of the areas; all ones without any
    AComponents model;
    SkyMarkLayer marks;
    UvPoints uv;
    MapOverlays overlays;
    std::shared_ptr<RgbImage> rgb;  ///< null but for a picture of three maps
    SkyCoordinates sky;             ///< of the grid; not set without one
};

/// Reads the map, the areas, the model and the u,v points. Non-zero on success; else 0 and `error`
/// is one line that names the file and what is wrong with it.
/// `notes` gets what was not taken as it is, each a line with the name of its file. A loss of areas
/// or
/// marks is an error unless options.partial allows it.
int readInputs(const ViewOptions& options, ViewInputs& inputs, std::vector<std::string>& notes,
               std::string& error);

}  // namespace pavane
