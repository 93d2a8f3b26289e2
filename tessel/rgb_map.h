#pragma once

#include "tessel/AMatrix.h"
#include "tessel/api.h"
#include "tessel/map_header.h"
#include "tessel/progress_function.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace pavane
{

/// Red, green and blue, in this order.
inline constexpr std::size_t rgbBands = 3;
inline constexpr const char* rgbNames[rgbBands] = {"red", "green", "blue"};

/// One colour of an RGB map: which map it shows, and the values, in its unit, at which the colour
/// begins and is full.
struct RgbBand {
    std::string name, unit;
    double low = 0, high = 0;
    /// Without one the colour takes all values of its map.
    int hasRange() const { return low < high; }
};

/// Three maps of the same cells, one a colour, with the values that they have.
struct RgbMap {
    std::array<AMatrix<float>, rgbBands> cells;
    std::array<RgbBand, rgbBands> bands;
};

/// Whether a map is one of the planes of an RGB map: its third axis, the only one of more than one
/// pixel, is of type RGB and has three.
PAVANE_API int isOfRgb(const MapHeader& header);

/// Writes three maps as planes of one image whose third axis is of type RGB, at the place of
/// `like`, with its beam; its unit when all have that. RGBMAPn, RGBUNITn, RGBLOWn and RGBTOPn say
/// what plane n is, lines of `history` how it was made. The file appears under its name only when
/// it is whole. Non-zero on success, else 0 and `error` says in one line what is wrong, without the
/// file's name.
PAVANE_API int writeRgbMap(const std::string& file, const RgbMap& map, const MapHeader& like,
                           const std::vector<std::string>& history, std::string& error,
                           const ProgressFunction& progress = {});

/// Reads it back. A card that is not there, or makes no sense, leaves a band without name, unit or
/// range. 0 with `error`, as above, for a file that holds no such map.
PAVANE_API int readRgbMap(const std::string& file, RgbMap& map, std::string& error,
                          const ProgressFunction& progress = {});

}  // namespace pavane
