#include "pavane/trackers/ABTracker.h"

#include "pavane/trackers/shapes/AxisPixels.h"

namespace pavane
{

APoint<int> ABTracker::RPtoGP(const APoint<double>& point) const
{
    const CPoint p = pixel(point);
    return {p.x, p.y};
}

APoint<double> ABTracker::GPtoRP(const APoint<int>& point) const
{
    return value({point.x, point.y});
}

ARect<int> ABTracker::RPtoGP(const ARect<double>& rect) const
{
    const CRect r = AxisPixels(axis_).pixels(rect);
    return {r.left, r.top, r.right, r.bottom};
}

ARect<double> ABTracker::GPtoRP(const ARect<int>& rect) const
{
    const APoint<double> a = value({rect.left, rect.top});
    const APoint<double> b = value({rect.right, rect.bottom});
    return {a.x, a.y, b.x, b.y};
}

APoint<double> ABTracker::GetCenter() const { return {}; }

int ABTracker::Load(AFile& file)
{
    axis_ = nullptr;
    return ATracker::Load(file);
}

int ABTracker::SetState(const std::string& state)
{
    ABAxis* const axis = axis_;
    const int result = ATracker::SetState(state);
    axis_ = axis;
    return result;
}

int ABTracker::ownBounds(CRect& bounds) const
{
    return ATracker::ownBounds(bounds) || AxisPixels(axis_).bounds(bounds);
}

int ABTracker::convertible() const { return AxisPixels(axis_).usable(); }

CPoint ABTracker::pixel(const APoint<double>& point) const
{
    return AxisPixels(axis_).pixel(point);
}

APoint<double> ABTracker::value(CPoint point) const { return AxisPixels(axis_).value(point); }

}  // namespace pavane
