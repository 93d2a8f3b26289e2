#include "pavane/trackers/ARPRectTracker.h"

#include "pavane/trackers/shapes/data_drags.h"
#include "pavane/trackers/shapes/shape_outline.h"

#include <new>

namespace pavane
{

ARPRectTracker::ARPRectTracker() = default;

ARPRectTracker* ARPRectTracker::Duplicate() const
{
    return new (std::nothrow) ARPRectTracker(*this);
}

void ARPRectTracker::GetAreaPoints(AArray<APoint<double>>& points, int) const
{
    rectOutline(rect_, points);
}

APoint<double> ARPRectTracker::GetCenter() const { return centreOf(rect_); }

int ARPRectTracker::HitTest(CPoint point, CWnd*)
{
    const int hit = HitTestHandles(point);
    return hit >= 0 && !(style_ & trackerHandles) ? hitMiddle : hit;
}

/// The places of the handles are worked out at once: each of them through the axis takes long in a
/// crowd.
int ARPRectTracker::HitTestHandles(CPoint point)
{
    const CRect rect = pixelRect();
    const CRect all = caughtRect();
    return hitRectHandles(rect, point, GetHandleSize(rect), handleSize_, all);
}

}  // namespace pavane
