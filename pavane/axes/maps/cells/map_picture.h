#pragma once

#include "pavane/axes/maps/cells/map_reduction.h"
#include "pavane/axes/maps/cells/map_scale.h"

#include <cstddef>

namespace pavane
{

/// The palette indices of a colour map.
struct MapColors {
    int first = 0;    ///< index of the first colour
    int count = 226;  ///< how many colours follow one another, 1 to 256 - first
    int blank = 229;  ///< index for cells without a value
};

/// Writes a reduced map as palette indices: pixel (i, j) of `x` and `y` is byte bits[j * stride +
/// i]. Pixels that the map does not reach keep what they hold. Non-zero on success, 0 without
/// memory.
PAVANE_API int paintMap(const MapReduction& map, const PixelCells& x, const PixelCells& y,
                        const MapScale& scale, const MapColors& colors, unsigned char* bits,
                        std::ptrdiff_t stride, SimdPath path = bestSimdPath());

}  // namespace pavane
