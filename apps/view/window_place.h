#pragma once

#include "platform/geometry.h"

#include <vector>

namespace pavane
{

/// `place` when enough of its top can be seen on one of the screens to take hold of it and none of
/// it is larger than that screen; else the nearest place on the first screen where that is so.
/// `place` itself without screens.
CRect reachablePlace(const CRect& place, const std::vector<CRect>& screens);

}  // namespace pavane
