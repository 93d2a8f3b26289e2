#pragma once

#include "pavane/axes/ranges/TMinMax.h"
#include "platform/api.h"
#include "tessel/AMatrixRect.h"

namespace pavane
{

/// Linear conversions between data values (RP) and the cells (MP: row = y, column = x, from 0) of a
/// map that spans a range. The centre of the first cell lies on the range's minimum, that of the
/// last on its maximum, so a range has (count - 1) steps; a minimum above its maximum means that
/// values fall with the index. Only the x and y pairs count. A plain value.
class PAVANE_API AMnMxMCTransform
{
public:
    /// An unset range and no cells: call Init.
    AMnMxMCTransform() = default;
    AMnMxMCTransform(const TMinMax& range, int rows, int columns) { Init(range, rows, columns); }
    void Init(const TMinMax& range, int rows, int columns);

    /// Value at the centre of a cell; the index may have a fraction. A single cell along the
    /// direction gives an infinity or not-a-number.
    double MPXtoRPX(const double& column) const;
    double MPYtoRPY(const double& row) const;
    /// Deliberate: the nearest cell, cut towards zero after a half is added, so that values up to a
    /// cell and a half before the range still land on cell 0; masks and tracker shapes depend on
    /// the same cells. Not clamped to the matrix; saturates at plus or minus 2^30.
    int RPXtoMPX(const double& x) const;
    int RPYtoMPY(const double& y) const;
    /// The block of cells that covers the x and y pairs of `r`, in either order.
    /// Deliberate: only the first indices are raised to 0 and only the last lowered to the last
    /// cell; a block wholly outside keeps a first index above its last, which holds no cell.
    void GetRect(const TMinMax& r, AMatrixRect& cells) const;

private:
    TMinMax range_;
    int rows_ = 0;
    int columns_ = 0;
};

}  // namespace pavane
