#pragma once

#include "pavane/trackers/RectTrackerOf.h"

namespace pavane
{

/// ARectTracker in data values; hit codes and handles are those of its pixels.
class PAVANE_API ARPRectTracker : public RectTrackerOf<ValuePlane>
{
public:
    ARPRectTracker();
    ARPRectTracker(const ARPRectTracker&) = default;
    ARPRectTracker& operator=(const ARPRectTracker&) = default;

    const char* GetClassName() const override { return "ARPRectTracker"; }
    ARPRectTracker* Duplicate() const override;
    void GetAreaPoints(AArray<APoint<double>>& points, int count) const override;
    APoint<double> GetCenter() const override;
    int HitTest(CPoint point, CWnd* window) override;
    int HitTestHandles(CPoint point) override;
};

}  // namespace pavane
