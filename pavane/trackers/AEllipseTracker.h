#pragma once

#include "pavane/trackers/ARotateRectTracker.h"

namespace pavane
{

/// The ellipse inscribed in a turned rectangle. Its corners are no handles: hit codes 6 to 10, 1
/// inside, -1 nothing.
class PAVANE_API AEllipseTracker : public ARotateRectTracker
{
public:
    const char* GetClassName() const override { return "AEllipseTracker"; }
    AEllipseTracker* Duplicate() const override;
    /// As many points as the larger semi-axis has pixels; none for a box below 2 pixels.
    void GetAreaPoints(AArray<CPoint>& points) const override;

    static void GetEllipsePoints(AArray<CPoint>& points, const CRect& rect, double angle);

protected:
    int firstHandle() const override;
    void shownOutline(AArray<CPoint>& points) const override;
    APoint<double> halfExtent() const override;
    ShapeValues::Kind shapeKind() const override;
};

}  // namespace pavane
