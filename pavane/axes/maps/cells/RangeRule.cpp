#include "pavane/axes/maps/cells/RangeRule.h"

#include <cmath>

namespace pavane
{

RangeRule RangeRule::middle(double perCent)
{
    return {Kind::percentiles, (100 - perCent) / 2, (100 + perCent) / 2};
}

TMnMx RangeRule::range(const AMapHistogram& cells) const
{
    if (cells.count() < 1)
        return {};
    TMnMx range{low, high};
    if (kind == Kind::cells) {
        range = {cells.least(), cells.greatest()};
    } else if (kind == Kind::percentiles) {
        range = cells.percentileRange(low, high);
    } else if (kind == Kind::zscale) {
        range = cells.zscale();
    } else if (kind == Kind::noise) {
        const MapNoise noise = cells.noise();
        range = {noise.median + low * noise.sigma, noise.median + high * noise.sigma};
    }
    const int isRange = range.min < range.max && std::isfinite(range.max - range.min);
    return isRange && !cells.isBrokenOff() ? range : TMnMx{};
}

}  // namespace pavane
