#include "pavane/trackers/AAreaTracker.h"

#include <new>

namespace pavane
{

AAreaTracker* AAreaTracker::Duplicate() const { return new (std::nothrow) AAreaTracker(*this); }

void AAreaTracker::GetAreaPoints(AArray<CPoint>& points) const { points = points_; }

void AAreaTracker::Scale(const PixelMapping& from, const PixelMapping& to)
{
    if (!from.usable() || !to.usable())
        return;
    const RectMinMaxTransform source = from.transform();
    const RectMinMaxTransform target = to.transform();
    for (int i = 0; i < points_.count(); ++i)
        points_(i) = {target.RPXtoGPX(source.GPXtoRPX(points_(i).x)),
                      target.RPYtoGPY(source.GPYtoRPY(points_(i).y))};
}

}  // namespace pavane
