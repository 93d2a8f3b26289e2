#include "pavane/axes/outline_stroke.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"

#include <cmath>

namespace pavane
{

namespace
{

/// No line through the points that are kept is farther than this from one that is left out, in
/// pixels: less than the eye or the edge of a stroke tells.
constexpr double spareDistance = 1.0 / 40;

double cross(CPointF a, CPointF b) { return a.x * b.y - a.y * b.x; }

/// The curve without the points that a straight line replaces. The directions in which a line from
/// the point that was kept last stays within `tolerance` of those left out narrow with each of
/// them.
std::vector<CPointF> withoutSparePoints(const std::vector<CPointF>& curve, double tolerance)
{
    std::vector<CPointF> kept;
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

}  // namespace

void strokeOutlines(CDC& dc, const ABAxis& axis, const OutlineCurves& curves,
                    const OutlineStyle& style)
{
    CRect plot = axis.getGraphRect();  // both its edges belong to it
    plot.right += 1;
    plot.bottom += 1;
    const int saved = dc.SaveDC();
    dc.IntersectClipRect(plot);
    const int smooth = dc.SetSmooth(1);
    CPen edge(PS_SOLID, unitsOf(dc, style.edgeWidth), style.edgeColor);
    CPen line(style.pen, unitsOf(dc, style.width), style.color);
    OutlineCurves lean;
    for (const std::vector<CPointF>& curve : curves)
        lean.push_back(withoutSparePoints(curve, spareDistance * unitsOf(dc, 1)));
    for (CPen* pen : {&edge, &line}) {
        CPen* const before = dc.SelectObject(pen);
        for (const std::vector<CPointF>& curve : lean)
            dc.PolylineF(curve.data(), static_cast<int>(curve.size()));
        dc.SelectObject(before);
    }
    dc.SetSmooth(smooth);
    dc.RestoreDC(saved);
}

}  // namespace pavane
