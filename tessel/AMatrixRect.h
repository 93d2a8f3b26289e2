#pragma once

namespace pavane
{

/// A block of matrix cells: first row, first column, last row, last column, the last ones included.
/// A block whose first index is above its last holds no cell.
struct AMatrixRect {
    int firstRow = 0;
    int firstColumn = 0;
    int lastRow = -1;
    int lastColumn = -1;
};

}  // namespace pavane
