#pragma once

#include "pavane/trackers/shapes/ShapeValues.h"
#include "pavane/trackers/TurnedTrackerOf.h"

namespace pavane
{

/// ARotateRectTracker in data values. The rectangle is turned in data coordinates, and its turned
/// corners are then put on the screen, so that it covers the same part of the map at any zoom;
/// where the two scales differ it looks sheared.
class PAVANE_API ARPRotateRectTracker : public TurnedTrackerOf<ValuePlane>
{
public:
    ARPRotateRectTracker() = default;
    ARPRotateRectTracker(const ARPRotateRectTracker&) = default;
    ARPRotateRectTracker& operator=(const ARPRotateRectTracker&) = default;

    const char* GetClassName() const override { return "ARPRotateRectTracker"; }
    ARPRotateRectTracker* Duplicate() const override;
    void GetAreaPoints(AArray<APoint<double>>& points, int count) const override;
    APoint<double> GetCenter() const override;

protected:
    friend struct TurnedParts;
    /// The outline on the screen.
    virtual void pixelOutline(AArray<CPoint>& points) const;
    /// The first handle that is shown, 0 or 4.
    virtual int firstHandle() const;
    /// Half the extent of the turned outline in x and y, in data values.
    virtual APoint<double> halfExtent() const;
    virtual ShapeValues::Kind shapeKind() const;
};

}  // namespace pavane
