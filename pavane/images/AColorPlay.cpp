#include "pavane/images/AColorPlay.h"

#include <algorithm>
#include <cmath>

namespace pavane
{

int AColorPlay::isUsable() const
{
    return !std::isnan(contrast) && std::isfinite(bias) && std::isfinite(gamma) && gamma > 0;
}

double AColorPlay::place(double t) const
{
    const double away = t - bias;
    double at = away == 0 ? 0.5 : away * contrast + 0.5;
    at = std::clamp(at, 0.0, 1.0);
    if (gamma != 1)
        at = std::pow(at, gamma);
    return invert ? 1 - at : at;
}

int AColorPlay::apply(AArray<COLORREF>& colours) const
{
    if (!isUsable())
        return 0;
    const int last = colours.count() - 1;
    if (last < 1)
        return 1;
    const AArray<COLORREF> before = colours;
    if (before.count() != colours.count())
        return 0;  // no memory
    for (int i = 0; i <= last; ++i)
        colours(i) = before(static_cast<int>(std::lround(place(1.0 * i / last) * last)));
    return 1;
}

}  // namespace pavane
