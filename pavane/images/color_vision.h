#pragma once

#include "pavane/containers/AArray.h"
#include "platform/api.h"
#include "platform/types.h"

namespace pavane
{

/// Non-zero when people who do not see red, green or blue read a map in these colours as others do:
/// values that lie a sixth of the range apart or more look different to each of them. A palette of
/// fewer than two colours tells nothing apart.
PAVANE_API int isColorBlindSafe(const AArray<COLORREF>& colours);

}  // namespace pavane
