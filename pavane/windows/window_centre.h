#pragma once

#include "platform/api.h"
#include "platform/geometry.h"

#include <vector>

namespace pavane
{

/// Where a window of `size` stands in the middle of `about`, moved into the screen that holds the
/// middle of `about` where it would reach beyond it; the corner of a window larger than the screen
/// is the screen's. An empty `about` means the first screen. Screen coordinates.
PAVANE_API CRect centredRect(CSize size, const CRect& about, const std::vector<CRect>& screens);

}  // namespace pavane
