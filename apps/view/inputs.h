#pragma once

#include "apps/view/map_frame.h"
#include "apps/view/options.h"
#include "apps/view/uv_points.h"
#include "pavane/maps/map_statistics.h"
#include "pavane/tables/AComponents.h"
#include "pavane/trackers/AAreaArray.h"
#include "tessel/ABitMatrix.h"
#include "tessel/fits_map.h"

#include <string>

namespace pavane
{

/// Everything that the command line names, read and checked, and what follows from it.
struct ViewInputs {
    FitsMap map;
    MapFrame frame;
    MapRange range;  ///< of its finite cells, and where the peak lies
    MapNoise noise;
    AAreaArray areas;  ///< polygons in matrix cells; empty without --areas
    ABitMatrix mask;   ///< of the areas; all ones without any
    AComponents model;
    UvPoints uv;
};

/// Reads the map, the areas, the model and the u,v points. Non-zero on success; else 0 and `error`
/// is one line that names the file and what is wrong with it.
int readInputs(const ViewOptions& options, ViewInputs& inputs, std::string& error);

}  // namespace pavane
