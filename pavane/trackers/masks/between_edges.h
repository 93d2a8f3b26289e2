#pragma once

#include "pavane/trackers/masks/scan_edge.h"
#include "tessel/ABitMatrix.h"

namespace pavane
{

// Rows that a polygon crosses twice, as most rows of most polygons are: eight at a time, with the
// widest vectors of the processor. Every processor sets the same bits.

/// Rows of a block.
inline constexpr int blockRows = 8;

/// Sets the bits between two edges, which stand at `row`, in the rows from there to `last`, and
/// leads the edges to the row after it.
void fillBetween(ABitMatrix& mask, int row, int last, ScanEdge& a, ScanEdge& b);

/// Sets the bits between a[i] and b[i], in either order, in row + i for i from 0 to rows - 1, at
/// most a block of rows. All items of a and b are read.
void fillBetween(ABitMatrix& mask, int row, int rows, const int (&a)[blockRows],
                 const int (&b)[blockRows]);

}  // namespace pavane
