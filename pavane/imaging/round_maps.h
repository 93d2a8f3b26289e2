#pragma once

#include "pavane/tables/components/AComponents.h"
#include "tessel/ABitMatrix.h"
#include "tessel/api.h"
#include "tessel/fits_map.h"

#include <string>

namespace pavane
{

// Maps of rounds as values.

/// The mask that areas (as AreaCollection stores them) make on a map of so many rows and columns:
/// `mask` is empty when there are no areas, which means the whole map. 0, with a clause, for areas
/// that cannot be read or give no cells, and when no cell of the map lies in them.
PAVANE_API int maskOfAreas(const std::string& areas, const MapHeader& header, int rows, int columns,
                           ABitMatrix& mask, std::string& fault);

/// Components of more cells than this stay a map.
inline constexpr long long mostModelCells = 20000;

/// The model image as components: a point for each cell that is not 0, at its centre's distance and
/// angle from the reference pixel, in the order of rows. 0, with a clause and the list empty, when
/// there are more than `most`.
PAVANE_API int componentsOfModel(const FitsMap& model, AComponents& components, std::string& fault,
                                 long long most = mostModelCells);

/// Components as a model image of so many cells that lie as those of `like`, Jy a cell: points snap
/// to the centre of their cell, others are spread as ACompItem::ToMap does. 0, with a clause, when
/// a point lies outside the map or a field is not finite.
PAVANE_API int modelOfComponents(const AComponents& components, const MapHeader& like, int rows,
                                 int columns, FitsMap& model, std::string& fault);

}  // namespace pavane
