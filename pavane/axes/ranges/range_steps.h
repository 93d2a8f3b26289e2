#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "platform/api.h"

namespace pavane
{

// One direction of what a plot shows, changed by the user: pairs of data values (RP), min below
// max. In a logarithmic direction distances are those of the logarithms; both ends are above 0. A
// pair that is not such a span comes back as it was.

/// 1 / `factor` of the span, with `at` in its place.
PAVANE_API TMnMx zoomedSpan(const TMnMx& span, double at, double factor, int logarithmic);
/// Moved by `fraction` of its length.
PAVANE_API TMnMx shiftedSpan(const TMnMx& span, double fraction, int logarithmic);
/// Pushed inside `whole` at its own length; `whole` when it is as long or longer.
PAVANE_API TMnMx spanInside(const TMnMx& span, const TMnMx& whole, int logarithmic);
/// Length of `span` in lengths of `whole`; 1 when either is no span.
PAVANE_API double spanPart(const TMnMx& span, const TMnMx& whole, int logarithmic);

}  // namespace pavane
