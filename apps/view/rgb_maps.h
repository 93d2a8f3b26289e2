#pragma once

#include "apps/view/inputs.h"
#include "apps/view/options.h"
#include "pavane/measures/maps/rgb_maps.h"

#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// The lines of history of an RGB map: which map is which colour, its range, what was done to it.
std::vector<std::string> rgbHistory(const RgbMap& made, const MapOfRgb (&maps)[rgbBands],
                                    int regrid);

/// Reads the other two maps of --rgb, or the colours of a file that holds an RGB map and of which
/// no plane was asked for, into inputs.rgb. The first map has been read. 0 with `error`, one line
/// that names the file.
int readRgb(const ViewOptions& options, ViewInputs& inputs, std::vector<std::string>& notes,
            std::string& error);

/// Writes inputs.rgb as --out says, and puts what it is into `text`.
int writeRgb(const ViewOptions& options, const ViewInputs& inputs, std::string& text,
             std::string& error);

/// The three values of a cell: "0.12, blank, 3.4 mJy/beam", each with its unit where they differ.
std::string rgbValueText(const RgbImage& image, int row, int column);

/// Whether the file holds an RGB map; not, when it cannot be read.
int isRgbFile(const std::string& file);

}  // namespace pavane
