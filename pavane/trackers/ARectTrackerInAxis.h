#pragma once

#include "pavane/trackers/ARPRectTracker.h"

namespace pavane
{

/// ARPRectTracker in an axis window: valid and clip rectangle are the graph rectangle of the axis,
/// right and bottom edge included.
class PAVANE_API ARectTrackerInAxis : public ARPRectTracker
{
public:
    const char* GetClassName() const override { return "ARectTrackerInAxis"; }
    ARectTrackerInAxis* Duplicate() const override;
};

}  // namespace pavane
