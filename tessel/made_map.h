#pragma once

#include "tessel/AMatrix.h"
#include "tessel/api.h"
#include "tessel/map_header.h"
#include "tessel/progress_function.h"

#include <string>
#include <vector>

namespace pavane
{

/// Writes a map that was made of others as writeFitsMap does, with lines that tell how: each
/// becomes cards of HISTORY.
PAVANE_API int writeMadeMap(const std::string& file, const AMatrix<float>& cells,
                            const MapHeader& header, const std::vector<std::string>& history,
                            std::string& error, const ProgressFunction& progress = {});

/// The header of a map that is brought onto the grid of another one: axes 1 and 2 and the frame of
/// `like`, everything else of `map`, whose plane becomes the only one. The beam keeps its angle.
PAVANE_API MapHeader headerOnGrid(const MapHeader& map, const MapHeader& like);

}  // namespace pavane
