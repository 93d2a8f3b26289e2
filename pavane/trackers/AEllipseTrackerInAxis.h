#pragma once

#include "pavane/trackers/ARPEllipseTracker.h"

namespace pavane
{

/// ARPEllipseTracker in an axis window: valid and clip rectangle are the graph rectangle of the
/// axis, right and bottom edge included.
class PAVANE_API AEllipseTrackerInAxis : public ARPEllipseTracker
{
public:
    const char* GetClassName() const override { return "AEllipseTrackerInAxis"; }
    AEllipseTrackerInAxis* Duplicate() const override;
};

}  // namespace pavane
