#include "pavane/trackers/shapes/shape_outline.h"

#include "pavane/trackers/shapes/data_drags.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

void rectOutline(const ARect<double>& rect, AArray<APoint<double>>& points)
{
    points.GrowBy(4);
    if (points.count() < 4)
        return;
    points(0) = {rect.left, rect.top};
    points(1) = {rect.right, rect.top};
    points(2) = {rect.right, rect.bottom};
    points(3) = {rect.left, rect.bottom};
}

void turnedOutline(const ARect<double>& rect, double angle, AArray<APoint<double>>& points)
{
    APoint<double> handles[turnedHandleCount];
    turnedHandles({rect, angle}, handles);
    points.GrowBy(4);
    for (int i = 0; i < points.count(); ++i)
        points(i) = handles[i];
}

void ellipseOutline(const ARect<double>& rect, double angle, int count,
                    AArray<APoint<double>>& points)
{
    constexpr int usualCount = 720;
    const int n = count < 1 ? usualCount : std::min(count, mostEllipsePoints);
    points.GrowBy(n);
    const APoint<double> centre = centreOf(rect);
    const double a = std::abs(rect.right / 2 - rect.left / 2);
    const double b = std::abs(rect.bottom / 2 - rect.top / 2);
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    for (int i = 0; i < points.count(); ++i) {
        const double along = a * std::cos(2 * pi * i / n);
        const double across = b * std::sin(2 * pi * i / n);
        points(i) = {centre.x + along * c - across * s, centre.y + along * s + across * c};
    }
}

void outlineOf(const ShapeValues& shape, int count, AArray<APoint<double>>& points)
{
    switch (shape.kind) {
    case ShapeValues::Kind::rectangle:
        rectOutline(shape.rect, points);
        break;
    case ShapeValues::Kind::rotatedRectangle:
        turnedOutline(shape.rect, shape.angle, points);
        break;
    case ShapeValues::Kind::ellipse:
        ellipseOutline(shape.rect, shape.angle, count, points);
        break;
    case ShapeValues::Kind::polygon:
        points.GrowBy(static_cast<int>(shape.points.size()));
        std::copy_n(shape.points.begin(), points.count(), points.lpArray());
        break;
    }
}

}  // namespace pavane
