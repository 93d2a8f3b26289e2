#include "pavane/tables/components/ModelLayer.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/outline_stroke.h"
#include "pavane/tables/components/component_outline.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

namespace pavane
{

namespace
{

constexpr OutlineStyle modelStyle{RGB(255, 255, 255), RGB(0, 0, 0), 1, 3};
/// A hue that palettes of maps do not have.
constexpr OutlineStyle selectedStyle{RGB(255, 110, 200), RGB(0, 0, 0), 3, 5};
/// Half the size of the cross that stands for a point component, in pixels.
constexpr int crossSize = 4;
/// The cross of a selected point is twice as large, and lines have a width.
constexpr int boundsMargin = 2 * crossSize + 4;
constexpr double radiansPerDegree = std::numbers::pi / 180;

double distanceTo(CPointF p, CPointF a, CPointF b)
{
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    const double along =
        length > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length, 0.0, 1.0) : 0;
    return std::hypot(p.x - a.x - along * dx, p.y - a.y - along * dy);
}

}  // namespace

CPointF ModelLayer::pixelOf(const ABAxis& axis, double east, double north) const
{
    const MapPlace place = frame_->onAxes(east, north);
    return axis.RPtoGPF(place.x, place.y);
}

CRect ModelLayer::BoundsOf(int i, const ABAxis& axis) const
{
    const ACompItem& item = (*model_)(i);
    const double angle = item.Angle() * radiansPerDegree;
    const double east = item.Distance() * std::sin(angle);
    const double north = item.Distance() * std::cos(angle);
    const double half = std::abs(item.LargeAxis()) / 2 * std::max(1.0, std::abs(item.AxisRatio()));
    CRect box;
    for (const double x : {-half, half})
        for (const double y : {-half, half}) {
            const CPointF p = pixelOf(axis, east + x, north + y);
            const double bound = std::numeric_limits<short>::max();
            // far outside, or no place at all: cut, so that it is a number of pixels
            const int px = static_cast<int>(p.x > -bound ? std::min(p.x, bound) : -bound);
            const int py = static_cast<int>(p.y > -bound ? std::min(p.y, bound) : -bound);
            const CRect at(px - boundsMargin, py - boundsMargin, px + boundsMargin,
                           py + boundsMargin);
            box.UnionRect(box, at);
        }
    return box;
}

std::vector<std::vector<CPointF>> ModelLayer::curvesOf(int i, const ABAxis& axis,
                                                       double cross) const
{
    const auto drawn = [&](const APoint<double>& sky) { return pixelOf(axis, sky.x, sky.y); };
    AArray<APoint<double>> points(0, 0, 256);
    const APoint<double> centre = componentOutline((*model_)(i), points);
    if (points.count() == 0) {
        const CPointF c = drawn(centre);
        return {{{c.x - cross, c.y}, {c.x + cross, c.y}}, {{c.x, c.y - cross}, {c.x, c.y + cross}}};
    }
    std::vector<CPointF> outline;
    outline.reserve(static_cast<std::size_t>(points.count()));
    for (int k = 0; k < points.count(); ++k)
        outline.push_back(drawn(points(k)));
    return {std::move(outline)};
}

void ModelLayer::draw(CDC& dc, const ABAxis& axis)
{
    OutlineCurves outlines;
    const double cross = unitsOf(dc, crossSize);
    const auto isSeen = [&](int i) {
        CRect common;
        return !part_ || common.IntersectRect(BoundsOf(i, axis), *part_);
    };
    for (int i = 0; i < model_->count(); ++i)
        if (i != selected_ && isSeen(i))
            for (auto& curve : curvesOf(i, axis, cross))
                outlines.push_back(std::move(curve));
    strokeOutlines(dc, axis, outlines, modelStyle);
    if (selected_ >= 0 && selected_ < model_->count())
        strokeOutlines(dc, axis, curvesOf(selected_, axis, 2 * cross), selectedStyle);
}

int ModelLayer::ComponentAt(const ABAxis& axis, CPoint pixel, double reach) const
{
    int found = -1;
    const CPointF p{static_cast<double>(pixel.x), static_cast<double>(pixel.y)};
    for (int i = 0; i < model_->count(); ++i) {
        CRect box = BoundsOf(i, axis);
        box.InflateRect(static_cast<int>(reach), static_cast<int>(reach));
        if (!box.PtInRect(pixel))
            continue;
        for (const auto& curve : curvesOf(i, axis, crossSize))
            for (std::size_t k = 1; k < curve.size(); ++k)
                // of those that lie on another the last one is seen
                if (const double d = distanceTo(p, curve[k - 1], curve[k]); d <= reach) {
                    reach = d;
                    found = i;
                }
    }
    return found;
}

}  // namespace pavane
