#pragma once

#include "pavane/axes/TickSet.h"
#include "platform/api.h"

namespace pavane
{

/// Ticks of values that begin anew after `period`, at whole parts of it: of 360 degrees every 15,
/// 30, 45, 90, 180 or at multiples of 360. Ranges of less than a few such steps have linear ones.
PAVANE_API TickSet periodTicks(const TickWish& wish, double period);

}  // namespace pavane
