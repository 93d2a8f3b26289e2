#pragma once

#include "platform/geometry.h"

namespace pavane
{

/// The largest rectangle inside `plot` in which a span of xSpan by ySpan (map units, above 0) has
/// the same scale both ways, in the middle. `plot` itself when a span is not usable.
CRect squareCells(const CRect& plot, double xSpan, double ySpan);

}  // namespace pavane
