#include "pavane/tables/components/ModelLayer.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/outline_stroke.h"
#include "pavane/tables/components/component_outline.h"

#include <algorithm>
#include <cmath>
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

double distanceTo(CPointF p, CPointF a, CPointF b)
{
    const double dx = b.x - a.x, dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    const double along =
        length > 0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / length, 0.0, 1.0) : 0;
    return std::hypot(p.x - a.x - along * dx, p.y - a.y - along * dy);
}

}  // namespace

std::vector<std::vector<CPointF>> ModelLayer::curvesOf(int i, const ABAxis& axis,
                                                       double cross) const
{
    const auto drawn = [&](const APoint<double>& sky) {
        const MapPlace place = frame_->onAxes(sky.x, sky.y);
        return axis.RPtoGPF(place.x, place.y);
    };
    AArray<APoint<double>> points(0, 0, 256);
    const APoint<double> centre = componentOutline((*model_)(i), points);
    if (points.count() == 0) {
        const CPointF c = drawn(centre);
        return {{{c.x - cross, c.y}, {c.x + cross, c.y}}, {{c.x, c.y - cross}, {c.x, c.y + cross}}};
    }
    std::vector<CPointF> outline;
    for (int k = 0; k < points.count(); ++k)
        outline.push_back(drawn(points(k)));
    return {std::move(outline)};
}

void ModelLayer::draw(CDC& dc, const ABAxis& axis)
{
    OutlineCurves outlines;
    const double cross = unitsOf(dc, crossSize);
    for (int i = 0; i < model_->count(); ++i)
        if (i != selected_)
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
    for (int i = 0; i < model_->count(); ++i)
        for (const auto& curve : curvesOf(i, axis, crossSize))
            for (std::size_t k = 1; k < curve.size(); ++k)
                // of those that lie on another the last one is seen
                if (const double d = distanceTo(p, curve[k - 1], curve[k]); d <= reach) {
                    reach = d;
                    found = i;
                }
    return found;
}

}  // namespace pavane
