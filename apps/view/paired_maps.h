#pragma once

#include "pavane/measures/maps/map_shift.h"
#include "pavane/measures/maps/pair_maps.h"
#include "tessel/ABitMatrix.h"
#include "tessel/AMatrix.h"
#include "tessel/fits_map.h"
#include "tessel/progress_function.h"

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

/// What is told of made maps beside them.
struct MadeTold {
    std::string text;                ///< lines "key value unit"
    std::vector<std::string> notes;  ///< what a user should know of the result
};

/// Makes what the options ask for of two maps that are read, under the names that they have there.
/// The second one may be changed on the way. Why they do not go together is `error`, in one line to
/// be read behind the name of the second map; a user who gave up leaves it empty.
PairFault pairMaps(const ViewOptions& options, const FitsMap& first, FitsMap& second, MadeMap& made,
                   MadeTold& told, std::string& error, const ProgressFunction& progress = {});

/// Writes the mask of areas on a map, on the cells of --like when that is named.
int writeMask(const ViewOptions& options, const ABitMatrix& mask, const MapHeader& header,
              std::string& error);

/// Finds the shift of a map against another one, which it is brought onto, over the cells of a mask
/// of that. 0 with `error` as findMapShift.
int findShiftOf(const FitsMap& map, const FitsMap& other, const ABitMatrix& mask, MapShift& found,
                std::string& error, const ProgressFunction& progress = {});

/// Finds the shift of the map of --find-shift against another one over the cells of a mask, as
/// lines for `text`.
int findShiftText(const ViewOptions& options, const FitsMap& map, const ABitMatrix& mask,
                  std::string& text, std::string& error);

/// Makes the difference, the ratio or the spectral index of two maps, in the same way.
int makePaired(const ViewOptions& options, MadeMap& made, std::string& text, std::string& error);

}  // namespace pavane
