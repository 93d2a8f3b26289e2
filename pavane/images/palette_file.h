#pragma once

#include "platform/api.h"
#include "platform/gdi_objects.h"
#include "platform/types.h"

#include <string_view>

namespace pavane
{

/// Where the working colours lie, and how many colours a map has.
inline constexpr int firstWorkingColor = 226;
inline constexpr int workingColors = 10;
inline constexpr int paletteColors = 256;

/// Reads the text of a palette file in the JASC-PAL format: the lines "JASC-PAL", "0100", the
/// number of colours, 1 to 256, and a line "red green blue", each 0 to 255, for each of them. The
/// first 226 are the map's colours; fewer are spread over the 226. The working colours (white,
/// black, grey, light grey, yellow, cyan, magenta, red, green, blue) always get entries 226 to 235,
/// and the entries behind them are black, whatever the file says. `colors` has 256 entries.
/// Non-zero on success; else 0 and `colors` is left alone.
PAVANE_API int parsePalette(std::string_view text, PALETTEENTRY* colors);
/// The text of a palette file with `count` colours, 1 to 256; empty for other counts.
PAVANE_API CString paletteText(const COLORREF* colours, int count);

}  // namespace pavane
