#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "platform/api.h"

namespace pavane
{

/// The part of `span` that is `factor` times shorter and has `at` in its middle, pushed back inside
/// the span at either end. In a logarithmic direction lengths are ratios. 0, and the span as it
/// was, when it has no length, when the value is no number, or when the part would have no length
/// that doubles can tell.
PAVANE_API int zoomSpan(TMnMx& span, double at, double factor, int logarithmic);

}  // namespace pavane
