#pragma once

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/ranges/RangeView.h"

namespace pavane
{

/// How the directions of an axis count, for the arithmetic of ranges.
inline PlotDirections directionsOf(const ABAxis& axis)
{
    return {axis.getXDirect(), axis.getYDirect()};
}

}  // namespace pavane
