#pragma once

#include "pavane/trackers/RectTrackerOf.h"

namespace pavane
{

/// An upright rectangle with eight handles, in window pixels.
class PAVANE_API ARectTracker : public RectTrackerOf<PixelPlane>
{
public:
    ARectTracker();
    ARectTracker(const CRect& rect, unsigned style);
    ARectTracker(const ARectTracker&) = default;
    ARectTracker& operator=(const ARectTracker&) = default;

    const char* GetClassName() const override { return "ARectTracker"; }
    ARectTracker* Duplicate() const override;
    void GetAreaPoints(AArray<CPoint>& points) const override;
    int HitTest(CPoint point, CWnd* window) override;
    int HitTestHandles(CPoint point) override;
    void Scale(const PixelMapping& from, const PixelMapping& to) override;
};

}  // namespace pavane
