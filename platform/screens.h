#pragma once

#include "platform/api.h"
#include "platform/geometry.h"

#include <vector>

namespace pavane
{

/// What windows can use of each screen, without panels; the main one first. Coordinates as of
/// top-level windows. Empty before the platform was started for windows.
PAVANE_API std::vector<CRect> GetScreenRects();

}  // namespace pavane
