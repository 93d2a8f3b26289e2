#pragma once

#include "pavane/trackers/collections/AreaHand.h"
#include "pavane/trackers/collections/AreaKeys.h"

namespace pavane
{

/// From the lowest to the highest: each knows those above it here alone.
struct TrackerCollection::Parts {
    explicit Parts(TrackerCollection& of)
        : trackers(of), eye(trackers, of), drag(trackers, eye),
          items(trackers, areas, eye, focus, drag), areas(items),
          edits(trackers, items, areas, eye, focus, drag),
          hand(trackers, edits, eye, focus, drag, of), keys(trackers, edits, eye, focus, drag)
    {
    }

    AreaTrackers trackers;
    AreaFocus focus;
    AreaEye eye;
    AreaDrag drag;
    TrackerItems items;
    AreaEdits areas;
    TrackerEdits edits;
    AreaHand hand;
    AreaKeys keys;
};

}  // namespace pavane
