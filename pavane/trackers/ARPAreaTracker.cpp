#include "pavane/trackers/ARPAreaTracker.h"

#include "pavane/trackers/plane_screen.h"

#include <new>

namespace pavane
{

ARPAreaTracker* ARPAreaTracker::Duplicate() const
{
    return new (std::nothrow) ARPAreaTracker(*this);
}

void ARPAreaTracker::GetAreaPoints(AArray<APoint<double>>& points, int) const { points = points_; }

APoint<double> ARPAreaTracker::GetCenter() const
{
    APoint<double> sum;
    const int n = points_.count();
    for (int i = 0; i < n; ++i)
        sum = {sum.x + points_(i).x, sum.y + points_(i).y};
    return n > 0 ? APoint<double>{sum.x / n, sum.y / n} : sum;
}

void ARPAreaTracker::GetPixelPoints(AArray<CPoint>& points) const
{
    putPixels(screenOf(*this), points_, points);
}

}  // namespace pavane
