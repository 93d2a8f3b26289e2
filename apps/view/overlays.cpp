#include "apps/view/overlays.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/tables/component_outline.h"
#include "platform/CDC.h"

#include <vector>

namespace pavane
{

namespace
{

/// A closed or open curve in device units.
using Curve = std::vector<CPointF>;

constexpr COLORREF shade = RGB(0, 0, 0);
constexpr COLORREF areaColor = RGB(255, 230, 60);
constexpr COLORREF modelColor = RGB(255, 255, 255);

/// Widths in pixels: the dark edge shows one pixel on both sides of the light line.
constexpr int shadeWidth = 3;
constexpr int lineWidth = 1;
/// Half the size of the cross that stands for a point component, in pixels.
constexpr int crossSize = 4;

/// Strokes every curve dark and wide first, then light and thin, so that one curve never darkens
/// another.
void strokeTwoToned(CDC& dc, const std::vector<Curve>& curves, COLORREF color, int unit)
{
    CPen wide(PS_SOLID, shadeWidth * unit, shade);
    CPen thin(PS_SOLID, lineWidth * unit, color);
    for (CPen* pen : {&wide, &thin}) {
        CPen* const before = dc.SelectObject(pen);
        for (const Curve& curve : curves)
            dc.PolylineF(curve.data(), static_cast<int>(curve.size()));
        dc.SelectObject(before);
    }
}

/// Draws inside the plot only; both its edges belong to it.
void strokeInPlot(CDC& dc, const ABAxis& axis, const std::vector<Curve>& curves, COLORREF color,
                  int unit)
{
    CRect plot = axis.getGraphRect();
    plot.right += 1;
    plot.bottom += 1;
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(plot);
    strokeTwoToned(dc, curves, color, unit);
    dc.RestoreDC(saved);
}

}  // namespace

void drawAreas(CDC& dc, const ABAxis& axis, const std::vector<AreaOutline>& areas, int unit)
{
    std::vector<Curve> outlines;
    for (const AreaOutline& area : areas) {
        Curve outline;
        for (std::size_t i = 0; i <= area.size() && !area.empty(); ++i) {
            const APoint<double>& point = area[i % area.size()];
            outline.push_back(axis.RPtoGPF(point.x, point.y));
        }
        outlines.push_back(std::move(outline));
    }
    strokeInPlot(dc, axis, outlines, areaColor, unit);
}

void drawModel(CDC& dc, const ABAxis& axis, const MapFrame& frame, const AComponents& model,
               int unit)
{
    const auto drawn = [&](const APoint<double>& sky) {
        const MapPlace place = frame.onAxes(sky.x, sky.y);
        return axis.RPtoGPF(place.x, place.y);
    };
    std::vector<Curve> outlines;
    AArray<APoint<double>> points(0, 0, 256);
    for (int i = 0; i < model.count(); ++i) {
        const APoint<double> centre = componentOutline(model(i), points);
        Curve outline;
        for (int k = 0; k < points.count(); ++k)
            outline.push_back(drawn(points(k)));
        if (points.count() > 0) {
            outlines.push_back(std::move(outline));
            continue;
        }
        const CPointF c = drawn(centre);
        const double size = crossSize * unit;
        outlines.push_back({{c.x - size, c.y}, {c.x + size, c.y}});
        outlines.push_back({{c.x, c.y - size}, {c.x, c.y + size}});
    }
    strokeInPlot(dc, axis, outlines, modelColor, unit);
}

}  // namespace pavane
