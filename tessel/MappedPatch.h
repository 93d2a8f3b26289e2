#pragma once

#include "tessel/api.h"
#include "tessel/CellMapping.h"

namespace pavane
{

/// A place in cells of a map (MP).
struct CellPlace {
    double column = 0, row = 0;
};

/// A rectangle of a map whose places on another one are curves of second degree through 3 x 3
/// mapped places. Mapping through the sky takes half a microsecond a place, this some nanoseconds.
class PAVANE_API MappedPatch
{
public:
    /// How far the curves may miss, in cells of the other map.
    static constexpr double tolerance = 1e-4;

    /// Fits the rectangle from `first` on, `height` by `width` cells (fractions allowed). 0 where
    /// one of the places has none on the other map, or where six others that are mapped as well lie
    /// off the curves; the patch is not to be asked then.
    int fit(const CellMapping& mapping, CellPlace first, double height, double width);
    /// The place at the parts `v` of the height and `u` of the width, 0 to 1 each.
    CellPlace at(double v, double u) const;

private:
    CellPlace nodes_[3][3];
};

}  // namespace pavane
