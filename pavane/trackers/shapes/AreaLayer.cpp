#include "pavane/trackers/shapes/AreaLayer.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/outline_stroke.h"
#include "pavane/trackers/shapes/area_look.h"

namespace pavane
{

void drawAreaOutlines(CDC& dc, const ABAxis& axis, const std::vector<AreaOutline>& outlines)
{
    constexpr OutlineStyle style{areaColor, areaEdgeColor, areaLineWidth, areaEdgeWidth};
    OutlineCurves curves;
    for (const AreaOutline& outline : outlines) {
        std::vector<CPointF>& curve = curves.emplace_back();
        for (const APoint<double>& point : outline)
            curve.push_back(axis.RPtoGPF(point.x, point.y));
        if (!curve.empty())
            curve.push_back(curve.front());
    }
    strokeOutlines(dc, axis, curves, style);
}

}  // namespace pavane
