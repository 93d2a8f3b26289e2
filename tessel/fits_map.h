#pragma once

#include "tessel/ABitMatrix.h"
#include "tessel/AMatrix.h"
#include "tessel/api.h"
#include "tessel/map_header.h"
#include "tessel/progress_function.h"

#include <string>

namespace pavane
{

/// A map: cells in file order (row 0 is the first stored, cell (row r, column c) is FITS pixel
/// (c + 1, r + 1)), blank cells are NaN, values are scaled by BSCALE and BZERO.
struct FitsMap {
    AMatrix<float> cells;
    MapHeader header;
};

/// Reads the first HDU of `file` that holds an image of two axes or more. Further axes longer than
/// 1 need `plane`, counted from 0 over all of them (-1: the first plane, and only when there is
/// just one). Tile-compressed images are read as well. `file` is a plain name, never an
/// extended-syntax expression. Non-zero on success; else 0, `map` is empty and `error` says in one
/// line what is wrong, without the file's name.
PAVANE_API int readFitsMap(const std::string& file, int plane, FitsMap& map, std::string& error,
                           const ProgressFunction& progress = {});

/// Writes `mask` as a primary image of four axes and 32-bit floats 0.0 and 1.0 with the coordinate
/// header of `like`; axes 3 and 4 that it lacks become FREQ and STOKES of length 1. The file
/// appears under its name only when it is whole, and not at all when `progress` gives up. Non-zero
/// on success, else 0 and `error` as above.
PAVANE_API int writeFitsMask(const std::string& file, const ABitMatrix& mask, const MapHeader& like,
                             std::string& error, const ProgressFunction& progress = {});

/// The cells of a row of a mask: 0.0 and 1.0.
PAVANE_API void fillMaskRow(const ABitMatrix& mask, int row, float* cells);

/// Writes a map the same way, values as they are (NaN for blank cells).
PAVANE_API int writeFitsMap(const std::string& file, const AMatrix<float>& cells,
                            const MapHeader& header, std::string& error,
                            const ProgressFunction& progress = {});

}  // namespace pavane
