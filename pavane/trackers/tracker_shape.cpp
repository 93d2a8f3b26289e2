#include "pavane/trackers/tracker_shape.h"

#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/plane_screen.h"
#include "pavane/trackers/shapes/shape_handles.h"

namespace pavane
{

namespace
{

/// The polygon of one kind of coordinates.
template <typename Area>
struct Shapes {
    static int read(const ATracker& tracker, ShapeValues& shape)
    {
        const auto* area = dynamic_cast<const Area*>(&tracker);
        if (!area)
            return 0;
        shape.kind = ShapeValues::Kind::polygon;
        for (int i = 0; i < area->points().count(); ++i)
            shape.points.push_back(asValues(area->points()(i)));
        return 1;
    }

    static int write(ATracker& tracker, const ShapeValues& shape)
    {
        auto* area = dynamic_cast<Area*>(&tracker);
        if (!area || shape.kind != ShapeValues::Kind::polygon)
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

using PixelShapes = Shapes<AAreaTracker>;
using ValueShapes = Shapes<ARPAreaTracker>;

}  // namespace

int shapeOf(const ATracker& tracker, ShapeValues& shape)
{
    shape = {};
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
