#pragma once

#include "platform/api.h"
#include "tessel/ABitMatrix.h"
#include "tessel/AMatrix.h"
#include "tessel/CellMapping.h"
#include "tessel/map_header.h"
#include "tessel/progress_function.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// A map on the grid of another one. Its header has the axes and the frame of that grid, the beam's
/// angle in that frame, and the rest of the map.
struct RegriddedMap {
    AMatrix<float> cells;
    MapHeader header;
    std::int64_t known = 0;  ///< cells with a value
    /// Cells of the map in one of the grid, in the middle of both; values per pixel were multiplied
    /// by it, as it is at each cell.
    double area = 1;
};

/// Brings a map onto the grid of `like` (its first two axes, their lengths, its frame): each cell
/// gets the bicubic interpolation (Keys 1981, IEEE Trans. ASSP 29, 1153, a = -1/2) of the map at
/// the position of its centre. A cell is blank when one of the 16 cells that it takes in is blank
/// or beyond the edge; of a place that is on a cell's centre to 1e-5 cells only that counts. Values
/// per pixel are multiplied by the ratio of the areas of cells; nothing is averaged, so a grid that
/// is much coarser than the beam is no place for a map. `moved` brings the map there as if it lay
/// so much farther east and north, in the frame of `like`. 0 with `error`, in one line without a
/// name, when a map has no place on the sky, they have no position in common, without memory and
/// when `progress` gave up.
PAVANE_API int regridMap(const AMatrix<float>& cells, const MapHeader& header,
                         const MapHeader& like, SkyShift moved, RegriddedMap& made,
                         std::string& error, const ProgressFunction& progress = {});

/// Brings a mask of the cells of a map onto those of `like`: a cell is in it when its centre lies
/// in a cell of the map that is. 0 with `error` as regridMap, also when no cell is.
PAVANE_API int regridMask(const ABitMatrix& mask, const MapHeader& header, const MapHeader& like,
                          ABitMatrix& made, std::string& error);

/// Non-zero when two maps have the same cells: as many, and on the sky those of one lie on those of
/// the other to 1 per cent of a cell at the corners and in the middle; elsewhere the axes agree.
PAVANE_API int haveSameCells(const MapHeader& first, const MapHeader& second);

}  // namespace pavane
