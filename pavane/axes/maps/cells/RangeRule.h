#pragma once

#include "pavane/axes/maps/cells/AMapHistogram.h"

namespace pavane
{

/// How the range of a map's colours is chosen, so that the same way can be gone for other cells.
struct PAVANE_API RangeRule {
    enum class Kind {
        cells,        ///< least to greatest
        fixed,        ///< `low` to `high`
        percentiles,  ///< between these per cents
        noise,        ///< median and so many times the noise below and above
        zscale
    };
    Kind kind = Kind::cells;
    double low = 0;
    double high = 0;

    /// The middle `perCent` of the cells.
    static RangeRule middle(double perCent);
    /// From 3 times the noise below the median to 30 times above.
    static RangeRule ofNoise() { return {Kind::noise, -3, 30}; }
    /// The range for these cells; unset where the rule gives none.
    TMnMx range(const AMapHistogram& cells) const;
    friend bool operator==(const RangeRule&, const RangeRule&) = default;
};

}  // namespace pavane
