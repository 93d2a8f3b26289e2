#include "pavane/trackers/collections/area_outlines.h"

#include "pavane/trackers/collections/ARPTrackerArray.h"

namespace pavane
{

std::vector<AreaOutline> outlinesOf(const ARPTrackerArray& areas)
{
    std::vector<AreaOutline> outlines;
    AArray<APoint<double>> points(0, 0, 256);
    for (int i = 0; i < areas.count(); ++i) {
        areas(i)->GetAreaPoints(points, 0);
        AreaOutline& outline = outlines.emplace_back();
        for (int k = 0; k < points.count(); ++k)
            outline.points.push_back(points(k));
        outline.isNeverClean = areas(i)->IsNeverClean();
        outline.label = areas(i)->label();
    }
    return outlines;
}

}  // namespace pavane
