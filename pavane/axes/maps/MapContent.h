#pragma once

#include "pavane/axes/maps/cells/map_statistics.h"
#include "pavane/axes/maps/MapFrame.h"
#include "tessel/fits_map.h"

namespace pavane
{

/// A map that was read, and what follows from it.
struct MapContent {
    FitsMap map;
    MapFrame frame;
    MapRange range;  ///< of its finite cells, and where the peak lies
    MapNoise noise;
};

/// Reads a map as readFitsMap does, with the texts of its header made fit for titles and lines.
/// Non-zero on success; else 0 and `error` says in one line what is wrong, without the file's name.
/// `progress` is asked for each million of cells at least, also while range and noise are found.
PAVANE_API int readMapContent(const CString& file, int plane, MapContent& content, CString& error,
                              const ProgressFunction& progress = {});

}  // namespace pavane
