#include "apps/view/overlays.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/tables/components/component_outline.h"
#include "platform/CDC.h"

#include <cmath>
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

/// No line through the points that are kept is farther than this from one that is left out, in
/// pixels: less than the eye or the edge of a stroke tells.
constexpr double spareDistance = 1.0 / 40;

double cross(CPointF a, CPointF b) { return a.x * b.y - a.y * b.x; }

/// The curve without the points that a straight line replaces. The directions in which a line from
/// the point that was kept last stays within `tolerance` of those left out narrow with each of
/// them.
Curve withoutSparePoints(const Curve& curve, double tolerance)
{
    Curve kept;
    CPointF low, high;
    double reached = 0;  // 0: nothing narrows the directions yet
    for (std::size_t i = 0; i < curve.size(); ++i) {
        CPointF d{};
        double length = 0;
        const auto look = [&] {
            d = {curve[i].x - kept.back().x, curve[i].y - kept.back().y};
            length = std::hypot(d.x, d.y);
        };
        if (!kept.empty()) {
            look();
            if (reached > 0 && (!(length >= reached) || cross(low, d) < 0 || cross(d, high) < 0)) {
                kept.push_back(curve[i - 1]);
                reached = 0;
                look();
            }
        }
        if (kept.empty() || !std::isfinite(length)) {
            kept.push_back(curve[i]);
            reached = 0;
        } else if (length > tolerance) {
            const CPointF aside{-d.y * tolerance / length, d.x * tolerance / length};
            const CPointF right{d.x - aside.x, d.y - aside.y};
            const CPointF left{d.x + aside.x, d.y + aside.y};
            low = reached == 0 || cross(low, right) > 0 ? right : low;
            high = reached == 0 || cross(left, high) > 0 ? left : high;
            reached = length;
        }
    }
    if (curve.size() > 1)
        kept.push_back(curve.back());
    return kept;
}

/// Strokes every curve dark and wide first, then light and thin, so that one curve never darkens
/// another.
void strokeTwoToned(CDC& dc, const std::vector<Curve>& curves, COLORREF color)
{
    CPen wide(PS_SOLID, unitsOf(dc, shadeWidth), shade);
    CPen thin(PS_SOLID, unitsOf(dc, lineWidth), color);
    std::vector<Curve> lean;
    for (const Curve& curve : curves)
        lean.push_back(withoutSparePoints(curve, spareDistance * unitsOf(dc, 1)));
    for (CPen* pen : {&wide, &thin}) {
        CPen* const before = dc.SelectObject(pen);
        for (const Curve& curve : lean)
            dc.PolylineF(curve.data(), static_cast<int>(curve.size()));
        dc.SelectObject(before);
    }
}

/// Draws inside the plot only; both its edges belong to it.
void strokeInPlot(CDC& dc, const ABAxis& axis, const std::vector<Curve>& curves, COLORREF color)
{
    CRect plot = axis.getGraphRect();
    plot.right += 1;
    plot.bottom += 1;
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(plot);
    strokeTwoToned(dc, curves, color);
    dc.RestoreDC(saved);
}

}  // namespace

void drawAreas(CDC& dc, const ABAxis& axis, const std::vector<AreaOutline>& areas)
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
    strokeInPlot(dc, axis, outlines, areaColor);
}

void drawModel(CDC& dc, const ABAxis& axis, const MapFrame& frame, const AComponents& model)
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
        const double size = unitsOf(dc, crossSize);
        outlines.push_back({{c.x - size, c.y}, {c.x + size, c.y}});
        outlines.push_back({{c.x, c.y - size}, {c.x, c.y + size}});
    }
    strokeInPlot(dc, axis, outlines, modelColor);
}

}  // namespace pavane
