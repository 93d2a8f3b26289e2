#pragma once

#include "pavane/trackers/ARPRotateRectTracker.h"

namespace pavane
{

/// AEllipseTracker in data values.
class PAVANE_API ARPEllipseTracker : public ARPRotateRectTracker
{
public:
    const char* GetClassName() const override { return "ARPEllipseTracker"; }
    ARPEllipseTracker* Duplicate() const override;
    /// `count` points, at most 65 536; 0 stands for 720.
    void GetAreaPoints(AArray<APoint<double>>& points, int count) const override;

    static void GetRPEllipsePoints(AArray<APoint<double>>& points, const ARect<double>& rect,
                                   double angle, int count);

protected:
    void pixelOutline(AArray<CPoint>& points) const override;
    int firstHandle() const override;
    APoint<double> halfExtent() const override;
    ShapeValues::Kind shapeKind() const override;
};

}  // namespace pavane
