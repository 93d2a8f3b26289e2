#include "apps/view/area_outlines.h"

namespace pavane
{

std::vector<AreaOutline> outlinesOf(const AAreaArray& areas, const MapFrame& frame)
{
    std::vector<AreaOutline> outlines;
    for (int i = 0; i < areas.count(); ++i) {
        const APolyPoints& polygon = *areas(i);
        AreaOutline& outline = outlines.emplace_back();
        for (int k = 0; k < polygon.count; ++k)
            outline.points.push_back({frame.xFirst + frame.xStep * polygon.points[k].x,
                                      frame.yFirst + frame.yStep * polygon.points[k].y});
    }
    return outlines;
}

}  // namespace pavane
