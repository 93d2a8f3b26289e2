#pragma once

#include "pavane/trackers/shapes/AreaShape.h"
#include "platform/api.h"
#include "platform/types.h"
#include "tessel/ABitMatrix.h"
#include "tessel/StopFlag.h"

#include <vector>

namespace pavane
{

/// Areas in cells of a map.
using AreaList = std::vector<AreaShape>;

/// Which cells an area has.
enum class MaskRule {
    outline,  ///< those inside and those of its outline, as AAreaBitFill fills
    /// Those whose centre lies inside: strictly inside rectangles and ellipses; of polygons, where
    /// edges cross an even number of times to one side is outside, and of two that share an edge
    /// one has the centres on it.
    centres
};

/// Makes `mask`, of rows x columns, that of the areas: the cells of all of them are set, then those
/// of never-clean ones cleared, wherever these stand. Without an area, or with never-clean ones
/// alone, the whole map is set before. What lies outside the map costs nothing. 0 with `error`, and
/// `mask` as it was, for a size below 1, an area that is not whole (`isWhole`), without memory and
/// when stopped.
PAVANE_API int maskOfAreas(const AreaList& areas, int rows, int columns, MaskRule rule,
                           ABitMatrix& mask, CString& error, const StopFlag* stop = nullptr);

/// Closed polygons, never-clean ones for holes, whose mask by either rule is `mask` again, cell by
/// cell; cells that hang together by their sides share one, a line of cells and a single one too.
/// Of a mask without a cell it is one never-clean area over all of it. 0 with `error`, and `areas`
/// as they were, for a mask of no size, without memory and when stopped.
PAVANE_API int areasOfMask(const ABitMatrix& mask, AreaList& areas, CString& error,
                           const StopFlag* stop = nullptr);

}  // namespace pavane
