#pragma once

#include "pavane/axes/maps/cells/AMatrixAccess.h"
#include "platform/api.h"
#include "platform/geometry.h"
#include "tessel/ABitMatrix.h"

#include <vector>

namespace pavane
{

/// Cells `first` to `last` of a row, both included.
struct CellRun {
    int row;
    int first;
    int last;
};

/// Calls `take(run)` for every run of cells that hang together with (column, row) by their sides:
/// those for which `inside(row, column)` is not 0, which `take` has to change for the cells it
/// gets.
template <typename Inside, typename Take>
void flood(int row, int column, const Inside& inside, const Take& take)
{
    std::vector<CPoint> seeds{{column, row}};
    while (!seeds.empty()) {
        const CPoint seed = seeds.back();
        seeds.pop_back();
        if (!inside(seed.y, seed.x))
            continue;
        CellRun run{seed.y, seed.x, seed.x};
        while (inside(run.row, run.first - 1))
            --run.first;
        while (inside(run.row, run.last + 1))
            ++run.last;
        take(run);
        for (const int beside : {run.row - 1, run.row + 1})
            for (int x = run.first; x <= run.last; ++x)
                if (inside(beside, x) && (x == run.first || !inside(beside, x - 1)))
                    seeds.push_back({x, beside});
    }
}

/// What the cells inside a contour are.
enum class ContourPlace {
    closed,   ///< they end inside the map
    atEdge,   ///< the contour leaves the map: they end there
    outside,  ///< the cell is not beyond the level, or blank; there are none
    noMemory
};

/// The cells that hang together with (row, column) by their sides and are not below `level`, of a
/// negative level not above it, in a mask of the map's size that is made anew; blank cells are
/// outside.
PAVANE_API ContourPlace contourMask(const AMatrixAccess& values, double level, int row, int column,
                                    ABitMatrix& mask);

/// Cells within `cells` (1 to 1000) of those that are set: of a disc about each whose radius is
/// half a cell more, so that one cell takes all eight neighbours. 0 without memory, or for another
/// number.
PAVANE_API int growMask(const ABitMatrix& mask, int cells, ABitMatrix& grown);
/// Cells that have none that is clear so near; the map's edge takes none off. 0 as above.
PAVANE_API int shrinkMask(const ABitMatrix& mask, int cells, ABitMatrix& shrunk);

}  // namespace pavane
