#pragma once

#include "pavane/axes/maps/cells/map_statistics.h"
#include "pavane/axes/maps/MapFrame.h"
#include "tessel/fits_map.h"
#include "tessel/FitsMapReader.h"

namespace pavane
{

/// A map that was read, and what follows from it.
struct MapContent {
    FitsMap map;
    MapFrame frame;
    MapRange range;  ///< of its finite cells, and where the peak lies
    MapNoise noise;
};

/// Reads the first plane of a map, its range and noise, some rows at a time, for a window that
/// hears its user between.
class PAVANE_API MapContentReader
{
public:
    /// Non-zero on success, else `error` as that of readMapContent.
    int begin(const CString& file, CString& error);
    /// Non-zero while more remains; 0 when `content` is whole, or `error` says why not.
    int step(CString& error);
    MapContent& content() { return content_; }

private:
    FitsMapReader reader_;
    MapContent content_;
    int row_ = 0, hasRange_ = 0;
};

/// Reads a map as readFitsMap does, with the texts of its header made fit for titles and lines.
/// Non-zero on success; else 0 and `error` says in one line what is wrong, without the file's name.
/// `progress` is asked for each million of cells at least, also while range and noise are found.
PAVANE_API int readMapContent(const CString& file, int plane, MapContent& content, CString& error,
                              const ProgressFunction& progress = {});

/// The same of cells that a host has, with the header that belongs to them: frame, range and noise,
/// without a copy. `content.map.cells` is empty. 0 only when `progress` gave it up.
PAVANE_API int describeCells(const AMatrixAccess& cells, const MapHeader& header,
                             MapContent& content, CString& error,
                             const ProgressFunction& progress = {});

}  // namespace pavane
