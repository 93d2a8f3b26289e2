#pragma once

#include "pavane/trackers/ARPAreaTracker.h"

namespace pavane
{

/// ARPAreaTracker in an axis window: valid and clip rectangle are the graph rectangle of the axis,
/// right and bottom edge included.
class PAVANE_API AAreaTrackerInAxis : public ARPAreaTracker
{
public:
    const char* GetClassName() const override { return "AAreaTrackerInAxis"; }
    AAreaTrackerInAxis* Duplicate() const override;
};

}  // namespace pavane
