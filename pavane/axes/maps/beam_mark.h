#pragma once

#include "pavane/axes/maps/BeamLook.h"
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

/// The hatching of an outline: pairs of points, the ends of lines from lower left to upper right
/// (y upwards) that lie `apart` from each other, measured upwards.
PAVANE_API std::vector<CPointF> beamHatch(const std::vector<CPointF>& outline, double apart);

/// Draws the beam as an ellipse on a small light patch in a corner of the graph rectangle, as
/// `look` says; a beam wider than half of that is left out.
PAVANE_API void drawBeam(CDC& dc, ABAxis& axis, const MapBeam& beam, const BeamLook& look = {});

}  // namespace pavane
