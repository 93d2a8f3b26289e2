#pragma once

#include "pavane/imaging/StudyRound.h"
#include "pavane/tables/components/AComponents.h"
#include "tessel/ABitMatrix.h"
#include "tessel/api.h"
#include "tessel/fits_map.h"

#include <string>

namespace pavane
{

// Maps of rounds as values: what an engine has written is checked here before it counts.

/// Reads a map that an engine has written. 0, with a clause, when it is cut, of another size than
/// these columns and rows, or has no cell with a value.
PAVANE_API int readEngineMap(const std::string& file, int width, int height, FitsMap& map,
                             std::string& fault);

/// The mask that areas (as AreaCollection stores them) make on a map: `mask` is empty when there
/// are no areas, which means the whole map. 0, with a clause, for areas that cannot be read or give
/// no cells, and when no cell of the map lies in them.
PAVANE_API int maskOfAreas(const std::string& areas, const FitsMap& map, ABitMatrix& mask,
                           std::string& fault);

/// The greatest value by amount of the cells in the mask (empty: of all), with its sign, and its
/// cell.
struct CellPeak {
    double value = 0;
    int x = -1, y = -1;  ///< column and row from 0; -1: no cell has a value
};
PAVANE_API CellPeak peakIn(const AMatrix<float>& cells, const ABitMatrix& mask);

/// Root of the mean square of the cells inside (or outside) the mask; NaN without such cells.
PAVANE_API double rmsOf(const AMatrix<float>& cells, const ABitMatrix& mask, int inside);

/// Noise of a residual outside the mask in Jy a beam: the rms there; with no mask, or one of the
/// whole map, from the median absolute deviation of all cells.
PAVANE_API double noiseOutside(const AMatrix<float>& residual, const ABitMatrix& mask);

/// Fills what maps tell: noise, peak, fluxes. Model and restored map may be null.
PAVANE_API void measureRound(const FitsMap& residual, const FitsMap* model, const FitsMap* restored,
                             const ABitMatrix& mask, RoundNumbers& numbers);

/// Components of more cells than this stay a map.
inline constexpr long long mostModelCells = 20000;

/// The model image as components: a point for each cell that is not 0, at its centre's distance and
/// angle from the reference pixel, in the order of rows. 0, with a clause and the list empty, when
/// there are more than `most`.
PAVANE_API int componentsOfModel(const FitsMap& model, AComponents& components, std::string& fault,
                                 long long most = mostModelCells);

/// Components as a model image on the cells of `like`, Jy a cell: points snap to the centre of
/// their cell, others are spread as ACompItem::ToMap does. 0, with a clause, when a point lies
/// outside the map or a field is not finite.
PAVANE_API int modelOfComponents(const AComponents& components, const FitsMap& like, FitsMap& model,
                                 std::string& fault);

}  // namespace pavane
