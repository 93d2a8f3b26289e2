#pragma once

#include "apps/view/figure.h"

#include <string>

namespace pavane
{

enum class PictureFormat { png, pdf, svg };

/// The format that a name's ending stands for. Non-zero on success, 0 for any other ending.
int pictureFormatOf(const std::string& file, PictureFormat& format);

/// Writes the figure whole or not at all; width and height in pixels of 96 per inch, of which a PNG
/// has `fineness` squared for each. Non-zero on success, else 0 and one line in `error` that names
/// the file.
int writePicture(const std::string& file, PictureFormat format, int width, int height, int fineness,
                 const ViewOptions& options, const ViewInputs& inputs, const FigureView& view,
                 std::string& error);

}  // namespace pavane
