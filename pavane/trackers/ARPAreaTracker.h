#pragma once

#include "pavane/trackers/PolygonTrackerOf.h"

namespace pavane
{

/// AAreaTracker in data values.
class PAVANE_API ARPAreaTracker : public PolygonTrackerOf<ValuePlane>
{
public:
    ARPAreaTracker() = default;
    ARPAreaTracker(const ARPAreaTracker&) = default;
    ARPAreaTracker& operator=(const ARPAreaTracker&) = default;

    const char* GetClassName() const override { return "ARPAreaTracker"; }
    ARPAreaTracker* Duplicate() const override;
    void GetAreaPoints(AArray<APoint<double>>& points, int count) const override;
    /// The mean of the vertices.
    APoint<double> GetCenter() const override;
    /// Replaces `points` by the vertices on the screen.
    void GetPixelPoints(AArray<CPoint>& points) const;
};

}  // namespace pavane
