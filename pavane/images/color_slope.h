#pragma once

#include <algorithm>
#include <cmath>

namespace pavane
{

// How drags and keys change the contrast of colours: the same wherever they are made.

/// A fine drag moves so much of what the pointer does.
inline constexpr double finePart = 0.1;
/// A drag over the height of a plot changes the contrast by this factor.
inline constexpr double contrastOfHeight = 10;

/// A contrast times `factor`, which never reaches 0 and keeps its sign.
inline double steeper(double contrast, double factor)
{
    constexpr double least = 0.01, most = 1000;
    const double slope = std::clamp(std::fabs(contrast), least, most) * factor;
    return std::copysign(std::clamp(slope, least, most), contrast);
}

}  // namespace pavane
