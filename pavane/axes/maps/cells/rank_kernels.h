#pragma once

#include "pavane/axes/maps/cells/pixel_cells.h"
#include "pavane/axes/maps/cells/simd_path.h"

#include <cstddef>
#include <vector>

namespace pavane
{

/// Bytes that a kernel of ranks may read beyond the end of a row.
constexpr int rankMargin = 32;

/// Where the two items of each group of a row lie, in a form for byte shuffles: blocks of 16
/// groups, each with its first byte of the row and one pair of shuffles for each 16 bytes from
/// there on.
struct ItemShuffles {
    static constexpr int groupsOfBlock = 16;
    struct Block {
        int base;     ///< first byte of the row
        int chunks;   ///< how many times 16 bytes from there
        int shuffle;  ///< index of the first of as many shuffles
    };
    /// 16 places of first items and 16 of last items; above 127 where the item is in no such byte.
    struct Shuffle {
        unsigned char places[32];
    };
    std::vector<Block> blocks;
    std::vector<Shuffle> shuffles;
};

/// The loops over rows of ranks (bytes).
struct RankKernels {
    /// 1 + the index that RowKernels::quantize gives for each finite cell, 0 for the others.
    void (*rank)(const float* cells, int count, float low, float scale, int last,
                 unsigned char* ranks);
    /// Items become the greatest of 1 to 4 rows, none of which is `greatest`. The bytes that lie
    /// `ahead` behind those of the rows are asked for, wherever that is: the rows of the next call.
    void (*fold)(const unsigned char* const* row, int rows, int count, std::ptrdiff_t ahead,
                 unsigned char* greatest);
    /// The greatest of each item and the one `distance` behind it; `greatest` is not `row`.
    void (*pairs)(const unsigned char* row, int distance, int count, unsigned char* greatest);
    /// The greater of the two items of each group. Writes whole blocks. Null where groups are
    /// better taken one by one.
    void (*join)(const unsigned char* row, const ItemShuffles& items, unsigned char* greatest);
};

const RankKernels& rankKernels(SimdPath path);

}  // namespace pavane
