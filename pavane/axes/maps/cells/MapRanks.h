#pragma once

#include "pavane/axes/maps/cells/map_picture.h"

namespace pavane
{

/// The cells of a map as ranks of colours, a byte each: 0 for a cell without a value, 1 + k for
/// colour k. Since colours rise with the values, the greatest rank of several cells is the colour
/// of the greatest of them; a picture made from ranks is the one that MapReduction and paintMap
/// make, from a quarter of the memory. For windows that show the same map again and again.
class PAVANE_API MapRanks
{
public:
    /// Ranks all cells on `scale` with `count` colours, 1 to 226. Non-zero on success; 0, and
    /// empty, without memory.
    int set(const AMatrixAccess& cells, const MapScale& scale, int count,
            SimdPath path = bestSimdPath());
    void clear() { ranks_ = AMatrix<unsigned char>(); }
    int isEmpty() const { return ranks_.cells() < 1; }

    /// As paintMap, where pixels show the greatest of the cells that they share; `colors.count` is
    /// that of `set`. 0 when the cells of `x` and `y` are not those of the map.
    int paint(const PixelCells& x, const PixelCells& y, const MapColors& colors,
              unsigned char* bits, std::ptrdiff_t stride, SimdPath path = bestSimdPath()) const;

private:
    AMatrix<unsigned char> ranks_;
};

}  // namespace pavane
