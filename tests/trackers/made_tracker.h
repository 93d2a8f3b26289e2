#pragma once

#include "pavane/trackers/tracker_registry.h"
#include "pavane/trackers/tracker_shape.h"

#include <memory>
#include <string>

namespace pavane::test
{

/// Gives a tracker those of the numbers that its shape has. A polygon without points stays empty.
inline void giveShape(ATracker& tracker, ShapeValues shape)
{
    ShapeValues own;
    if (shapeOf(tracker, own)) {
        shape.kind = own.kind;
        (void)setShapeOf(tracker, shape);
    }
}

/// A tracker of that class with such a shape.
inline std::unique_ptr<ATracker> madeTracker(const std::string& name, const ShapeValues& shape)
{
    std::unique_ptr<ATracker> tracker(CreateTracker(name));
    giveShape(*tracker, shape);
    return tracker;
}

}  // namespace pavane::test
