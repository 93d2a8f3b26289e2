#include "pavane/tables/components/component_outline.h"

#include <cmath>

namespace pavane
{

namespace
{

constexpr double pi = 3.141592653589793;
constexpr double radiansPerDegree = pi / 180;
/// Smooth at any size that a page has, and a multiple of four, so that the axes' ends are hit.
constexpr int ellipsePoints = 120;

int hasOutline(const ACompItem& item)
{
    return item.type >= gaussianComponent && item.type <= wideRingComponent &&
           item.LargeAxis() != 0;
}

}  // namespace

APoint<double> componentOutline(const ACompItem& item, AArray<APoint<double>>& points)
{
    const double angle = item.Angle() * radiansPerDegree;
    const APoint<double> centre{item.Distance() * std::sin(angle),
                                item.Distance() * std::cos(angle)};
    points.Free();
    if (!hasOutline(item))
        return centre;
    const double turn = item.Inclination() * radiansPerDegree;
    const bool strip = item.type == stripComponent;
    const double large = strip ? 0 : item.LargeAxis() / 2;
    const double small = strip ? item.LargeAxis() / 2 : large * item.AxisRatio();
    const int corners = strip ? 2 : ellipsePoints;
    for (int i = 0; i <= corners; ++i) {
        const double around = 2 * pi * (i % corners) / corners;
        const double along = large * std::cos(around);
        const double across = small * (strip ? std::cos(around) : std::sin(around));
        points.Add({centre.x + along * std::sin(turn) + across * std::cos(turn),
                    centre.y + along * std::cos(turn) - across * std::sin(turn)});
    }
    return centre;
}

}  // namespace pavane
