#include "pavane/trackers/tracker_shape.h"

#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/AEllipseTracker.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARotateRectTracker.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPEllipseTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/ARPRotateRectTracker.h"
#include "pavane/trackers/shapes/shape_handles.h"
#include "tessel/rounding.h"

namespace pavane
{

namespace
{

using Kind = ShapeValues::Kind;

ARect<double> asValues(const CRect& r)
{
    return {static_cast<double>(r.left), static_cast<double>(r.top), static_cast<double>(r.right),
            static_cast<double>(r.bottom)};
}
const ARect<double>& asValues(const ARect<double>& r) { return r; }

APoint<double> asValues(CPoint p) { return {static_cast<double>(p.x), static_cast<double>(p.y)}; }
const APoint<double>& asValues(const APoint<double>& p) { return p; }

void assign(CRect& to, const ARect<double>& r)
{
    to = {truncated(r.left), truncated(r.top), truncated(r.right), truncated(r.bottom)};
}
void assign(ARect<double>& to, const ARect<double>& r) { to = r; }
void assign(CPoint& to, const APoint<double>& p) { to = {truncated(p.x), truncated(p.y)}; }
void assign(APoint<double>& to, const APoint<double>& p) { to = p; }

/// The four classes of one kind of coordinates.
template <typename Rect, typename RotateRect, typename Ellipse, typename Area>
struct Shapes {
    static int read(const ATracker& tracker, ShapeValues& shape)
    {
        shape = {};
        if (const auto* rect = dynamic_cast<const Rect*>(&tracker)) {
            shape.rect = asValues(rect->rect());
            return 1;
        }
        if (const auto* turned = dynamic_cast<const RotateRect*>(&tracker)) {
            shape.kind =
                dynamic_cast<const Ellipse*>(turned) ? Kind::ellipse : Kind::rotatedRectangle;
            shape.rect = asValues(turned->rect());
            shape.angle = turned->angle();
            return 1;
        }
        const auto* area = dynamic_cast<const Area*>(&tracker);
        if (!area)
            return 0;
        shape.kind = Kind::polygon;
        for (int i = 0; i < area->points().count(); ++i)
            shape.points.push_back(asValues(area->points()(i)));
        return 1;
    }

    static int write(ATracker& tracker, const ShapeValues& shape)
    {
        if (auto* rect = dynamic_cast<Rect*>(&tracker)) {
            if (shape.kind != Kind::rectangle)
                return 0;
            auto next = rect->rect();
            assign(next, shape.rect);
            rect->SetRect(next);
            return 1;
        }
        if (auto* turned = dynamic_cast<RotateRect*>(&tracker)) {
            if (shape.kind !=
                (dynamic_cast<const Ellipse*>(turned) ? Kind::ellipse : Kind::rotatedRectangle))
                return 0;
            auto next = turned->rect();
            assign(next, shape.rect);
            turned->SetRect(next);
            turned->SetAngle(shape.angle);
            return 1;
        }
        auto* area = dynamic_cast<Area*>(&tracker);
        if (!area || shape.kind != Kind::polygon)
            return 0;
        auto& points = area->points();
        const int n = static_cast<int>(shape.points.size());
        if (points.count() != n)
            points.GrowBy(n);
        if (points.count() != n)
            return 0;
        for (int i = 0; i < n; ++i)
            assign(points(i), shape.points[static_cast<std::size_t>(i)]);
        return 1;
    }
};

using PixelShapes = Shapes<ARectTracker, ARotateRectTracker, AEllipseTracker, AAreaTracker>;
using ValueShapes = Shapes<ARPRectTracker, ARPRotateRectTracker, ARPEllipseTracker, ARPAreaTracker>;

}  // namespace

int shapeOf(const ATracker& tracker, ShapeValues& shape)
{
    return ValueShapes::read(tracker, shape) || PixelShapes::read(tracker, shape);
}

int setShapeOf(ATracker& tracker, const ShapeValues& shape)
{
    if (!isFinite(shape))
        return 0;
    return ValueShapes::write(tracker, shape) || PixelShapes::write(tracker, shape);
}

}  // namespace pavane
