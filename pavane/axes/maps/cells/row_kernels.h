#pragma once

#include "pavane/axes/maps/cells/simd_path.h"

namespace pavane
{

/// The loops over rows of cells that a colour map and its range scan stand on.
struct RowKernels {
    /// Folds `rows` (1 to 4) rows of `count` cells into `greatest`, one item a column, and their
    /// least finite cells into the 16 lanes of `least`. With `fresh` the items of `greatest` are
    /// written without being read. A column without a finite cell gets minus infinity.
    void (*fold)(const float* const* row, int rows, int count, float* greatest, int fresh,
                 float* least);
    /// Least and greatest finite cell of a row, folded into 16 lanes each.
    void (*range)(const float* row, int count, float* least, float* greatest);
    /// values[i] becomes the greater of values[i] and values[i + distance], i rising; `values` has
    /// count + distance items.
    void (*pairwise)(float* values, int count, int distance);
    /// Index of each value: trunc((value - low) * scale) cut to 0..last; `blank` where the value is
    /// minus infinity.
    void (*quantize)(const float* values, int count, float low, float scale, int last,
                     unsigned char blank, unsigned char* indices);
    /// to[i] = from[group[i]]; group rises or falls by at most 1 from one item to the next, and
    /// `from` may be read 16 bytes beyond its end.
    void (*expand)(const unsigned char* from, const int* group, int count, unsigned char* to);
};

const RowKernels& rowKernels(SimdPath path);

}  // namespace pavane
