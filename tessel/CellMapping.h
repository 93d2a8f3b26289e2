#pragma once

#include "tessel/api.h"
#include "tessel/SkyCoordinates.h"

namespace pavane
{

/// A way on the sky in degrees, east and north in the frame of the map that is told of.
struct SkyShift {
    double east = 0, north = 0;

    int isNone() const { return east == 0 && north == 0; }
};

/// Carries places of one map to another one through both positions, whatever their projections and
/// frames. Cells (MP) count from 0 and may have fractions.
class PAVANE_API CellMapping
{
public:
    /// Both have to be set and to outlive the mapping. With `moved` what lies at a place of `from`
    /// is looked for so far away from there: the sky is turned as a whole, so that the reference
    /// position of `from` moves by it.
    CellMapping(const SkyCoordinates& from, const SkyCoordinates& to, SkyShift moved = {});

    /// 0, and the results left alone, where one of the maps does not show the position.
    int map(double column, double row, double& toColumn, double& toRow) const;
    /// Degrees from north through east that the north of `from` has in the frame of `to`, at a
    /// place of `from`. 0 as `map`.
    int northOf(double column, double row, double& angle) const;

private:
    int move(double& longitude, double& latitude) const;

    const SkyCoordinates* from_;
    const SkyCoordinates* to_;
    int moves_ = 0;
    double turn_[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
};

/// Whether two maps of so many cells show some of the same sky: one of 33 x 33 places of either map
/// lies in the other, within half a cell.
PAVANE_API int showTheSame(const SkyCoordinates& first, int firstRows, int firstColumns,
                           const SkyCoordinates& second, int secondRows, int secondColumns,
                           SkyShift firstMoved = {});

}  // namespace pavane
