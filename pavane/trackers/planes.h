#pragma once

#include "pavane/trackers/ABaseTracker.h"
#include "pavane/trackers/ABTracker.h"

namespace pavane
{

class ARotateRectTracker;
class ARPRotateRectTracker;

// The two planes that shapes are kept in. Each shape is written once, as a template over them: see
// RectTrackerOf.

/// Window pixels.
struct PixelPlane {
    using Base = ABaseTracker;
    using Point = CPoint;
    using Rect = CRect;
    using Turned = ARotateRectTracker;
};

/// Data values of an axis.
struct ValuePlane {
    using Base = ABTracker;
    using Point = APoint<double>;
    using Rect = ARect<double>;
    using Turned = ARPRotateRectTracker;
};

}  // namespace pavane
