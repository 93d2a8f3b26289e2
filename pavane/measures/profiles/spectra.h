#pragma once

#include "pavane/measures/areas/area_cells.h"
#include "pavane/measures/areas/cell_numbers.h"
#include "pavane/measures/maps/moments.h"
#include "platform/api.h"
#include "tessel/progress_function.h"

#include <string>
#include <vector>

namespace pavane
{

/// What some cells hold in each plane of a cube. Rows and columns count in the map.
struct CellSpectrum {
    AreaCells cells;
    std::vector<CellNumbers> numbers;  ///< one for each plane of the CubePart
};

/// The one cell; none beyond the map. 0 without memory.
PAVANE_API int cellsOfPlace(int row, int column, int rows, int columns, AreaCells& cells);
/// Those of a rectangle, all ends included, as far as they lie on the map. 0 without memory.
PAVANE_API int cellsOfBox(int top, int left, int bottom, int right, int rows, int columns,
                          AreaCells& cells);

/// Finds the numbers of the cells of each spectrum in every plane of the cube, in one pass over the
/// planes; the rows of a plane that hold cells are in memory at a time. 0 with `error` without
/// memory, when a plane cannot be read or when `progress` gave up.
PAVANE_API int findSpectra(const CubePart& part, std::vector<CellSpectrum>& spectra,
                           std::string& error, const ProgressFunction& progress = {});

}  // namespace pavane
