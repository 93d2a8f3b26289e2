#pragma once

#include "platform/picture.h"

#include <vector>

namespace pavane
{

/// How hard a PNG is packed; the pixels are the same. Of a figure of 900 x 900 pixels `usual`,
/// which files have too, takes some 10 ms; `fastest` a quarter less for a tenth more bytes,
/// `smallest` ten to fifty times that for up to a fifth less.
enum class PngSpeed { smallest, usual, fastest };

/// The bytes of a PNG file of the picture: red, green and blue, and alpha where its ground is
/// transparent; `dpi` goes into the file. Non-zero on success; else 0, `error` says why in one line
/// ("The picture was given up" when `stop` came up), and `bytes` stays as it was. Needs no
/// platform.
PAVANE_API int PNGBytes(const CPicture& picture, std::vector<unsigned char>& bytes, CString& error,
                        int dpi = 96, PngSpeed speed = PngSpeed::usual,
                        const StopFlag* stop = nullptr);

}  // namespace pavane
