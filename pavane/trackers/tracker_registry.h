#pragma once

#include "pavane/trackers/ATracker.h"
#include "platform/types.h"

namespace pavane
{

/// Makes a tracker without memory trouble or null.
using TrackerMaker = ATracker* (*)();

/// A new tracker of the class, which the caller owns; null for an unknown name. Known are
/// ARectTracker, ARotateRectTracker, AEllipseTracker, AAreaTracker, the same four as ARP..., and
/// what a host registered.
PAVANE_API ATracker* CreateTracker(const CString& className);
/// Makes a class known to stored collections. `name`: 1 to 31 bytes; a name that is known already
/// gets the new maker. Its records are known to AreaCollection as well, which makes a tracker for
/// each to Load it and calls nothing else; those of a name of the library have to begin as the
/// library's do. 0 for a name that no collection can store, or without a maker.
PAVANE_API int RegisterTrackerClass(const CString& name, TrackerMaker maker);

}  // namespace pavane
