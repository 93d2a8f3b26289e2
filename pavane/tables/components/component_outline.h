#pragma once

#include "pavane/containers/AArray.h"
#include "pavane/containers/APoint.h"
#include "pavane/tables/components/ACompItem.h"
#include "platform/api.h"

namespace pavane
{

/// The outline of a component on the sky, in arcseconds from the centre of the map (x east, y
/// north). Returns its centre. `points` becomes the closed outline, the first point again at the
/// end: the half-maximum ellipse of a Gaussian, the outer edge of disks, rings and spheres, a strip
/// there and back. A point, or a component without size, has no outline.
PAVANE_API APoint<double> componentOutline(const ACompItem& item, AArray<APoint<double>>& points);

}  // namespace pavane
