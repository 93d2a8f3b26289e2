#pragma once

#include "tessel/AMatrix.h"
#include "tessel/api.h"
#include "tessel/map_header.h"
#include "tessel/progress_function.h"

#include <functional>
#include <string>
#include <vector>

namespace pavane
{

/// Writes a map that was made of others as writeFitsMap does, with lines that tell how: each
/// becomes cards of HISTORY. A map without any finite value is refused.
PAVANE_API int writeMadeMap(const std::string& file, const AMatrix<float>& cells,
                            const MapHeader& header, const std::vector<std::string>& history,
                            std::string& error, const ProgressFunction& progress = {});

/// The cells of a row, from 0, until the next is asked for; null with `error` when there are none.
using RowFunction = std::function<const float*(int row, std::string& error)>;

/// The same of a map whose rows come one after the other, so that none needs to be kept.
PAVANE_API int writeMadeRows(const std::string& file, int rows, int columns,
                             const MapHeader& header, const std::vector<std::string>& history,
                             const RowFunction& rowOf, std::string& error,
                             const ProgressFunction& progress = {});

/// The header of a map that is brought onto the grid of another one: axes 1 and 2 and the frame of
/// `like`, everything else of `map`, whose plane becomes the only one. The beam keeps its angle.
PAVANE_API MapHeader headerOnGrid(const MapHeader& map, const MapHeader& like);

/// The header of an image that has the values of a map along two other axes, which are not on the
/// sky: those two, and of the map the unit, the beam, the Stokes parameter of its plane, the
/// object, date, telescope, rest frequency and the frame of velocities.
PAVANE_API MapHeader headerOnAxes(const MapHeader& map, const MapAxis& first,
                                  const MapAxis& second);

/// Gives the plane of a header another value on its axis of Stokes parameters, if it has one. Made
/// maps have 5 for linearly polarised intensity, 6 for its degree and 7 for its angle (AIPS Memo
/// 117).
PAVANE_API void setStokesCode(MapHeader& header, int code);

}  // namespace pavane
