#include "pavane/trackers/ARPEllipseTracker.h"

#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/shapes/shape_outline.h"

#include <algorithm>
#include <new>

namespace pavane
{

ARPEllipseTracker* ARPEllipseTracker::Duplicate() const
{
    return new (std::nothrow) ARPEllipseTracker(*this);
}

void ARPEllipseTracker::GetRPEllipsePoints(AArray<APoint<double>>& points,
                                           const ARect<double>& rect, double angle, int count)
{
    ellipseOutline(rect, angle, count, points);
}

void ARPEllipseTracker::GetAreaPoints(AArray<APoint<double>>& points, int count) const
{
    GetRPEllipsePoints(points, rect_, angle_, count);
}

/// As many points as a smooth curve needs on the screen.
void ARPEllipseTracker::pixelOutline(AArray<CPoint>& points) const
{
    constexpr int fewest = 12;
    constexpr int most = 720;
    CPoint handles[turnedHandleCount];
    pixelHandles(handles);
    int reach = 0;
    for (int i = 4; i < 8; ++i) {
        const CSize span = extentOf({handles[8].x, handles[8].y, handles[i].x, handles[i].y});
        reach = std::max({reach, span.cx, span.cy});
    }
    AArray<APoint<double>> values;
    GetAreaPoints(values, reach > most ? most : std::max(fewest, reach));
    points.GrowBy(values.count());
    for (int i = 0; i < std::min(points.count(), values.count()); ++i)
        points(i) = pixel(values(i));
}

int ARPEllipseTracker::firstHandle() const { return 4; }

ShapeValues::Kind ARPEllipseTracker::shapeKind() const { return ShapeValues::Kind::ellipse; }

APoint<double> ARPEllipseTracker::halfExtent() const
{
    return halfBoxOfEllipse(halfSides(rect_), angle_);
}

}  // namespace pavane
