#pragma once

#include "pavane/measures/maps/pair_maps.h"
#include "platform/api.h"
#include "tessel/CellMapping.h"
#include "tessel/progress_function.h"
#include "tessel/rgb_map.h"

#include <string>
#include <vector>

namespace pavane
{

/// One of three maps: cells and header are not owned. Its name and its range go into the band.
struct MapOfRgb {
    const AMatrix<float>* cells = nullptr;
    const MapHeader* header = nullptr;
    std::string name;
    double low = 0, high = 0;  ///< low not below high: all its values
    SkyShift moved;            ///< not of the first one
};

/// Lays three maps on the cells of the first one: with `regrid`, and where one is moved, through
/// both positions (regridMap), else they have to be the same cells. Each keeps its values in its
/// own unit. `notes` get a line for each that has another beam or unit than the first. A fault is
/// that of the map `at`, with `error` to be read behind its name: `cells` where other cells would
/// have to be brought over, `units` for a range that is not finite or upside down, `memory` for all
/// the rest, also a map without any value and work that was given up.
PAVANE_API PairFault combineRgb(const MapOfRgb (&maps)[rgbBands], int regrid, RgbMap& made,
                                std::vector<std::string>& notes, std::size_t& at,
                                std::string& error, const ProgressFunction& progress = {});

}  // namespace pavane
