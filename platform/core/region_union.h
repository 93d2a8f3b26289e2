#pragma once

#include "platform/core/Region.h"

#include <vector>

namespace pavane
{

/// The pixels of any of `rects`, at once: adding them one by one costs the square of their number.
Region unionOf(std::vector<CRect> rects);

}  // namespace pavane
