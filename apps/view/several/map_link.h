#pragma once

#include "pavane/axes/maps/MapFrame.h"
#include "pavane/trackers/shapes/AreaShape.h"
#include "tessel/SkyCoordinates.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// A map as links between maps see it; a plain value that owns nothing.
struct LinkedMap {
    const MapFrame* frame = nullptr;      ///< where its cells lie on its axes; never null in use
    const SkyCoordinates* sky = nullptr;  ///< null, or not set, for a map without positions
    int hasSky() const { return sky && sky->isSet(); }
};

/// What two maps have in common: the sky, the numbers of their cells, or nothing.
enum class LinkBy : std::uint8_t { nothing, sky, cell };

/// By what these two are linked when this is wanted: by cell where one has no positions,
/// by nothing where one has axes that count different things.
LinkBy linkBetween(LinkBy wanted, const LinkedMap& a, const LinkedMap& b);

/// The place of a cell (MP, column and row with fractions) of one map on another. 0 when the other
/// one does not show it, and without a link; the results are left alone then. Positions go through
/// the frame of `to`.
int linkedCell(LinkBy by, const LinkedMap& from, const LinkedMap& to, double& column, double& row);

/// The range (RP, x and y pairs) of `to` that shows what `shown` shows of `from`: the same middle,
/// as many degrees (or cells) across and up. It may reach beyond the cells of `to`. On the sky the
/// scale is that of both maps at the middle, so that the way back gives `shown` again, also between
/// maps that are turned against each other. 0 as above.
int linkedRange(LinkBy by, const LinkedMap& from, const LinkedMap& to, const TMinMax& shown,
                TMinMax& range);

/// Areas of one map (in its cells) as areas of another one, as region files carry them over the
/// sky. Those that the other map cannot show are left out; how many.
int linkedShapes(LinkBy by, const LinkedMap& from, const LinkedMap& to,
                 const std::vector<AreaShape>& shapes, std::vector<AreaShape>& there);
/// Equal in all that makes areas of them.
int sameShapes(const std::vector<AreaShape>& a, const std::vector<AreaShape>& b);

}  // namespace pavane
