#pragma once

#include "apps/view/area_outlines.h"
#include "apps/view/map_frame.h"
#include "pavane/tables/components/AComponents.h"

namespace pavane
{

class ABAxis;
class CDC;

// What is drawn over a map that has been laid out: two-toned, light on dark, so that it is seen on
// any colour. `unit` is the size of a pixel of 96 per inch in logical units of the context.

void drawAreas(CDC& dc, const ABAxis& axis, const std::vector<AreaOutline>& areas, int unit);

/// The outline of each component; a point as a cross.
void drawModel(CDC& dc, const ABAxis& axis, const MapFrame& frame, const AComponents& model,
               int unit);

}  // namespace pavane
