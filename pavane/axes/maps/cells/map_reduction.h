#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "pavane/axes/maps/cells/pixel_cells.h"
#include "pavane/axes/maps/cells/simd_path.h"
#include "tessel/AMatrix.h"

namespace pavane
{

/// What a pixel shows when several cells share it.
enum class SharedPixel {
    greatest,  ///< the greatest of them, so that no source is lost
    mean       ///< their mean, for maps whose low values matter as much
};

/// The part of a map that a picture shows, cut down to one value for each group of pixels.
///
/// `reduce` goes over the cells once and finds the range of the cells that it shows on the way.
/// Cells that are not finite take no part; a value without any finite cell is minus infinity.
class PAVANE_API MapReduction
{
public:
    /// Reduces the cells that `x` (along rows) and `y` (across rows) show. Non-zero on success; 0,
    /// and empty, when nothing is shown or there is no memory.
    int reduce(const AMatrixAccess& cells, const PixelCells& x, const PixelCells& y,
               SharedPixel shared = SharedPixel::greatest, SimdPath path = bestSimdPath());

    /// Item (r, c) is the value of group r of `y` and group c of `x`.
    const AMatrix<float>& values() const { return values_; }
    /// Range of the finite cells shown (of the means, where pixels show means); least() >
    /// greatest() when there is none.
    float least() const { return least_; }
    float greatest() const { return greatest_; }

private:
    int reduceGreatest(const AMatrixAccess& cells, RowReader& rows, const PixelCells& x,
                       const PixelCells& y, SimdPath path);
    int reduceMean(RowReader& rows, const PixelCells& x, const PixelCells& y);

    AMatrix<float> values_;
    float least_ = 1;
    float greatest_ = 0;
};

}  // namespace pavane
