#pragma once

#include "pavane/axes/maps/cells/MapBeam.h"
#include "platform/api.h"
#include "platform/geometry.h"

#include <vector>

namespace pavane
{

class ABAxis;
class CDC;

/// The outline of a beam about (0, 0), `count` points; x grows to the right and y upwards, east at
/// the left. `xScale`, `yScale`: device units for one unit of RP.
PAVANE_API std::vector<CPointF> beamOutline(const MapBeam& beam, double xScale, double yScale,
                                            int count);

/// Draws the beam as a hatched ellipse on a small light patch in the lower left corner of the graph
/// rectangle; a beam wider than half of that is left out.
PAVANE_API void drawBeam(CDC& dc, ABAxis& axis, const MapBeam& beam);

}  // namespace pavane
