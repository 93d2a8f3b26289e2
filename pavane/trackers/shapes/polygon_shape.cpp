#include "pavane/trackers/shapes/polygon_shape.h"

#include "pavane/trackers/shapes/rect_handles.h"
#include "pavane/trackers/shapes/RectDrag.h"
#include "pavane/trackers/shapes/turned_rect.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pavane
{

namespace
{

CRect widened(CRect box, const CPoint* points, int n)
{
    for (int i = 0; i < n; ++i) {
        box.left = std::min(box.left, points[i].x);
        box.top = std::min(box.top, points[i].y);
        box.right = std::max(box.right, points[i].x);
        box.bottom = std::max(box.bottom, points[i].y);
    }
    return box;
}

}  // namespace

CRect GetAroundRect(const CPoint* points, int n)
{
    constexpr int most = std::numeric_limits<int>::max();
    return widened({most, most, -1, -1}, points, n);
}

CRect boundingBox(const CPoint* points, int n)
{
    if (n < 1)
        return {};
    return widened({points[0].x, points[0].y, points[0].x, points[0].y}, points, n);
}

int insidePolygon(const CPoint* points, int n, CPoint p)
{
    int inside = 0;
    for (int i = 0, before = n - 1; i < n; before = i++) {
        const CPoint a = points[before];
        const CPoint b = points[i];
        if ((a.y > p.y) == (b.y > p.y))
            continue;
        // the edge crosses the row of p at a.x + (b.x - a.x) (p.y - a.y) / (b.y - a.y)
        const long double across = (static_cast<long double>(b.x) - a.x) *
                                   (static_cast<long double>(p.y) - a.y) /
                                   (static_cast<long double>(b.y) - a.y);
        if (static_cast<long double>(p.x) - a.x < across)
            inside = !inside;
    }
    return inside;
}

int hitVertex(const CPoint* points, int n, CPoint p, int size)
{
    for (int i = 0; i < n; ++i)
        if (squareAbout(points[i], size).PtInRect(p))
            return i;
    return -1;
}

int nearOutline(const CPoint* points, int n, CPoint p, int reach)
{
    for (int i = 0, before = n - 1; i < n; before = i++) {
        const double dx = static_cast<double>(points[i].x) - points[before].x;
        const double dy = static_cast<double>(points[i].y) - points[before].y;
        const double px = static_cast<double>(p.x) - points[before].x;
        const double py = static_cast<double>(p.y) - points[before].y;
        const double length = dx * dx + dy * dy;
        const double along = length > 0 ? std::clamp((px * dx + py * dy) / length, 0.0, 1.0) : 0.0;
        if (std::hypot(px - along * dx, py - along * dy) <= reach)
            return 1;
    }
    return 0;
}

int hitPolygon(const CPoint* points, int n, CPoint p, const PolygonCatch& reach)
{
    constexpr int inside = 1;
    int vertex = hitVertex(points, n, p, reach.handle);
    const int within = insidePolygon(points, n, p);
    if (vertex < 0 && reach.vertex > 0) {
        const CSize size = extentOf(boundingBox(points, n));
        double nearest = reach.vertex;
        if (within)
            nearest = std::min(nearest, std::max(size.cx, size.cy) / 4.0);
        for (int i = 0; i < n; ++i) {
            const double far = std::hypot(static_cast<double>(p.x) - points[i].x,
                                          static_cast<double>(p.y) - points[i].y);
            if (far < nearest || (far == nearest && vertex < 0)) {
                nearest = far;
                vertex = i;
            }
        }
    }
    if (vertex >= 0)
        return vertex + hitFirstHandle;
    return within || (reach.edge > 0 && nearOutline(points, n, p, reach.edge)) ? inside
                                                                               : hitNothing;
}

CPoint polygonStep(const CPoint* points, int n, CPoint press, CPoint pointer, const CRect& valid)
{
    const CRect box = GetAroundRect(points, n);
    return {saturatedSum(shortenedStep(static_cast<long long>(pointer.x) - press.x, box.left,
                                       box.right, valid.left, valid.right),
                         0),
            saturatedSum(shortenedStep(static_cast<long long>(pointer.y) - press.y, box.top,
                                       box.bottom, valid.top, valid.bottom),
                         0)};
}

}  // namespace pavane
