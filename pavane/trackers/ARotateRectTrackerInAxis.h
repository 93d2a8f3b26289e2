#pragma once

#include "pavane/trackers/ARPRotateRectTracker.h"

namespace pavane
{

/// ARPRotateRectTracker in an axis window: valid and clip rectangle are the graph rectangle of the
/// axis, right and bottom edge included.
class PAVANE_API ARotateRectTrackerInAxis : public ARPRotateRectTracker
{
public:
    const char* GetClassName() const override { return "ARotateRectTrackerInAxis"; }
    ARotateRectTrackerInAxis* Duplicate() const override;
};

}  // namespace pavane
