#pragma once

#include "platform/api.h"
#include "platform/cursors.h"

namespace pavane
{

/// The cursors that trackers share; they are looked up when first asked for.
/// `hit` is a hit code 0 to 8 of an upright rectangle, or 9; other codes give the arrow.
PAVANE_API HCURSOR rectTrackerCursor(int hit);
PAVANE_API HCURSOR moveTrackerCursor();
/// For the handles of turned shapes and the vertices of polygons.
PAVANE_API HCURSOR sizeTrackerCursor();
PAVANE_API HCURSOR turnTrackerCursor();

}  // namespace pavane
