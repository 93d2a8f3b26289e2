#pragma once

#include "pavane/axes/ranges/TMinMax.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace pavane
{

// What an axis does with the pairs of a range that it was given, or found in the data.

/// Non-zero for the pair that a range starts as.
inline bool isUnset(double min, double max) { return min == unsetMinimum && max == unsetMaximum; }

/// Takes `value` into the pair when it is finite.
inline void widen(double& min, double& max, double value)
{
    if (!std::isfinite(value))
        return;
    min = std::min(min, value);
    max = std::max(max, value);
}

/// Parts equal ends by half their value and puts reversed ones in order.
inline void repairPair(double& min, double& max)
{
    constexpr double greatest = std::numeric_limits<double>::max();
    if (min == max) {
        const double half = min == 0 ? 1 : 0.5 * min;
        min -= half;
        max = std::clamp(max + half, -greatest, greatest);
    }
    if (min > max)
        std::swap(min, max);
}

/// Puts the ends that were asked for into a range found from the data, as far as they are finite.
/// An end found on the wrong side of an asked one becomes equal to it.
inline void keepFiniteEnds(double askedMin, double askedMax, double& min, double& max)
{
    if (isUnset(askedMin, askedMax))
        return;
    if (std::isfinite(askedMin)) {
        min = askedMin;
        max = std::isfinite(askedMax) ? askedMax : std::max(min, max);
    } else if (std::isfinite(askedMax)) {
        max = askedMax;
        min = std::min(min, max);
    }
}

}  // namespace pavane
