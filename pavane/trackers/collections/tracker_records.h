#pragma once

#include "pavane/trackers/areas/area_classes.h"
#include "pavane/trackers/collections/TrackerCollection.h"
#include "pavane/trackers/masks/LoadReport.h"
#include "platform/types.h"

#include <functional>
#include <vector>

namespace pavane
{

class AFile;

/// Writes the count, then each tracker's class name and record. 0 when the count or a name cannot
/// be written.
/// Deliberate: a tracker whose record cannot be written ends the writing with 1, as if it were the
/// last; hosts that store other things after a collection depend on the result.
int storeTrackers(AFile& file, const TrackerCollection& trackers);

/// The same of the states that are kept when a drag that runs is cancelled, followed by the polygon
/// under construction; 0 when any part cannot be written.
int storeKeptTrackers(AFile& file, const TrackerCollection& trackers);

/// Makes a tracker of a class name, null for an unknown one.
using TrackerSource = std::function<ATracker*(const CString&)>;

/// Reads what storeTrackers wrote; the caller owns what is in `trackers` afterwards, on failure
/// too. 0 when the file ends early or a record is refused. An unknown class is left out; its record
/// has a length that only the class knows, so what follows is read as it comes.
int loadTrackers(AFile& file, const TrackerSource& make, std::vector<ATracker*>& trackers,
                 LoadReport& report);

}  // namespace pavane
