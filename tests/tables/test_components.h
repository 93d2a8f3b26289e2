#pragma once

#include "pavane/tables/AComponents.h"

namespace pavane
{

inline ACompItem component(std::int32_t kind, double flux, double axis, double ratio,
                           double inclination, double angle, double distance, double width)
{
    ACompItem item;
    item.type = kind;
    item.PeakFlux() = flux;
    item.LargeAxis() = axis;
    item.AxisRatio() = ratio;
    item.Inclination() = inclination;
    item.Angle() = angle;
    item.Distance() = distance;
    item.Width() = width;
    return item;
}

}  // namespace pavane
