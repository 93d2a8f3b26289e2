#pragma once

#include "tessel/api.h"
#include "tessel/sky_text.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pavane
{

/// A named position.
struct SkyMark {
    std::string name;
    SkyPosition position;
    int isPixel = 0;  ///< in place of the position: pixels of the map, from 1, x first
    double x = 0, y = 0;
};

/// What a list of marks holds, and what of it could not be taken.
struct SkyMarks {
    std::vector<SkyMark> marks;
    std::vector<std::string> lost;  ///< "line 3: ...", the first twenty
    std::int64_t lostCount = 0;
};

/// Reads a list of names and positions as tables of sources have them: a line a mark, with commas,
/// semicolons, tabs or, without any of these, blanks between its cells, which may stand in quotes.
/// Empty lines and those that start with '#' are passed over. A first line that names the columns
/// ("name", "ra", "dec", "RAJ2000 [deg]", "glon", "x", "pixel_y", "frame" ...) says which they are;
/// without one a name is followed by a position in one cell or two, or a position by a name.
/// Positions are what readSkyPosition reads, in the frame of the columns, of their row or else
/// `usual`; right ascensions in decimal hours only where the column says so. Non-zero when there is
/// a mark; else 0 and `error`, a clause without its subject.
PAVANE_API int readSkyMarks(const std::string& file, const SkyFrame& usual, SkyMarks& marks,
                            std::string& error);
/// What was lost, in a line: "2 of 12 marks were not read: line 3: ...".
PAVANE_API std::string lostMarksText(const SkyMarks& marks);

}  // namespace pavane
