#include "pavane/trackers/shapes/AreaLayer.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/axis_fonts.h"
#include "pavane/axes/edged_text.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/outline_stroke.h"
#include "pavane/trackers/shapes/area_look.h"
#include "pavane/trackers/shapes/hatching.h"
#include "platform/CDC.h"
#include "platform/gdi_objects.h"
#include "tessel/plain_text.h"
#include "tessel/rounding.h"

#include <algorithm>
#include <map>

namespace pavane
{

namespace
{

std::vector<CPointF> curveOf(const ABAxis& axis, const AreaOutline& outline)
{
    std::vector<CPointF> curve;
    curve.reserve(outline.points.size() + 1);
    for (const APoint<double>& point : outline.points)
        curve.push_back(axis.RPtoGPF(point.x, point.y));
    if (!curve.empty())
        curve.push_back(curve.front());
    return curve;
}

/// The curves of each colour that there is.
std::map<std::int32_t, OutlineCurves>
curvesOf(const ABAxis& axis, const std::vector<AreaOutline>& outlines, int isNeverClean)
{
    std::map<std::int32_t, OutlineCurves> curves;
    for (const AreaOutline& outline : outlines)
        if ((outline.isNeverClean != 0) == isNeverClean && !outline.points.empty())
            curves[outline.label.colour].push_back(curveOf(axis, outline));
    return curves;
}

}  // namespace

void drawAreaOutlines(CDC& dc, const ABAxis& axis, const std::vector<AreaOutline>& outlines)
{
    for (const auto& [colour, curves] : curvesOf(axis, outlines, 0))
        strokeOutlines(
            dc, axis, curves,
            {areaLineColor(colour, 0), areaLineEdge(colour, 0), areaLineWidth, areaEdgeWidth});
    CRect plot = axis.getGraphRect();
    for (const auto& [colour, never] : curvesOf(axis, outlines, 1)) {
        const COLORREF color = areaLineColor(colour, 1), edge = areaLineEdge(colour, 1);
        OutlineCurves hatching;
        for (const std::vector<CPointF>& curve : never)
            addHatching(curve, plot, unitsOf(dc, neverCleanHatch), hatching);
        strokeOutlines(dc, axis, hatching, {color, edge, 1, 1});
        strokeOutlines(dc, axis, never, {color, edge, areaLineWidth, areaEdgeWidth, PS_DASH});
    }
}

void drawAreaNames(CDC& dc, const ABAxis& axis, const std::vector<AreaOutline>& outlines)
{
    constexpr int textHeight = 13;  // pixels of 96 per inch
    CFont font;
    if (!CreateFont(font, unitsOf(dc, textHeight), 1, 0, {}))
        return;
    CFont* const old = dc.SelectObject(&font);
    const CRect plot = axis.getGraphRect();
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(plot);
    const int gap = unitsOf(dc, 3);
    for (const AreaOutline& outline : outlines) {
        if (outline.label.name.empty() || outline.points.empty())
            continue;
        const std::vector<CPointF> curve = curveOf(axis, outline);
        const auto [left, right] = std::minmax_element(
            curve.begin(), curve.end(), [](CPointF a, CPointF b) { return a.x < b.x; });
        const auto [top, bottom] = std::minmax_element(
            curve.begin(), curve.end(), [](CPointF a, CPointF b) { return a.y < b.y; });
        if (!(right->x >= plot.left && left->x <= plot.right && bottom->y >= plot.top &&
              top->y <= plot.bottom))
            continue;
        // over its middle, or below it where there is no room above; never beyond the plot
        const CString text = plainText(outline.label.name);
        const CSize size = dc.GetTextExtent(text);
        const int x = std::clamp(truncated((left->x + right->x) / 2) - size.cx / 2, plot.left + gap,
                                 std::max(plot.left + gap, plot.right - size.cx));
        const int above = truncated(top->y) - size.cy - gap;
        const int y = above >= plot.top
                          ? above
                          : std::min(truncated(bottom->y) + gap, plot.bottom - size.cy - gap);
        drawEdgedText(dc, {x, std::max(y, plot.top)}, text, unitsOf(dc, 1),
                      areaLineColor(outline.label.colour, outline.isNeverClean),
                      areaLineEdge(outline.label.colour, outline.isNeverClean));
    }
    dc.RestoreDC(saved);
    dc.SelectObject(old);
}

}  // namespace pavane
