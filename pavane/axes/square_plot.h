#pragma once

#include "platform/api.h"
#include "platform/geometry.h"

namespace pavane
{

/// The largest rectangle inside `plot`, in its middle, that `columns` x `rows` square cells fill;
/// both may have fractions. `plot` itself for counts that are not above 0, and when so few rows or
/// columns would fill a sliver too thin for labels.
PAVANE_API CRect squarePlot(const CRect& plot, double columns, double rows);

}  // namespace pavane
