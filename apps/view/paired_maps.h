#pragma once

#include "tessel/AMatrix.h"
#include "tessel/map_header.h"

#include <string>
#include <vector>

namespace pavane
{

struct ViewOptions;

/// A made map, its errors, and what tells of them.
struct MadeMap {
    AMatrix<float> cells, errors;
    MapHeader header;
    std::vector<std::string> history;
};

/// Brings the map of the options onto the grid of another one. Non-zero on success, and `text` is
/// what is printed; else 0, and `error` is one line that names the file.
int makeRegridded(const ViewOptions& options, MadeMap& made, std::string& text, std::string& error);

/// Makes the difference, the ratio or the spectral index of two maps, in the same way.
int makePaired(const ViewOptions& options, MadeMap& made, std::string& text, std::string& error);

}  // namespace pavane
