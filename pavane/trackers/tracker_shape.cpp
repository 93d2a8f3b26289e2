#include "pavane/trackers/tracker_shape.h"

#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/AEllipseTracker.h"
#include "pavane/trackers/ARotateRectTracker.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPEllipseTracker.h"
#include "pavane/trackers/ARPRotateRectTracker.h"
#include "pavane/trackers/plane_screen.h"
#include "pavane/trackers/shapes/shape_handles.h"

namespace pavane
{

namespace
{

using Kind = ShapeValues::Kind;

/// Classes of one kind of coordinates.
template <typename RotateRect, typename Ellipse, typename Area>
struct Shapes {
    static int read(const ATracker& tracker, ShapeValues& shape)
    {
        shape = {};
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

using PixelShapes = Shapes<ARotateRectTracker, AEllipseTracker, AAreaTracker>;
using ValueShapes = Shapes<ARPRotateRectTracker, ARPEllipseTracker, ARPAreaTracker>;

}  // namespace

int shapeOf(const ATracker& tracker, ShapeValues& shape)
{
    return tracker.GetShape(shape) || ValueShapes::read(tracker, shape) ||
           PixelShapes::read(tracker, shape);
}

int setShapeOf(ATracker& tracker, const ShapeValues& shape)
{
    if (!isFinite(shape))
        return 0;
    return tracker.SetShape(shape) || ValueShapes::write(tracker, shape) ||
           PixelShapes::write(tracker, shape);
}

}  // namespace pavane
