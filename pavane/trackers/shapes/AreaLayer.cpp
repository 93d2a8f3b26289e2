#include "pavane/trackers/shapes/AreaLayer.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/outline_stroke.h"
#include "pavane/trackers/shapes/area_look.h"
#include "pavane/trackers/shapes/hatching.h"
#include "platform/CDC.h"

namespace pavane
{

namespace
{

OutlineCurves curvesOf(const ABAxis& axis, const std::vector<AreaOutline>& outlines,
                       int isNeverClean)
{
    OutlineCurves curves;
    for (const AreaOutline& outline : outlines) {
        if ((outline.isNeverClean != 0) != isNeverClean || outline.points.empty())
            continue;
        std::vector<CPointF>& curve = curves.emplace_back();
        for (const APoint<double>& point : outline.points)
            curve.push_back(axis.RPtoGPF(point.x, point.y));
        curve.push_back(curve.front());
    }
    return curves;
}

}  // namespace

void drawAreaOutlines(CDC& dc, const ABAxis& axis, const std::vector<AreaOutline>& outlines)
{
    constexpr OutlineStyle style{areaColor, areaEdgeColor, areaLineWidth, areaEdgeWidth};
    strokeOutlines(dc, axis, curvesOf(axis, outlines, 0), style);
    const OutlineCurves never = curvesOf(axis, outlines, 1);
    if (never.empty())
        return;
    constexpr OutlineStyle hatched{neverCleanColor, neverCleanEdgeColor, 1, 1};
    constexpr OutlineStyle dashed{neverCleanColor, neverCleanEdgeColor, areaLineWidth,
                                  areaEdgeWidth, PS_DASH};
    CRect plot = axis.getGraphRect();
    OutlineCurves hatching;
    for (const std::vector<CPointF>& curve : never)
        addHatching(curve, plot, unitsOf(dc, neverCleanHatch), hatching);
    strokeOutlines(dc, axis, hatching, hatched);
    strokeOutlines(dc, axis, never, dashed);
}

}  // namespace pavane
