#pragma once

#include "apps/view/area_outlines.h"
#include "pavane/axes/maps/MapFrame.h"
#include "pavane/tables/components/AComponents.h"

namespace pavane
{

class ABAxis;
class CDC;

// What is drawn over a map that has been laid out: two-toned, light on dark, so that it is seen on
// any colour.

void drawAreas(CDC& dc, const ABAxis& axis, const std::vector<AreaOutline>& areas);

/// The outline of each component; a point as a cross.
void drawModel(CDC& dc, const ABAxis& axis, const MapFrame& frame, const AComponents& model);

}  // namespace pavane
