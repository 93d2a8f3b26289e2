#pragma once

#include "platform/geometry.h"

#include <functional>
#include <string>

namespace pavane
{

class CDC;

enum class PictureFormat { png, pdf, svg };

/// The format that a name's ending stands for. Non-zero on success, 0 for any other ending.
int pictureFormatOf(const std::string& file, PictureFormat& format);

/// A picture for a file.
struct PictureJob {
    std::string title;                                     ///< of pages
    int width, height;                                     ///< in pixels of 96 per inch
    int fineness = 1;                                      ///< a PNG has its square for each pixel
    std::function<void(CDC& dc, const CRect& rect)> draw;  ///< the whole of it, into any context
    std::function<int()> goesOn = {};                      ///< asked now and then; 0 gives it up
    int pages = 1;
    std::function<void(int page)> turnTo = {};  ///< what `draw` draws from now on, from page 0
};

/// The file of a page, from 0, of `pages`: "a-1.png", "a-2.png" in place of "a.png" where there are
/// several.
std::string pageFileName(const std::string& file, int page, int pages);

/// Writes the picture whole or not at all: its pages into one PDF, or a file each of the others,
/// named by pageFileName. Non-zero on success, else 0 and one line in `error` that names the file.
int writePicture(const std::string& file, PictureFormat format, const PictureJob& job,
                 std::string& error);

}  // namespace pavane
