#pragma once

#include "pavane/trackers/shapes/ShapeValues.h"
#include "pavane/trackers/TurnedTrackerOf.h"

namespace pavane
{

/// A rectangle turned about its centre, in window pixels.
class PAVANE_API ARotateRectTracker : public TurnedTrackerOf<PixelPlane>
{
public:
    ARotateRectTracker() = default;
    ARotateRectTracker(const ARotateRectTracker&) = default;
    ARotateRectTracker& operator=(const ARotateRectTracker&) = default;

    const char* GetClassName() const override { return "ARotateRectTracker"; }
    ARotateRectTracker* Duplicate() const override;
    /// The four turned corners, clockwise from the top left.
    void GetAreaPoints(AArray<CPoint>& points) const override;
    void Scale(const PixelMapping& from, const PixelMapping& to) override;

protected:
    friend struct TurnedParts;
    /// The first handle that is shown, 0 or 4.
    virtual int firstHandle() const;
    /// The outline as it is drawn: no coarser than the eye wants it.
    virtual void shownOutline(AArray<CPoint>& points) const { GetAreaPoints(points); }
    /// Half the extent of the turned outline in x and y.
    virtual APoint<double> halfExtent() const;
    virtual ShapeValues::Kind shapeKind() const;
};

}  // namespace pavane
