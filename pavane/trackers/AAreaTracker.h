#pragma once

#include "pavane/trackers/PolygonTrackerOf.h"

namespace pavane
{

/// A free polygon in window pixels.
class PAVANE_API AAreaTracker : public PolygonTrackerOf<PixelPlane>
{
public:
    AAreaTracker() = default;
    AAreaTracker(const AAreaTracker&) = default;
    AAreaTracker& operator=(const AAreaTracker&) = default;

    const char* GetClassName() const override { return "AAreaTracker"; }
    AAreaTracker* Duplicate() const override;
    void GetAreaPoints(AArray<CPoint>& points) const override;
    void Scale(const PixelMapping& from, const PixelMapping& to) override;
};

}  // namespace pavane
