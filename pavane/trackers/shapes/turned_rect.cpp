#include "pavane/trackers/shapes/turned_rect.h"

#include "pavane/trackers/shapes/rect_handles.h"
#include "tessel/AEllipse.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

namespace
{

/// Puts the points of the generator into an array.
class ATrackerEllipse : public AEllipse
{
public:
    explicit ATrackerEllipse(AArray<CPoint>& points) : points_(points) {}

protected:
    void Point(int index, double x, double y) override
    {
        points_(index) = {nearest(x), nearest(y)};
    }

private:
    static int nearest(double v) { return truncated(std::floor(v + 0.5)); }
    AArray<CPoint>& points_;
};

void widen(int& low, int& high, int least)
{
    const long long width = static_cast<long long>(high) - low;
    if (width >= least)
        return;
    const int middle = middleOf(low, high);
    low = saturatedSum(middle, -(least / 2));
    high = saturatedSum(low, least);
}

}  // namespace

CPoint PointTransform(CPoint p, CPoint centre, double angle)
{
    const auto dx = static_cast<double>(static_cast<long long>(p.x) - centre.x);
    const auto dy = static_cast<double>(static_cast<long long>(p.y) - centre.y);
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {saturatedSum(centre.x, truncated(dx * c - dy * s)),
            saturatedSum(centre.y, truncated(dx * s + dy * c))};
}

CPoint centreOf(const CRect& rect)
{
    return {middleOf(rect.left, rect.right), middleOf(rect.top, rect.bottom)};
}

void turnedHandles(const CRect& rect, double angle, CPoint (&points)[turnedHandleCount])
{
    const CPoint centre = centreOf(rect);
    const CPoint plain[turnedHandleCount] = {{rect.left, rect.top},
                                             {rect.right, rect.top},
                                             {rect.right, rect.bottom},
                                             {rect.left, rect.bottom},
                                             {centre.x, rect.top},
                                             {rect.right, centre.y},
                                             {centre.x, rect.bottom},
                                             {rect.left, centre.y},
                                             {middleOf(rect.right, centre.x), centre.y}};
    for (int i = 0; i < turnedHandleCount; ++i)
        points[i] = angle == 0 ? plain[i] : PointTransform(plain[i], centre, angle);
}

APoint<double> halfSides(const CRect& rect)
{
    const CSize extent = extentOf(rect);
    return {extent.cx / 2.0, extent.cy / 2.0};
}

APoint<double> halfBoxOfRect(const APoint<double>& half, double angle)
{
    const double c = std::abs(std::cos(angle));
    const double s = std::abs(std::sin(angle));
    return {half.x * c + half.y * s, half.x * s + half.y * c};
}

APoint<double> halfBoxOfEllipse(const APoint<double>& half, double angle)
{
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {std::hypot(half.x * c, half.y * s), std::hypot(half.x * s, half.y * c)};
}

CRect squareAbout(CPoint centre, int size)
{
    const int left = saturatedSum(centre.x, -(size / 2));
    const int top = saturatedSum(centre.y, -(size / 2));
    return {left, top, saturatedSum(left, size), saturatedSum(top, size)};
}

double snappedAngle(double angle, double direction, int step)
{
    if (step < 1)
        return angle;
    constexpr double slack = 1e-9;  // an exact multiple is not a hair below itself
    const double degrees = angle * 180 / pi;
    double k = std::trunc(degrees / step + std::copysign(slack, degrees)) * step;
    if (direction < 0 && degrees < 0)
        k -= step;
    if (direction >= 0 && degrees >= 0)
        k += step;
    if (k <= -180)
        k = 360 - k;
    if (k > 180)
        k -= 360;
    return k * pi / 180;
}

double pointerAngle(CPoint pointer, CPoint centre)
{
    // negated as whole numbers: a level pointer gives +0, and pi to the left
    const long long up = static_cast<long long>(centre.y) - pointer.y;
    const long long right = static_cast<long long>(pointer.x) - centre.x;
    return std::atan2(static_cast<double>(up), static_cast<double>(right));
}

void widenToLeast(CRect& rect, CSize least)
{
    widen(rect.left, rect.right, least.cx);
    widen(rect.top, rect.bottom, least.cy);
}

void ellipseOutline(AArray<CPoint>& points, const CRect& rect, double angle, int fewest, int most)
{
    points.Free();
    const CRect box = normalized(rect);
    const CSize extent = extentOf(box);
    const int count = std::min(std::max({extent.cx / 2, extent.cy / 2, fewest}), most);
    if (std::min(extent.cx, extent.cy) < 2)
        return;
    points.GrowBy(count);
    if (points.count() < count)
        return;
    const int turn = -truncated(angle * 180 / pi * 10 + 0.5);
    const CPoint centre = centreOf(box);
    ATrackerEllipse(points).Draw(centre.x, centre.y, extent.cx / 2, extent.cy / 2, turn, count);
}

}  // namespace pavane
