#include "pavane/trackers/ARotateRectTracker.h"

#include "pavane/trackers/shapes/rect_handles.h"
#include "tessel/rounding.h"

#include <cmath>
#include <new>

namespace pavane
{

ARotateRectTracker* ARotateRectTracker::Duplicate() const
{
    return new (std::nothrow) ARotateRectTracker(*this);
}

void ARotateRectTracker::GetAreaPoints(AArray<CPoint>& points) const { pixelCorners(points); }

void ARotateRectTracker::Scale(const PixelMapping& from, const PixelMapping& to)
{
    if (!from.usable() || !to.usable())
        return;
    const RectMinMaxTransform source = from.transform();
    const RectMinMaxTransform target = to.transform();
    const auto x = [&](int gx) { return target.RPXtoGPX(source.GPXtoRPX(gx)); };
    const auto y = [&](int gy) { return target.RPYtoGPY(source.GPYtoRPY(gy)); };
    if (angle_ == 0) {
        rect_ = normalized({x(rect_.left), y(rect_.top), x(rect_.right), y(rect_.bottom)});
        return;
    }
    // the sides keep their directions on the map; where the two scales differ their angle would
    // not stay a right one, so the x side says how the shape is turned
    const double scaleX = to.pixelsPerUnitX() / from.pixelsPerUnitX();
    const double scaleY = to.pixelsPerUnitY() / from.pixelsPerUnitY();
    const double c = std::cos(angle_);
    const double s = std::sin(angle_);
    const CSize extent = extentOf(rect_);
    const int width = truncated(extent.cx * std::hypot(scaleX * c, scaleY * s) + 0.5);
    const int height = truncated(extent.cy * std::hypot(scaleX * s, scaleY * c) + 0.5);
    const CPoint centre = centreOf(rect_);
    const int left = saturatedSum(x(centre.x), -(width / 2));
    const int top = saturatedSum(y(centre.y), -(height / 2));
    rect_ = {left, top, saturatedSum(left, width), saturatedSum(top, height)};
    if (scaleX != scaleY)
        angle_ = std::atan2(scaleY * s, scaleX * c);
}

int ARotateRectTracker::firstHandle() const { return 0; }

ShapeValues::Kind ARotateRectTracker::shapeKind() const
{
    return ShapeValues::Kind::rotatedRectangle;
}

APoint<double> ARotateRectTracker::halfExtent() const
{
    return halfBoxOfRect(halfSides(rect_), angle_);
}

}  // namespace pavane
