#pragma once

#include "platform/api.h"
#include "platform/geometry.h"

namespace pavane
{

/// Where a tip of that size goes so that it does not lie over `around`: below it, else above, right
/// or left of it, inside `screen`. Where no side has room for all of it, the side with the most
/// room shows what fits; empty when that is nothing to read.
PAVANE_API CRect placeTip(CSize size, const CRect& around, const CRect& screen);

}  // namespace pavane
