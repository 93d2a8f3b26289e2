#include "pavane/trackers/ARPRotateRectTracker.h"

#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/shapes/shape_outline.h"

#include <new>

namespace pavane
{

ARPRotateRectTracker* ARPRotateRectTracker::Duplicate() const
{
    return new (std::nothrow) ARPRotateRectTracker(*this);
}

void ARPRotateRectTracker::GetAreaPoints(AArray<APoint<double>>& points, int) const
{
    turnedOutline(rect_, angle_, points);
}

APoint<double> ARPRotateRectTracker::GetCenter() const { return centreOf(rect_); }

void ARPRotateRectTracker::pixelOutline(AArray<CPoint>& points) const { pixelCorners(points); }

int ARPRotateRectTracker::firstHandle() const { return 0; }

ShapeValues::Kind ARPRotateRectTracker::shapeKind() const
{
    return ShapeValues::Kind::rotatedRectangle;
}

APoint<double> ARPRotateRectTracker::halfExtent() const
{
    return halfBoxOfRect(halfSides(rect_), angle_);
}

}  // namespace pavane
