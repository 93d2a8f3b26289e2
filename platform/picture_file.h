#pragma once

#include "platform/picture.h"

#include <functional>

namespace pavane
{

/// Reads a picture file (PNG, BMP, GIF, JPEG by its first bytes; the first frame of a clip) into
/// `picture`, on white where it is transparent. Non-zero on success, else 0, an empty picture, and
/// `error` says in one line why: no file, no picture, damaged, more than 32 million pixels.
PAVANE_API int LoadPicture(const CString& file, CPicture& picture, CString& error);

/// SavePNG of a large picture, which takes a while: `goesOn` is asked every 50 ms, and after the
/// first 0 nothing is written.
PAVANE_API int SavePNG(const CPicture& picture, const CString& file, CString& error, int dpi,
                       const std::function<int()>& goesOn);

/// The file with the same picture for screens of two pixels to a unit, which has "@2x" before its
/// extension, when there is such a file and `ratio` is above 1; else `file` itself.
PAVANE_API CString FinePictureFile(const CString& file, int ratio);

}  // namespace pavane
