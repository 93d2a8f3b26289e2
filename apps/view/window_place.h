#pragma once

#include "pavane/windows/placement_text.h"

#include <string_view>
#include <vector>

namespace pavane
{

/// `place` when enough of its top can be seen on one of the screens to take hold of it and none of
/// it is larger than that screen; else the nearest place on the first screen where that is so.
/// `place` itself without screens.
CRect reachablePlace(const CRect& place, const std::vector<CRect>& screens);

/// Where and how the program's window shows when it starts: as `kept`, the text of the profile, has
/// it, but never hidden or as an icon, and with `first` as its place where there is none or one
/// below 200 x 150; then brought within reach.
PlacementRecord startPlacement(std::string_view kept, const CRect& first,
                               const std::vector<CRect>& screens);

}  // namespace pavane
