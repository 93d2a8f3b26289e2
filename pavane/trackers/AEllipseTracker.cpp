#include "pavane/trackers/AEllipseTracker.h"

#include "pavane/trackers/shapes/turned_rect.h"

#include <new>

namespace pavane
{

namespace
{

/// A small ellipse of fewer points looks like a triangle.
constexpr int fewestShown = 24;
/// So many leave the true curve by a pixel only at semi-axes of a million pixels.
constexpr int mostShown = 2048;

}  // namespace

AEllipseTracker* AEllipseTracker::Duplicate() const
{
    return new (std::nothrow) AEllipseTracker(*this);
}

void AEllipseTracker::GetEllipsePoints(AArray<CPoint>& points, const CRect& rect, double angle)
{
    ellipseOutline(points, rect, angle);
}

void AEllipseTracker::GetAreaPoints(AArray<CPoint>& points) const
{
    GetEllipsePoints(points, rect_, angle_);
}

int AEllipseTracker::firstHandle() const { return 4; }

ShapeValues::Kind AEllipseTracker::shapeKind() const { return ShapeValues::Kind::ellipse; }

void AEllipseTracker::shownOutline(AArray<CPoint>& points) const
{
    ellipseOutline(points, rect_, angle_, fewestShown, mostShown);
}

APoint<double> AEllipseTracker::halfExtent() const
{
    return halfBoxOfEllipse(halfSides(rect_), angle_);
}

}  // namespace pavane
