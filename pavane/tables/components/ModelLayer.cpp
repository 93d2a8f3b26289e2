#include "pavane/tables/components/ModelLayer.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/figure_units.h"
#include "pavane/axes/outline_stroke.h"
#include "pavane/tables/components/component_outline.h"

namespace pavane
{

namespace
{

constexpr OutlineStyle modelStyle{RGB(255, 255, 255), RGB(0, 0, 0), 1, 3};
/// Half the size of the cross that stands for a point component, in pixels.
constexpr int crossSize = 4;

}  // namespace

void ModelLayer::draw(CDC& dc, const ABAxis& axis)
{
    const auto drawn = [&](const APoint<double>& sky) {
        const MapPlace place = frame_->onAxes(sky.x, sky.y);
        return axis.RPtoGPF(place.x, place.y);
    };
    OutlineCurves outlines;
    AArray<APoint<double>> points(0, 0, 256);
    for (int i = 0; i < model_->count(); ++i) {
        const APoint<double> centre = componentOutline((*model_)(i), points);
        std::vector<CPointF> outline;
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
    strokeOutlines(dc, axis, outlines, modelStyle);
}

}  // namespace pavane
