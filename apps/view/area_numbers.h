#pragma once

#include "apps/view/inputs.h"
#include "apps/view/options.h"
#include "pavane/measures/areas/AreaTable.h"
#include "pavane/trackers/areas/area_file.h"

#include <string>
#include <vector>

namespace pavane
{

class AAreaArray;
class ARPTrackerArray;

/// The areas of a collection, or of a file of polygons, in cells of the map.
std::vector<MeasuredArea> measuredAreas(const ARPTrackerArray& areas, const AreaPlace& place);
std::vector<MeasuredArea> measuredAreas(const AAreaArray& areas);

/// The number from 0 of the area of a name or a number from 1; a name counts first. -1 for none,
/// and for a name that several have.
int areaOfName(const std::vector<MeasuredArea>& areas, const std::string& name);

/// Finds the numbers of the areas on the map that was read, or on each of the planes that the
/// options name. Non-zero on success; else 0 and one line in `error` that names the file.
int fillAreaTable(const ViewOptions& options, const ViewInputs& inputs, AreaTable& table,
                  std::string& error);

}  // namespace pavane
