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

}  // namespace pavane
