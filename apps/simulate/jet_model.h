#pragma once

#include "pavane/tables/components/AComponents.h"

namespace pavane
{

/// A jet as VLBI sees them: a bright compact core, knots that grow and fade along a bending path,
/// and faint diffuse emission around its end. About 1.4 Jy in all; distances in arcseconds.
AComponents jetModel();

}  // namespace pavane
