#include "pavane/trackers/collections/shape_trackers.h"

#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPEllipseTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/ARPRotateRectTracker.h"
#include "pavane/trackers/shapes/area_values.h"
#include "pavane/trackers/tracker_shape.h"

#include <algorithm>
#include <new>

namespace pavane
{

namespace
{

ABTracker* withRect(ARPRotateRectTracker* tracker, const ShapeValues& values)
{
    if (tracker) {
        tracker->SetRect(values.rect);
        tracker->SetAngle(values.angle);
    }
    return tracker;
}

ABTracker* newPolygon(const ShapeValues& values)
{
    auto* const tracker = new (std::nothrow) ARPAreaTracker;
    const int count = static_cast<int>(values.points.size());
    if (!tracker || tracker->points().GrowBy(count).count() != count) {
        delete tracker;
        return nullptr;
    }
    std::copy(values.points.begin(), values.points.end(), tracker->points().lpArray());
    tracker->SetStyle(tracker->GetStyle() | trackerReady);
    return tracker;
}

ABTracker* newTrackerOf(const ShapeValues& values)
{
    switch (values.kind) {
    case ShapeValues::Kind::rectangle: {
        auto* const tracker = new (std::nothrow) ARPRectTracker;
        if (tracker)
            tracker->SetRect(values.rect);
        return tracker;
    }
    case ShapeValues::Kind::rotatedRectangle:
        return withRect(new (std::nothrow) ARPRotateRectTracker, values);
    case ShapeValues::Kind::ellipse:
        return withRect(new (std::nothrow) ARPEllipseTracker, values);
    case ShapeValues::Kind::polygon:
        return newPolygon(values);
    }
    return nullptr;
}

}  // namespace

ABTracker* newTracker(const AreaShape& shape, const AMnMxMCTransform& map)
{
    ShapeValues values;
    ABTracker* const tracker = valuesOf(shape, map, values) ? newTrackerOf(values) : nullptr;
    if (tracker) {
        tracker->SetNeverClean(shape.isNeverClean);
        tracker->SetLabel(shape.label);
    }
    return tracker;
}

int shapeOf(const ABTracker& tracker, const AMnMxMCTransform& map, AreaShape& shape)
{
    ShapeValues values;
    if (!tracker.IsReady() || !shapeOf(tracker, values) || !shapeOf(values, map, shape))
        return 0;
    shape.isNeverClean = tracker.IsNeverClean();
    shape.label = tracker.label();
    return 1;
}

}  // namespace pavane
