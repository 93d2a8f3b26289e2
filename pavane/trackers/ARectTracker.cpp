#include "pavane/trackers/ARectTracker.h"

#include <new>

namespace pavane
{

ARectTracker::ARectTracker() = default;

ARectTracker::ARectTracker(const CRect& rect, unsigned style)
{
    rect_ = rect;
    style_ = style;
}

ARectTracker* ARectTracker::Duplicate() const { return new (std::nothrow) ARectTracker(*this); }

void ARectTracker::GetAreaPoints(AArray<CPoint>& points) const
{
    points.GrowBy(4);
    if (points.count() < 4)
        return;
    points(0) = {rect_.left, rect_.top};
    points(1) = {rect_.right, rect_.top};
    points(2) = {rect_.right, rect_.bottom};
    points(3) = {rect_.left, rect_.bottom};
}

void ARectTracker::Scale(const PixelMapping& from, const PixelMapping& to)
{
    if (!from.usable() || !to.usable())
        return;
    const RectMinMaxTransform source = from.transform();
    const RectMinMaxTransform target = to.transform();
    rect_ = {target.RPXtoGPX(source.GPXtoRPX(rect_.left)),
             target.RPYtoGPY(source.GPYtoRPY(rect_.top)),
             target.RPXtoGPX(source.GPXtoRPX(rect_.right)),
             target.RPYtoGPY(source.GPYtoRPY(rect_.bottom))};
}

int ARectTracker::HitTest(CPoint point, CWnd*)
{
    if (!caughtRect().PtInRect(point))
        return hitNothing;
    return style_ & trackerHandles ? HitTestHandles(point) : hitMiddle;
}

int ARectTracker::HitTestHandles(CPoint point)
{
    if (!caughtRect().PtInRect(point))
        return hitNothing;
    const int mask = GetHandleMask();
    for (int code = 0; code < hitMiddle; ++code) {
        CRect handle;
        GetHandleRect(code, &handle);
        if (mask >> code & 1 && handle.PtInRect(point))
            return code;
    }
    return hitMiddle;
}

}  // namespace pavane
